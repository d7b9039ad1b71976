// The DXF reader on small hand-written files: the file frame, sequences, groups that are easy to misread.
#include "DxfFixtures.h"
#include "common/TempFolder.h"
#include "drawing/dxf/DxfReader.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Pairs = std::vector<std::pair<int, std::string>>;

std::string dxf(const Pairs& pairs, const char* lineEnd = "\n") {
    std::string text;
    for (const auto& [code, value] : pairs) text += std::to_string(code) + lineEnd + value + lineEnd;
    return text;
}

Pairs entities(const Pairs& body) {
    Pairs all{{0, "SECTION"}, {2, "ENTITIES"}};
    all.insert(all.end(), body.begin(), body.end());
    all.insert(all.end(), {{0, "ENDSEC"}, {0, "EOF"}});
    return all;
}

} // namespace

TEST(DxfRecordsTest, FrameOfTheFile) {
    AcDbDatabase db(false, true);
    // Comments, CR LF, blanks around codes and no EOF are all fine.
    EXPECT_EQ(ReadDxfText(dxf({{999, "made by hand"}, {0, "SECTION"}, {2, "ENTITIES"}, {0, "LINE"}, {0, "ENDSEC"}}, "\r\n"), db),
              DxfLoadStatus::Ok);
    EXPECT_EQ(EntitiesOf(db.modelSpaceId()).size(), 1u);
    EXPECT_EQ(ReadDxfText("  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n", db), DxfLoadStatus::Truncated);
    EXPECT_TRUE(db.modelSpaceId().isNull());
    EXPECT_EQ(ReadDxfText("AutoCAD Binary DXF\r\n\x1a", db), DxfLoadStatus::Binary);
    EXPECT_EQ(ReadDxfText("", db), DxfLoadStatus::NotDxf);
    EXPECT_EQ(ReadDxfText("hello\nworld\n", db), DxfLoadStatus::NotDxf);
    EXPECT_EQ(ReadDxfText(dxf({{0, "SECTION"}, {2, "ENTITIES"}, {0, "ENDSEC"}, {0, "LINE"}}), db), DxfLoadStatus::Corrupt);
    EXPECT_EQ(ReadDxfText(dxf({{0, "SECTION"}, {2, "ENTITIES"}, {0, "ENDSEC"}}) + "99999999999\nx\n", db),
              DxfLoadStatus::Corrupt);
    // A group code beyond 16 bits is no group code, however plainly it is written.
    EXPECT_EQ(ReadDxfText(dxf({{0, "SECTION"}, {2, "ENTITIES"}, {0, "LINE"}, {40000, "1"}, {0, "ENDSEC"}}), db),
              DxfLoadStatus::Corrupt);
    EXPECT_TRUE(LooksLikeDxf("\xEF\xBB\xBF  0\nSECTION\n"));
    EXPECT_FALSE(LooksLikeDxf("AC1032\0\0"));
}

TEST(DxfRecordsTest, SequencesAndAttributesAreNoEntitiesOfTheirOwn) {
    AcDbDatabase db(false, true);
    ASSERT_EQ(ReadDxfText(dxf(entities({
                  {0, "INSERT"}, {5, "A1"}, {66, "1"}, {2, "NOWHERE"}, {70, "3"}, {71, "2"},  // a MINSERT
                  {0, "ATTRIB"}, {5, "A2"}, {1, "value"}, {0, "SEQEND"}, {5, "A3"},
                  {0, "POLYLINE"}, {5, "B1"}, {70, "1"}, {0, "VERTEX"}, {10, "0"}, {20, "0"}, {42, "1"},
                  {0, "VERTEX"}, {10, "1"}, {20, "0"}, {42, "1"}, {0, "VERTEX"}, {70, "128"}, {71, "1"},
                  {0, "SEQEND"}, {0, "VERTEX"}, {10, "5"}, {20, "5"},
                  {0, "HATCH"}, {5, "C1"}, {1001, "QX_Circuit1_No"}, {1000, "K01"},
              })), db),
              DxfLoadStatus::Ok);
    const auto all = EntitiesOf(db.modelSpaceId());
    ASSERT_EQ(all.size(), 3u);
    EXPECT_NE(AcDbBlockReference::cast(all[0]), nullptr);
    EXPECT_TRUE(AcDbBlockReference::cast(all[0])->blockTableRecord().isNull());
    const auto* marker = AcDbPolyline::cast(all[1]);
    ASSERT_NE(marker, nullptr);
    EXPECT_EQ(PolylineText(*marker), "0,0 b1;1,0 b1 closed");  // the face record and the stray vertex are none
    EXPECT_EQ(all[2]->dxfName(), "HATCH");
    EXPECT_EQ(FirstXDataText(all[2], u"QX_Circuit1_No"), u"K01");
}

