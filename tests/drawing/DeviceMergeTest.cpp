// The BOM arrays of a device: its own drawings' rows, the groups its cabinet numbers name, the add, removal
// and skip rules, and each failure of the cabinet equality check with its message.
#include "AssemblyFixtures.h"
#include "common/CapturedOutput.h"
#include "drawing/assembly/PrimaryScan.h"
#include "drawing/merge/CabinetCheck.h"
#include "drawing/merge/DeviceBomMerge.h"

#include <vector>

namespace {

struct PartSpec {
    CString type, name, count, code = {};
};
struct RowSpec {
    CString name, type, count;
};

void addParts(CDrawerInfo& target, const std::vector<PartSpec>& parts) {
    for (const PartSpec& wanted : parts) {
        auto* part = new CReferSourcePartBomInfo;
        part->m_strType = wanted.type;
        part->m_strName = wanted.name;
        part->m_strCount = wanted.count;
        part->m_strCode = wanted.code.IsEmpty() ? wanted.type : wanted.code;
        target.m_arrParts.Add(part);
    }
}

void addRows(CDrawerInfo& target, const std::vector<RowSpec>& rows) {
    auto* bom = new CBomOfDwg;
    bom->Path = target.m_strDrawing;
    for (const RowSpec& row : rows) {
        bom->Names.Add(row.name);
        bom->Types.Add(row.type);
        bom->Counts.Add(row.count);
        bom->Codes.Add(row.type);
        bom->Labels.Add(u"L");
    }
    target.m_arrDwgBoms.Add(bom);
}

CReferSourceGroupInfo& addGroup(const CString& name, const std::vector<PartSpec>& parts = {},
                                const std::vector<RowSpec>& rows = {}) {
    auto* group = new CReferSourceGroupInfo;
    group->m_strName = name;
    group->m_strDrawing = u"D:\\s.dwg";
    addParts(*group, parts);
    if (!rows.empty()) addRows(*group, rows);
    g_arrReferGroups.Add(group);
    return *group;
}

CDrawerInfo& addDrawer(CReferSourceGroupInfo& group, const CString& name, const std::vector<PartSpec>& parts,
                       const std::vector<RowSpec>& rows = {}) {
    auto* drawer = new CDrawerInfo;
    drawer->m_strName = name;
    drawer->m_strDrawing = u"D:\\s\\" + name + u".dwg";
    addParts(*drawer, parts);
    if (!rows.empty()) addRows(*drawer, rows);
    group.m_arrDrawers.Add(drawer);
    return *drawer;
}

BOM_INFO row(const CString& name, const CString& model, const CString& count, const CString& code = u"",
             const CString& label = u"") {
    BOM_INFO info;
    info.m_strRowLabel = label;
    info.m_strRowName = name;
    info.m_strRowModel = model;
    info.m_strRowCount = count;
    info.m_strRowCode = code;
    return info;
}

CString rowsText(const BomRows& rows) {
    CString text;
    for (const BOM_INFO& r : rows) text += r.m_strRowName + u"/" + r.m_strRowModel + u"/" + r.m_strRowCount + u";";
    return text;
}

class DeviceMergeTest : public AssemblyTest {
protected:
    // Merges the device: result|cabinet count|primary rows|secondary rows.
    static CString merged(HMProjectTree_INFO& device) {
        const bool result = QxMergeDeviceBom(&device);
        return CString(result ? u"true|" : u"false|") + CString(std::to_string(device.m_nCabCount)) + u"|" +
               rowsText(device.m_arrPrimaryBom) + u"|" + rowsText(device.m_arrSecondaryBom);
    }
    static CString merged(const CString& numbers) {
        HMProjectTree_INFO device;
        device.m_strCirNo = numbers;
        return merged(device);
    }

    HMProjectTree_INFO node;
    CapturedOutput output;

};

} // namespace

