// The cabinet groups of a primary diagram: counting a circuit's parts, master symbols, drawers and groups,
// the filter of secondary rows, the marker, and the scan's treatment of the host's state.
#include "AssemblyFixtures.h"
#include "DxfFixtures.h"
#include "RecordTexts.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/assembly/CircuitMarker.h"
#include "drawing/assembly/CircuitRows.h"
#include "drawing/assembly/LinkedSymbols.h"
#include "drawing/assembly/PrimaryScan.h"
#include "drawing/assembly/ReferDrawing.h"
#include "drawing/assembly/ReferGroups.h"
#include "drawing/model/DrawingBuilder.h"
#include "drawing/primary/CircuitBom.h"

#include <sstream>

namespace {

struct CircuitTableColumns {
    CircuitRowKeys keys;
    CStringArray types, codes, names, counts;

    bool add(const CString& key, const CStringArray& t, const CStringArray& c, const CStringArray& n,
             const CStringArray& k) {
        return QxAddCircuitRows(keys, types, codes, names, counts, key, t, c, n, k);
    }
    bool add(const CString& key, const CString& count) { return add(key, {u"T2"}, {u"c2"}, {u"m"}, {count}); }
    // Each row as type/code/name/count and its master keys, or what is wrong with the columns.
    std::vector<CString> rows() const {
        for (const CStringArray* column : {&codes, &names, &counts})
            if (column->GetSize() != types.GetSize()) return {u"columns of unequal length"};
        if (keys.GetSize() != types.GetSize()) return {u"keys of another length"};
        std::vector<CString> texts;
        for (int i = 0; i < types.GetSize(); ++i)
            texts.push_back(types[i] + u"/" + codes[i] + u"/" + names[i] + u"/" + counts[i] + u" [" + Joined(keys[i]) + u"]");
        return texts;
    }
};

// Each vertex as x,y with its bulge and widths, then layer|colour|visibility.
CString polylineText(const AcDbPolyline& line) {
    std::ostringstream text;
    for (unsigned i = 0; i < line.numVerts(); ++i) {
        AcGePoint2d p;
        double bulge = 0, start = 0, end = 0;
        line.getPointAt(i, p);
        line.getBulgeAt(i, bulge);
        line.getWidthsAt(i, start, end);
        text << (i ? ";" : "") << p.x << "," << p.y << " b" << bulge << " w" << start << "," << end;
    }
    text << "|" << line.layer() << "|" << line.colorIndex() << "|"
         << (line.visibility() == AcDb::kInvisible ? "invisible" : "visible");
    return CString(text.str());
}

std::vector<const AcDbPolyline*> markersOf(AcDbDatabase* database, const CString& block) {
    std::vector<const AcDbPolyline*> markers;
    AcGePoint3d centre;
    for (AcDbEntity* entity : BlockEntities(database, block))
        if (QxIsCircuitMarker(entity, centre)) markers.push_back(AcDbPolyline::cast(entity));
    return markers;
}

} // namespace

TEST(CircuitRowsTest, PartsOfOneCircuitAddUpIgnoringCaseUnlessOneMasterHoldsThem) {
    CircuitTableColumns table;
    // A row without type and code is passed over; one with a code alone is kept.
    ASSERT_TRUE(table.add(u"", {u"abc", u"", u"T2", u""}, {u"c1", u"", u"c2", u"c9"}, {u"n", u"x", u"m", u"k"},
                          {u"2", u"5", u"1", u"1"}));
    ASSERT_TRUE(table.add(u"", {u"ABC"}, {u"C1"}, {u"N"}, {u"3"}));
    // References of one master count once; a count of 0 or no number adds nothing.
    for (const auto& [key, count] : {std::pair{u"M1", u"1"}, {u"M1", u"1"}, {u"", u"0"}, {u"", u"x"}})
        ASSERT_TRUE(table.add(key, count));
    // A negative count in the table is taken as 0.
    table.counts[1] = u"-7";
    ASSERT_TRUE(table.add(u"", u"4"));
    EXPECT_EQ(table.rows(), (std::vector<CString>{u"abc/c1/n/5 [,]", u"T2/c2/m/4 [,M1,,,]", u"/c9/k/1 []"}));

    // Columns of unequal length add nothing, nor does a table that lost a column's rows.
    EXPECT_FALSE(table.add(u"", {u"a", u"b"}, {u"c"}, {u"n", u"m"}, {u"1", u"1"}));
    CircuitTableColumns shortCounts = table;
    shortCounts.counts.RemoveAt(0);
    EXPECT_FALSE(shortCounts.add(u"", {u"z"}, {u"z"}, {u"z"}, {u"1"}));
}