TEST(DxfRecordsTest, OwnersReactorsDuplicateHandlesAndExtrusion) {
    AcDbDatabase db(false, true);
    const std::string text = dxf({
                  {0, "SECTION"}, {2, "BLOCKS"}, {0, "BLOCK"}, {2, "B"}, {10, "0"}, {20, "0"},
                  {0, "LINE"}, {10, "1"}, {20, "1"}, {11, "2"}, {21, "3"}, {0, "ENDBLK"}, {0, "ENDSEC"},
                  {0, "SECTION"}, {2, "ENTITIES"},
                  // Reactors name an owner inside their group; the real owner follows it.
                  {0, "TEXT"}, {5, "10"}, {102, "{ACAD_REACTORS"}, {330, "99"}, {102, "}"}, {330, "1F"}, {67, "1"},
                  {1, "paper"},
                  {0, "TEXT"}, {5, "10"}, {1, "same handle"},
                  // Seen from below (extrusion 0,0,-1) the block is mirrored in x.
                  {0, "INSERT"}, {5, "11"}, {2, "b"}, {10, "-10"}, {20, "0"}, {230, "-1"},
                  {0, "ENDSEC"}, {0, "EOF"}});
    ASSERT_EQ(ReadDxfText(text, db), DxfLoadStatus::Ok);
    const auto model = EntitiesOf(db.modelSpaceId());
    const auto paper = EntitiesOf(db.paperSpaceId());
    ASSERT_EQ(paper.size(), 1u);
    ASSERT_EQ(model.size(), 2u);
    EXPECT_EQ(paper[0]->objectHandle().text(), u"10");
    EXPECT_NE(model[0]->objectHandle().text(), u"10");  // the second "10" got a fresh handle
    AcDbObjectId id;
    ASSERT_EQ(db.getAcDbObjectId(id, false, model[0]->objectHandle()), Acad::eOk);
    EXPECT_EQ(id, model[0]->objectId());

    const auto* insert = AcDbBlockReference::cast(model[1]);
    ASSERT_NE(insert, nullptr);
    EXPECT_EQ(insert->position(), (AcGePoint3d{10, 0, 0}));
    EXPECT_EQ(ExtentsText(insert), "8,1 9,3");
}

TEST(DxfRecordsTest, XrecordDataAndXDataGroupsWithCommentsAmongThem) {
    AcDbDatabase db(false, true);
    const std::string text = dxf({
                  {0, "SECTION"}, {2, "OBJECTS"},
                  // Comments (999) inside records are no data: not between a name and its handle, not among
                  // an xrecord's items, not in xdata.
                  {0, "DICTIONARY"}, {5, "C"}, {330, "0"}, {100, "AcDbDictionary"}, {3, "A"}, {999, "between"},
                  {350, "0d"}, {3, "LOST"}, {350, "777"},
                  // A 280 first is the cloning flag; a later one is data, as are 5 and 330 behind the marker.
                  {0, "XRECORD"}, {5, "D"}, {330, "C"}, {100, "AcDbXrecord"}, {280, "1"}, {1, "x^Iy"},
                  {999, "not an item"}, {280, "5"}, {330, "00ab"}, {11, "1"}, {21, "2"}, {1001, "APP"},
                  {999, "nor xdata"}, {1002, "{"}, {1000, "^ in"}, {1002, "}"},
                  {1011, "7"}, {1021, "8"}, {1031, "9"}, {1004, "0A0B"},
                  {0, "ENDSEC"}, {0, "EOF"}});
    ASSERT_EQ(ReadDxfText(text, db), DxfLoadStatus::Ok);
    EXPECT_EQ(XrecordItems(db.namedObjectsDictionaryId(), u"a"),
              (ResItems{ResItem::text(1, u"x\ty"), ResItem::integer(280, 5), ResItem::text(330, u"AB"),
                        ResItem::point(11, {1, 2, 0})}));
    AcDbObjectPointer<AcDbDictionary> named(db.namedObjectsDictionaryId(), AcDb::kForRead);
    AcDbObjectId lost;
    EXPECT_TRUE(named->has(u"LOST"));
    EXPECT_NE(named->getAt(u"LOST", lost), Acad::eOk);
    AcDbObjectId recordId;
    named->getAt(u"A", recordId);
    const XDataApp* app = recordId.objectUnchecked()->findXData(u"APP");
    ASSERT_NE(app, nullptr);
    EXPECT_EQ(app->items, (ResItems{ResItem::text(1002, u"{"), ResItem::text(1000, u"^in"), ResItem::text(1002, u"}"),
                                    ResItem::point(1011, {7, 8, 9}), ResItem::text(1004, u"0A0B")}));
}