TEST_F(DeviceMergeTest, CabinetListsOfEitherCommaMergeTheFirstGroupOnce) {
    // Without any group the list still sets the cabinet count.
    EXPECT_EQ(merged(u"K01,K02"), u"true|2||");
    addGroup(u"K01", {{u"T1", u"n1", u"1"}}, {{u"s", u"S", u"1"}});
    addGroup(u"K02", {{u"T1", u"n1", u"1", u"other code"}}, {{u"s", u"S", u"9"}});
    addGroup(u"K03", {{u"T9", u"n9", u"1"}});
    // Counts are those of one cabinet; drawing rows that differ do not fail the check.
    for (const auto& [numbers, cabinets] : {std::pair{u"K01，K02", u"2"}, {u"K01,K02", u"2"}, {u"K01,K01", u"2"},
                                            {u"K02,K01,", u"3"}})
        EXPECT_EQ(merged(numbers), u"true|" + CString(cabinets) + u"|n1/T1/1;|s/S/1;") << CString(numbers);
}

TEST_F(DeviceMergeTest, OwnRowsWinOverDrawerRowsPartsRemoveOneSecondaryRowAndPlainGroupsAddTheirRows) {
    CReferSourceGroupInfo& group = addGroup(u"K01");
    addDrawer(group, u"1", {{u"T1", u"n1", u"2"}}, {{u"drawer", u"D", u"1"}});
    addDrawer(group, u"2", {{u"T1", u"n1", u"3"}}, {{u"drawer", u"D", u"1"}});
    node.m_strCirNo = u"K01";
    for (const auto& [name, model] : {std::pair{u"n1", u"T1"}, {u"own", u"O"}, {u"n1", u"T1"}, {u"n1", u"T1"}})
        node.m_arrSecondaryBom.Add(row(name, model, u"1"));
    // Each part added removes one row of its name and model, even one of the device's own drawings.
    EXPECT_EQ(merged(node), u"true|1|n1/T1/5;|own/O/1;n1/T1/1;");

    // Without own rows every drawer of the group adds its rows; the group's own parts and rows are ignored
    // once it has drawers; "abc" adds as 0.
    CReferSourceGroupInfo& withDrawers = addGroup(u"K02", {{u"ignored", u"g", u"1"}}, {{u"ignored", u"g", u"1"}});
    addDrawer(withDrawers, u"1", {}, {{u"a", u"A", u"2"}, {u"b", u"B", u"abc"}});
    addDrawer(withDrawers, u"2", {}, {{u"a", u"A", u"3"}, {u"b", u"B", u"2"}});
    EXPECT_EQ(merged(u"K02"), u"true|1||a/A/5;b/B/2;");

    // Plain groups of one name fill the rows once, as they are, without adding up, and add their parts. A
    // row the add rule appends keeps its count text as it stands; another model is another row.
    addGroup(u"K03", {{u"T1", u"n1", u"1"}}, {{u"r", u"R", u"1"}, {u"r", u"R", u"2"}});
    addGroup(u"K03", {{u"T1", u"n1", u"2"}, {u"T2", u"n2", u"x"}, {u"T3", u"n1", u"4"}}, {{u"late", u"L", u"1"}});
    HMProjectTree_INFO plain;
    plain.m_strCirNo = u"K03";
    EXPECT_EQ(merged(plain), u"true|1|n1/T1/3;n2/T2/x;n1/T3/4;|r/R/1;r/R/2;");
}