TEST(CircuitNumberTest, SplitsCabinetAndDrawerAtTheFirstBrackets) {
    // ")" goes from both ends of the drawer.
    for (const auto& [number, parts] :
         {std::pair{u"K03(2)", u"K03|2"}, {u"K03((2))", u"K03|(2"}, {u"K03()2)", u"K03|2"}, {u"K03", u"none"},
          {u"(2)", u"none"}, {u"K03)", u"none"}, {u"K03(2", u"none"}, {u")K03(2", u"none"}, {u"", u"none"}}) {
        CString cabinet, drawer;
        EXPECT_EQ(QxSplitCircuitNo(number, cabinet, drawer) ? cabinet + u"|" + drawer : CString(u"none"), parts);
    }
}

TEST(ReferGroupsTest, DrawersJoinTheFirstGroupOfTheirCabinetNamedExactly) {
    CCir1AttrubuteArray circuits;
    for (const char16_t* no : {u"K05", u"K05", u"K05(1)", u"k05(2)"}) {
        auto* circuit = new CCir1Attrubute;
        circuit->No = no;
        circuits.Add(circuit);
    }
    CReferSourceGroupArray groups;
    QxBuildReferGroups(circuits, groups, u"\\nowhere\\primary.dwg");
    std::vector<CString> texts;  // each group's name and its drawers' names
    for (const CReferSourceGroupInfo* group : groups) {
        texts.push_back(group->m_strName + u":");
        for (const CDrawerInfo* drawer : group->m_arrDrawers) texts.back() += drawer->m_strName;
    }
    EXPECT_EQ(texts, (std::vector<CString>{u"K05:1", u"K05:", u"k05:2"}));
    QxFreeReferGroups(groups);
    QxFreeCircuits(circuits);
}

TEST(LinkedSymbolsTest, CountsOnlyLinksThatRunBothWays) {
    DrawingBuilder builder;
    const AcDbObjectId master = builder.addCircle({0, 0, 0}, 1);
    const AcDbObjectId a = builder.addCircle({1, 0, 0}, 1);
    const AcDbObjectId b = builder.addCircle({2, 0, 0}, 1);
    const AcDbObjectId stranger = builder.addCircle({3, 0, 0}, 1);
    const AcDbObjectId other = builder.addCircle({4, 0, 0}, 1);
    builder.setXDataLinks(master, QX_SYMB1_TYPEHANDLE, {a, stranger, b});
    builder.setXDataLinks(a, QX_SYMB1_TYPEHANDLE, {master});
    builder.setXDataLinks(b, QX_SYMB1_TYPEHANDLE, {other, master});
    builder.setXDataLinks(stranger, QX_SYMB1_TYPEHANDLE, {other});
    auto linked = [&builder](const CString& handle) {
        CStringArray handles{u"stale"};
        QxGetLinkedSymbols(&builder.database(), handle, QX_SYMB1_TYPEHANDLE, handles);
        return handles;
    };
    EXPECT_EQ(linked(master.handle().text()), (CStringArray{a.handle().text(), b.handle().text()}));
    // Each end of a two-way link finds the other.
    EXPECT_EQ(linked(a.handle().text()), (CStringArray{master.handle().text()}));
    EXPECT_TRUE(linked(stranger.handle().text()).IsEmpty());
    EXPECT_TRUE(linked(u"FFFFFF").IsEmpty());
}