TEST(DxfRecordsTest, CoordinatesThatAreNoNumbersRefuseTheirRecord) {
    for (const char* bad : {"nan", "NaN", "inf", "-inf", "infinity", "1e999"}) {
        SCOPED_TRACE(bad);
        AcDbDatabase db(false, true);
        ASSERT_EQ(ReadDxfText(dxf(entities({
                      {0, "LINE"}, {10, "0"}, {20, bad}, {11, "1"}, {21, "1"},
                      {0, "TEXT"}, {10, "1"}, {20, "2"}, {40, bad}, {1, "height"},
                      {0, "INSERT"}, {2, "B"}, {10, "3"}, {20, "4"}, {50, bad},
                      {0, "TEXT"}, {10, "5"}, {20, "6"}, {1, "kept"},
                      {0, "POLYLINE"}, {70, "8"}, {0, "VERTEX"}, {10, "1"}, {20, "2"}, {30, bad},
                      {0, "VERTEX"}, {10, "1"}, {20, "2"}, {30, "3"}, {0, "SEQEND"},
                  })), db),
                  DxfLoadStatus::Ok);
        const auto all = EntitiesOf(db.modelSpaceId());
        ASSERT_EQ(all.size(), 2u);
        EXPECT_EQ(AcDbText::cast(all[0])->textString(), u"kept");
        const auto* space = AcDb3dPolyline::cast(all[1]);
        ASSERT_NE(space, nullptr);
        EXPECT_EQ(space->numVerts(), 1u);
    }
}

// A file is read piece by piece, and what lies behind is given back: records and lines that straddle
// the pieces, and a line longer than many pieces, must come out as when the whole text is at hand.
TEST(DxfRecordsTest, LargeFilesReadPieceByPieceAsTheWholeText) {
    Pairs body;
    for (int i = 0; i < 120000; ++i) {
        body.insert(body.end(), {{0, "TEXT"}, {1, "t" + std::to_string(i)}, {10, std::to_string(i)}, {20, "0.5"},
                                 {1001, "QX_APP"}, {1000, std::string(static_cast<size_t>(i % 50), 'x')}});
    }
    const std::string longLine(5 * 1024 * 1024 + 17, 'L');
    body.insert(body.end(), {{0, "MTEXT"}, {3, longLine}, {1, "end"}});
    const std::string text = "\xEF\xBB\xBF" + dxf(entities(body), "\r\n");
    ASSERT_GT(text.size(), 8u * 1024 * 1024);
    TempFolder folder;
    folder.writeFile("large.dxf", text);

    AcDbDatabase whole(false, true);
    ASSERT_EQ(ReadDxfText(text, whole), DxfLoadStatus::Ok);
    AcDbDatabase pieces(false, true);
    ASSERT_EQ(pieces.readDwgFile(folder.logic() + u"large.dxf"), Acad::eOk);

    const auto expected = EntitiesOf(whole.modelSpaceId());
    const auto read = EntitiesOf(pieces.modelSpaceId());
    ASSERT_EQ(read.size(), 120001u);
    ASSERT_EQ(read.size(), expected.size());
    for (size_t i = 0; i < read.size(); i += 997) {
        const auto* a = AcDbText::cast(expected[i]);
        const auto* b = AcDbText::cast(read[i]);
        ASSERT_TRUE(a && b) << i;
        EXPECT_EQ(b->textString(), a->textString());
        EXPECT_EQ(b->position(), a->position());
        EXPECT_EQ(FirstXDataText(b, u"QX_APP"), FirstXDataText(a, u"QX_APP"));
    }
    const auto* last = AcDbMText::cast(read.back());
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->contents(), CString(longLine + "end"));

    // Comments longer than the first piece still lead to the drawing.
    Pairs commented;
    for (int i = 0; i < 30000; ++i) commented.push_back({999, "written by a tool with a lot to say " + std::to_string(i)});
    const Pairs line = entities({{0, "LINE"}, {5, "A1"}});
    commented.insert(commented.end(), line.begin(), line.end());
    folder.writeFile("commented.dxf", dxf(commented));
    AcDbDatabase db(false, true);
    ASSERT_EQ(db.readDwgFile(folder.logic() + u"commented.dxf"), Acad::eOk);
    EXPECT_EQ(EntitiesOf(db.modelSpaceId()).size(), 1u);
}