TEST_F(DeviceMergeTest, EachFailureOfTheCheckShowsItsMessage) {
    struct Case {
        const char16_t* difference;  // the part of the message that names what differs
        std::function<void(CReferSourceGroupInfo&)> change;
    };
    const char16_t* count = u"一次元件条目数量不同";
    const char16_t* content = u"一次元件内容不一样";
    const char16_t* drawing = u"关联二次明细文件不同";
    const std::vector<Case> cases{
        {count, [](CReferSourceGroupInfo& b) { addParts(b, {{u"T9", u"n9", u"1"}}); }},
        {content, [](CReferSourceGroupInfo& b) { b.m_arrParts[0]->m_strCount = u"2"; }},
        {drawing, [](CReferSourceGroupInfo& b) { b.m_strTitleName = u"other"; }},
        {u"抽屉数量不同", [](CReferSourceGroupInfo& b) { addDrawer(b, u"3", {}); }},
        // Titles are compared before the number of drawers.
        {drawing, [](CReferSourceGroupInfo& b) {
             b.m_strTitleNo = u"S-2";
             addDrawer(b, u"3", {});
         }},
        // A second drawer with fewer parts than the first.
        {content, [](CReferSourceGroupInfo& b) {
             CReferSourcePartArray& parts = b.m_arrDrawers[0]->m_arrParts;
             delete parts[1];
             parts.RemoveAt(1);
         }},
        {drawing, [](CReferSourceGroupInfo& b) { b.m_arrDrawers[1]->m_strDrawing = u"D:\\other.dwg"; }},
    };
    for (const Case& c : cases) {
        QxFreeReferGroups(g_arrReferGroups);
        for (const char16_t* name : {u"K01", u"K02"}) {
            CReferSourceGroupInfo& group = addGroup(name, {{u"T1", u"n1", u"1"}});
            group.m_strTitleNo = u"S-1";
            group.m_strDrawing = u"D:\\s.dwg";
            addDrawer(group, u"1", {{u"T1", u"n1", u"1"}, {u"T2", u"n2", u"1"}});
            addDrawer(group, u"2", {{u"T3", u"n3", u"1"}});
        }
        c.change(*g_arrReferGroups[1]);
        output.boxes.clear();
        g_bBomCheckFailed = false;
        HMProjectTree_INFO device;
        device.m_strCirNo = u"K01,K02";
        EXPECT_FALSE(QxMergeDeviceBom(&device));
        ASSERT_EQ(output.boxes.size(), 1u);
        EXPECT_EQ(output.boxes[0].text, u"屏柜 K01 和屏柜 K02 内容应该一致，但是现在不一致，" + CString(c.difference) +
                                             u"，请检查一次系统图。");
    }
}

TEST_F(DeviceMergeTest, CheckPassesCodesAndLongerSecondDrawers) {
    for (const char16_t* name : {u"K01", u"K02"}) {
        CReferSourceGroupInfo& group = addGroup(name, {});
        group.m_strTitleNo = u"same";
        addDrawer(group, u"1", {{u"T1", u"n1", u"1", CString(name)}});
    }
    addParts(*g_arrReferGroups[1]->m_arrDrawers[0], {{u"T2", u"n2", u"1"}});
    EXPECT_TRUE(QxCheckCabinetsEqual(0, 1));
    EXPECT_FALSE(QxCheckCabinetsEqual(1, 0));
    EXPECT_EQ(output.boxes.size(), 1u);
}

TEST_F(DeviceMergeTest, DeviceRowsComeFromItsOwnDrawingsOncePerMergedLabel) {
    layOutDevice("K01", "K01", false);
    BomRows rows;
    rows.Add(row(u"stale", u"S", u"1"));
    QxGetDeviceSecondaryRows(station() + u"K01\\K01.prj", rows);
    // 1KA and 2KA share one table row of count 2: it is taken once.
    EXPECT_EQ(rows, (BomRows{row(u"继电器", u"RX-1", u"2", u"R1", u"1KA"), row(u"断路器", u"NSX100", u"1", u"C100", u"4QF")}));

    // Rows of count "1" are never passed over.
    m_folder.writeFile("Station/K03/K03.prj", DeviceFileText("K03"));
    m_folder.writeFile("Station/K03/C.dwg", AssemblyFixture("device_c.dxf"));
    QxGetDeviceSecondaryRows(station() + u"K03\\K03.prj", rows);
    EXPECT_EQ(rowsText(rows), u"继电器/RX-3/1;继电器/RX-3/1;");
}

TEST_F(DeviceMergeTest, ScannedProjectGivesTheDeviceItsRows) {
    layOutStation();
    layOutDevice("K01", "K01", false);
    QxScanPrimaryDiagram(station());
    node.m_strCirNo = u"K01";
    QxGetDeviceSecondaryRows(station() + u"K01\\K01.prj", node.m_arrSecondaryBom);
    // The device's own rows keep the drawers' rows out; the primary parts each remove one.
    EXPECT_EQ(merged(node), u"true|1|断路器/NSX100/1;互感器/CT-1/1;继电器/RX-1/1;|");
    EXPECT_EQ(merged(u"K02"), u"true|1|N1/X1/3;|继电器/RX-1/1;");
}