TEST_F(AssemblyTest, ScanMakesGroupsDrawersAndCountedRowsAndAddsMissingMarkers) {
    layOutStation();
    const CString primary = station() + u"一次系统图.dwg";
    QxScanPrimaryDiagram(station());
    ASSERT_EQ(g_arrCircuits.GetSize(), 7);
    std::vector<CString> groups;
    for (const CReferSourceGroupInfo* group : g_arrReferGroups) groups.push_back(RecordText(*group));
    // K01 takes its first circuit's use. One master symbol: count once; no master: count twice. No drawing:
    // no rows and no titles.
    EXPECT_EQ(groups, (std::vector<CString>{
                          u"K01|进线|KYN28||||||drawers 2",
                          u"K02|计量|KYN28|X1/E1/N1/3;|" + station() + u"Secondary\\S3.dwg|S-003|计量二次|[3KA 1 1]|drawers 0",
                          u"K03|指示|KYN28|AD16/L1/指示灯/1;|||||drawers 0",
                          u"K04|指示|KYN28|AD16/L1/指示灯/2;|||||drawers 0",
                          u"K05|备用一|KYN28||||||drawers 0",
                          u"K05|备用二|KYN28||||||drawers 0"}));
    // Drawer 1: nested symbols; an empty code takes the type. The secondary row that the primary diagram
    // counts is left out, and the moved path resolved below the primary drawing's folder. Drawer 2: the
    // marker's record; its part filters a row of other case; no title: the file name.
    std::vector<CString> drawers;
    for (const CDrawerInfo* drawer : g_arrReferGroups[0]->m_arrDrawers) drawers.push_back(RecordText(*drawer));
    EXPECT_EQ(drawers, (std::vector<CString>{
                           u"1|||NSX100/C100/断路器/1;CT-1/CT-1/互感器/1;|" + station() +
                               u"Secondary\\S1.dwg|S-001|进线二次|[1KA 2 1]",
                           u"2|||RX-1/R1/继电器/1;|" + station() + u"Secondary\\S2.dwg|S2||[2HL 3 1]"}));

    // The marker goes into each circuit block that has none, in the editor's document, not on disk.
    ASSERT_TRUE(QxIsDwgOpen(primary));
    AcDbDatabase* database = nullptr;
    ASSERT_FALSE(QxOpenDwgDatabase(primary, 1, database));  // the editor's document holds it
    const auto added = markersOf(database, u"CIR_A");
    ASSERT_EQ(added.size(), 1u);
    // The block's origin is (10, 20): points, bulge and widths of a dot of diameter 1, invisible, red, layer 0.
    EXPECT_EQ(polylineText(*added[0]), u"9.5,20 b1 w2,2;10.5,20 b1 w2,2|0|1|invisible");
    EXPECT_EQ(markersOf(database, u"CIR_B").size(), 1u);      // had one
    EXPECT_EQ(markersOf(database, u"CIR_PLAIN").size(), 1u);  // K02 and both K05 share it
    EXPECT_TRUE(markersOf(database, u"SYMBOL").empty());      // symbols carry no marker
    EXPECT_EQ(acDocManagerPtr()->mdiActiveDocument()->lockCount(), 0);
    QxActivateDwg(primary);
    EXPECT_EQ(acDocManagerPtr()->curDocument()->fileName(), primary);
    EXPECT_TRUE(acDocManagerPtr()->curDocument()->SentCommands().IsEmpty());  // opened, never saved
    EXPECT_EQ(m_folder.readFile("Station/一次系统图.dwg"), AssemblyFixture("primary.dxf"));
}

// The marker the first circuit of a block gets must not hide the block's nested symbols from the next
// circuit, nor from a second command in the same session.
TEST_F(AssemblyTest, CircuitsSharingABlockKeepTheirNestedPartsInEveryScan) {
    m_folder.writeFile("Shared/shared.dwg", AssemblyFixture("shared_block.dxf"));
    const CString folder = m_folder.logic() + u"Shared\\";
    for (int command = 0; command < 2; ++command) {
        QxScanPrimaryDiagram(folder);
        ASSERT_EQ(g_arrReferGroups.GetSize(), 3) << "command " << command;
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(PartsText(g_arrReferGroups[i]->m_arrParts), u"NSX100/C100/断路器/1;CT-1/T1/互感器/1;")
                << g_arrReferGroups[i]->m_strName << ", command " << command;
        // A master that does not list its symbols back gives them no key: both count.
        EXPECT_EQ(PartsText(g_arrReferGroups[2]->m_arrParts), u"AD16/L1/指示灯/2;");
        AcDbDatabase* database = nullptr;
        QxOpenDwgDatabase(folder + u"shared.dwg", 1, database);
        ASSERT_NE(database, nullptr);
        const auto markers = markersOf(database, u"CIR_SHARED");
        ASSERT_EQ(markers.size(), 1u);
        EXPECT_EQ(FirstXDataText(markers[0], u"QX_CIRCUIT1_ADDEDMARKER"), u"QX_CIRCUIT1_ADDEDMARKER");
    }
}