// Names that a file brings (layers, applications, entries) belong to the database that read it: they go
// when it goes, however many files are read.
TEST(DxfRecordsTest, NamesFromTheFileStayWithItsDatabase) {
    const size_t detachedBefore = AcDbNamePool::detached().size();
    {
        AcDbDatabase db(false, true);
        ASSERT_EQ(ReadDxfText(dxf({
                      {0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1032"}, {0, "ENDSEC"},
                      {0, "SECTION"}, {2, "ENTITIES"},
                      {0, "TEXT"}, {5, "A"}, {8, "Layer One"}, {1, "a"}, {1001, "APP_ONE"}, {1000, "x"},
                      {0, "TEXT"}, {5, "B"}, {8, "Layer One"}, {1, "b"}, {1001, "APP_ONE"}, {1000, "y"},
                      {0, "TEXT"}, {8, "电气"}, {1, "no handle"}, {1001, "APP_TWO"}, {1000, "z"},
                      {0, "ENDSEC"},
                      {0, "SECTION"}, {2, "OBJECTS"},
                      {0, "DICTIONARY"}, {5, "C"}, {330, "0"}, {100, "AcDbDictionary"}, {3, "Entry_Name"}, {350, "D"},
                      {0, "XRECORD"}, {5, "D"}, {330, "C"}, {100, "AcDbXrecord"}, {1, "v"},
                      {0, "ENDSEC"}, {0, "EOF"}}),
                              db),
                  DxfLoadStatus::Ok);
        const auto all = EntitiesOf(db.modelSpaceId());
        ASSERT_EQ(all.size(), 3u);
        EXPECT_EQ(all[0]->layer(), u"Layer One");
        EXPECT_EQ(&all[0]->layer(), &all[1]->layer());
        EXPECT_EQ(all[2]->layer(), u"电气");
        EXPECT_EQ(FirstXDataText(all[1], u"app_one"), u"y");
        EXPECT_EQ(FirstXDataText(all[2], u"APP_TWO"), u"z");
        EXPECT_EQ(XrecordItems(db.namedObjectsDictionaryId(), u"ENTRY_NAME"), DrawingBuilder::TextItems(1, {u"v"}));
        EXPECT_EQ(AcDbNamePool::detached().size(), detachedBefore);
    }
    // Entities made by code take their names where their database keeps them, or, before they join one,
    // in the pool of objects that belong to no database.
    DrawingBuilder b;
    const AcDbObjectId text = b.addText(u"t", {});
    AcDbEntity::cast(text.objectUnchecked())->setLayer(u"QX_LAYER_IN_A_DATABASE");
    EXPECT_EQ(AcDbNamePool::detached().size(), detachedBefore);
    AcDbText loose;
    loose.setLayer(u"QX_LAYER_OF_A_LOOSE_ENTITY");
    EXPECT_EQ(loose.layer(), u"QX_LAYER_OF_A_LOOSE_ENTITY");
    EXPECT_EQ(AcDbNamePool::detached().size(), detachedBefore + 1);
}