TEST_F(AssemblyTest, ScanKeepsTheHostsStateAndAFolderWithoutOneDrawingKeepsTheGroupsOfTheLastScan) {
    layOutStation();
    // The primary drawing open in another document, the working database elsewhere: both stay as they are.
    AcApDocument* untitled = acDocManagerPtr()->curDocument();
    ASSERT_NE(acDocManagerPtr()->openDocument(station() + u"一次系统图.dwg"), nullptr);
    acDocManagerPtr()->setCurDocument(untitled, AcAp::kNone, true);
    AcDbDatabase elsewhere;
    acdbHostApplicationServices()->setWorkingDatabase(&elsewhere);
    QxScanPrimaryDiagram(station());
    ASSERT_EQ(g_arrReferGroups.GetSize(), 6);
    EXPECT_EQ(acDocManagerPtr()->curDocument(), untitled);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), &elsewhere);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    CReferSourceGroupInfo* const kept = g_arrReferGroups[0];

    m_folder.makeFolder("Empty");
    QxScanPrimaryDiagram(m_folder.logic() + u"Empty\\");
    QxScanPrimaryDiagram(m_folder.logic() + u"Missing\\");
    m_folder.writeFile("Two/a.dwg", AssemblyFixture("primary.dxf"));
    m_folder.writeFile("Two/B.DWG", AssemblyFixture("primary.dxf"));
    m_folder.writeFile("Dxf/a.dxf", AssemblyFixture("primary.dxf"));  // no "*.dwg": no drawing
    QxScanPrimaryDiagram(m_folder.logic() + u"Two\\");
    QxScanPrimaryDiagram(m_folder.logic() + u"Dxf\\");
    EXPECT_EQ(g_arrReferGroups.GetSize(), 6);
    EXPECT_EQ(g_arrReferGroups[0], kept);
    EXPECT_EQ(g_arrCircuits.GetSize(), 7);

    // An unreadable primary drawing empties the arrays and restores everything.
    acDocManagerPtr()->reset();
    AcApDocument* fresh = acDocManagerPtr()->curDocument();
    m_folder.writeFile("Broken/broken.dwg", "AC1032 binary junk\0\x01\x02");
    QxScanPrimaryDiagram(m_folder.logic() + u"Broken\\");
    EXPECT_TRUE(g_arrReferGroups.IsEmpty());
    EXPECT_TRUE(g_arrCircuits.IsEmpty());
    EXPECT_EQ(acDocManagerPtr()->curDocument(), fresh);
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 1);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), fresh->database());
}

TEST_F(AssemblyTest, ReferDrawingNeedsOneExistingFile) {
    layOutStation();
    m_folder.writeFile("Station/Secondary/Broken.dwg", "AC1032 not DXF");
    m_folder.writeFile("Station/Secondary/S4.dwg", AssemblyFixture("sec_s4.dxf"));
    const CString folder = station() + u"Secondary\\";
    CDrawerInfo drawer;
    drawer.m_strTitleNo = u"kept";
    auto readFrom = [&drawer](const CString& path) {
        drawer.m_strDrawing = path;
        QxReadReferDrawing(drawer);
        return RecordText(drawer);
    };
    EXPECT_EQ(readFrom(folder + u"S1.dwg|" + folder + u"S2.dwg"), u"||||" + folder + u"S1.dwg|" + folder + u"S2.dwg|kept||");
    EXPECT_EQ(readFrom(folder), u"||||" + folder + u"|kept||");

    // Read twice: the rows are replaced, not added. The filter compares code and type ignoring case; a
    // part of the same code and another type filters nothing.
    for (const auto& [type, code] : {std::pair{u"rx-1", u"r1"}, {u"NSX-2", u"C100"}}) {
        auto* part = new CReferSourcePartBomInfo;
        part->m_strType = type;
        part->m_strCode = code;
        drawer.m_arrParts.Add(part);
    }
    readFrom(folder + u"S1.dwg");
    EXPECT_EQ(readFrom(folder + u"S1.dwg"), u"|||rx-1/r1//;NSX-2/C100//;|" + folder + u"S1.dwg|S-001|进线二次|[1QF 1 1]");
    EXPECT_EQ(drawer.m_arrDwgBoms[0]->Path, drawer.m_strDrawing);
    // A drawing that does not open gives no rows, and its file name stands in for the titles; a title
    // without a number: its name stands in.
    EXPECT_EQ(readFrom(folder + u"Broken.dwg"), u"|||rx-1/r1//;NSX-2/C100//;|" + folder + u"Broken.dwg|Broken||[  0]");
    EXPECT_EQ(readFrom(folder + u"S4.dwg"), u"|||rx-1/r1//;NSX-2/C100//;|" + folder + u"S4.dwg|只有图名|只有图名|[  0]");
}
