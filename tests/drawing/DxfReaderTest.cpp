// The DXF reader on files written by ezdxf in several versions and encodings.
#include "DxfFixtures.h"

#include <gtest/gtest.h>

namespace {

const CString kLongText = CString(u"{\\fSimSun|b0;") + [] {
    CString s;
    for (int i = 0; i < 30; ++i) s += u"开关柜二次原理图说明";
    return s;
}() + u"}\\P第二行";

CString blockNameOf(const AcDbBlockReference* ref) {
    const auto* record = AcDbBlockTableRecord::cast(ref->blockTableRecord().objectUnchecked());
    return record ? record->name() : CString(u"<none>");
}

class SampleDrawing : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(SampleDrawing, ModelSpaceHoldsEverythingTheExtractionReads) {
    Acad::ErrorStatus status;
    auto db = ReadFixture(GetParam(), &status);
    ASSERT_EQ(status, Acad::eOk);
    const auto entities = EntitiesOf(db->modelSpaceId());
    ASSERT_EQ(entities.size(), 8u);

    const auto* head = AcDbText::cast(entities[0]);
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(CString(head->textStringConst()), u"一次额定电压:10kV");
    EXPECT_EQ(head->position(), (AcGePoint3d{0, 100, 0}));
    EXPECT_EQ(FirstXDataText(head, u"qx_sys_head_itemname"), u"一次额定电压");

    const auto* label = AcDbMText::cast(entities[1]);
    const auto* cell = AcDbMText::cast(entities[2]);
    ASSERT_TRUE(label && cell);
    EXPECT_EQ(label->contents(), u"QF1");
    EXPECT_EQ(cell->contents(), u"{\\fSimSun|b0;断路器}");
    EXPECT_EQ(cell->location(), (AcGePoint3d{30, 50, 0}));
    // The link was written as "00" and lower case: read as the host gives handles.
    EXPECT_EQ(FirstXDataText(label, u"QXBOM_LABEL_TYPEHANDLE", 1005), cell->objectHandle().text());
    EXPECT_EQ(FirstXDataText(cell, u"QXBOM_TYPE_LABELHANDLE", 1005), label->objectHandle().text());
    EXPECT_EQ(FirstXDataText(cell, u"QXBOM_CODE"), u"C-001 主");
    EXPECT_EQ(FirstXDataText(label, u"QXBOM_LABEL"), u"");
    EXPECT_EQ(XrecordItems(label->extensionDictionary(), u"QXBOM_LABEL"),
              DrawingBuilder::TextItems(1, {u"标号:QF1", u"序号:1"}));

    const auto* circuit = AcDbBlockReference::cast(entities[3]);
    ASSERT_NE(circuit, nullptr);
    EXPECT_EQ(blockNameOf(circuit), u"CIRCUIT");
    EXPECT_EQ(circuit->position(), (AcGePoint3d{100, 200, 0}));
    // Definition x 0.5..11, y 0..3 around base (1, 1); doubled and turned a quarter.
    EXPECT_EQ(ExtentsText(circuit), "96,199 102,220");
    EXPECT_EQ(FirstXDataText(circuit, u"QX_Circuit1_No"), u"2＠K03『x』");
    const XDataApp* kinds = circuit->findXData(u"QX_KINDS");
    ASSERT_NE(kinds, nullptr);
    EXPECT_EQ(kinds->items, (ResItems{ResItem::text(1000, u"文"), ResItem::text(1005, u"1F"),
                                      ResItem::point(1010, {1, 2, 3}), ResItem::real(1040, 2.5),
                                      ResItem::integer(1070, 7), ResItem::integer(1071, 70000)}));
    EXPECT_EQ(XrecordItems(circuit->extensionDictionary(), u"qx_circui1_bomrecord"),
              DrawingBuilder::TextItems(1, {u"型号", u"NSX100F", u"数量", u"2"}));
    EXPECT_EQ(XrecordItems(circuit->extensionDictionary(), u" QX_CIRCUI1_NewAddInfo "),
              (ResItems{ResItem::text(1, u"附加"), ResItem::real(40, 1.5), ResItem::point(10, {4, 5, 6}),
                        ResItem::integer(70, 3)}));

    const auto* anonymous = AcDbBlockReference::cast(entities[4]);
    ASSERT_NE(anonymous, nullptr);
    EXPECT_TRUE(blockNameOf(anonymous).StartsWith(u"*U"));
    EXPECT_EQ(ExtentsText(anonymous), "0,0 4,2");
    EXPECT_EQ(FirstXDataText(anonymous, u"QX_SYMB2_MULTI"), u"1");

    ASSERT_NE(AcDbMText::cast(entities[5]), nullptr);
    EXPECT_EQ(AcDbMText::cast(entities[5])->contents(), kLongText);

    // An old-style polyline stays one in a file of R14 or later: no light-weight polyline, its shape kept.
    EXPECT_EQ(AcDbPolyline::cast(entities[6]), nullptr);
    const auto* kept = AcDb2dPolyline::cast(entities[6]);
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(PolylineText(kept->shape()), "0,0 b0.5;10,0 b0;10,10 b0 open");
    ASSERT_NE(AcDbPolyline::cast(entities[7]), nullptr);
    EXPECT_EQ(PolylineText(*AcDbPolyline::cast(entities[7])), "0,0 b0;3,4 b-1 open");
}

TEST_P(SampleDrawing, BlocksPaperSpaceAndNamedObjects) {
    auto db = ReadFixture(GetParam());
    const auto paper = EntitiesOf(db->paperSpaceId());
    ASSERT_EQ(paper.size(), 1u);
    EXPECT_EQ(CString(AcDbText::cast(paper[0])->textStringConst()), u"图纸空间");

    const auto inside = BlockEntities(db.get(), u"circuit");
    ASSERT_EQ(inside.size(), 5u);
    const auto* marker = AcDbPolyline::cast(inside[2]);
    ASSERT_NE(marker, nullptr);
    EXPECT_EQ(PolylineText(*marker), "0.5,1 b1;1.5,1 b1 closed");
    EXPECT_EQ(blockNameOf(AcDbBlockReference::cast(inside[3])), u"SUB");
    const auto* attdef = AcDbAttributeDefinition::cast(inside[4]);
    ASSERT_NE(attdef, nullptr);
    EXPECT_EQ(attdef->tag(), u"位号");
    EXPECT_EQ(CString(AcDbText::cast(inside[4])->textStringConst()), u"QF1");

    AcDbDictionary* named = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(named, AcDb::kForRead), Acad::eOk);
    AcDbObjectId qx;
    ASSERT_EQ(named->getAt(u"QX_DWG_DICITIONARY", qx), Acad::eOk);
    EXPECT_EQ(XrecordItems(qx, u"QX_LOCATION_XRECORD"), DrawingBuilder::TextItems(1, {u"安装 位置", u"A柜"}));
}

INSTANTIATE_TEST_SUITE_P(Versions, SampleDrawing,
                         testing::Values("sample_r2000.dxf", "sample_r2004.dxf", "sample_r2018.dxf"));

TEST(DxfReaderTest, R12WithAndWithoutHandles) {
    for (const char* name : {"sample_r12.dxf", "nohandles_r12.dxf"}) {
        SCOPED_TRACE(name);
        Acad::ErrorStatus status;
        auto db = ReadFixture(name, &status);
        ASSERT_EQ(status, Acad::eOk);
        const auto entities = EntitiesOf(db->modelSpaceId());
        ASSERT_EQ(entities.size(), 7u);
        EXPECT_EQ(CString(AcDbText::cast(entities[0])->textStringConst()), u"一次额定电压:10kV");
        EXPECT_EQ(FirstXDataText(entities[0], u"QX_SYS_HEAD_ITEMNAME"), u"一次额定电压");
        EXPECT_EQ(CString(AcDbText::cast(entities[2])->textStringConst()), u"{\\fSimSun|b0;断路器}");
        const auto* circuit = AcDbBlockReference::cast(entities[3]);
        ASSERT_NE(circuit, nullptr);
        EXPECT_EQ(ExtentsText(circuit), "96,199 102,220");
        EXPECT_EQ(EntitiesOf(db->paperSpaceId()).size(), 1u);

        // Every object has a handle of its own, and each handle finds its object.
        for (const AcDbEntity* entity : entities) {
            AcDbObjectId id;
            ASSERT_FALSE(entity->objectHandle().isNull());
            ASSERT_EQ(db->getAcDbObjectId(id, false, entity->objectHandle()), Acad::eOk);
            EXPECT_EQ(id, entity->objectId());
        }
    }
}

// Written by ezdxf: groups that readers commonly take for something else.
TEST(DxfReaderTest, MultiLineAttributeDefinitionsSpacePolylinesAndXrecordReals) {
    Acad::ErrorStatus status;
    auto db = ReadFixture("details_r2018.dxf", &status);
    ASSERT_EQ(status, Acad::eOk);

    const auto inside = BlockEntities(db.get(), u"ATTBLOCK");
    ASSERT_EQ(inside.size(), 1u);
    const auto* attdef = AcDbAttributeDefinition::cast(inside[0]);
    ASSERT_NE(attdef, nullptr);
    // The definition's own text and place, not those of the MTEXT embedded behind group 101.
    EXPECT_EQ(attdef->textString(), u"第一行");
    EXPECT_EQ(attdef->position(), (AcGePoint3d{1, 2, 0}));
    EXPECT_EQ(attdef->tag(), u"备注");

    // None of them is a flat polyline with its heights dropped.
    const auto model = EntitiesOf(db->modelSpaceId());
    ASSERT_EQ(model.size(), 4u);
    const auto* space = AcDb3dPolyline::cast(model[0]);
    const auto* mesh = AcDbPolygonMesh::cast(model[1]);
    const auto* faces = AcDbPolyFaceMesh::cast(model[2]);
    ASSERT_TRUE(space && mesh && faces);
    EXPECT_EQ(VerticesText(*space), "0,0,0;1,2,3;4,5,-6");
    AcDbExtents e;
    ASSERT_EQ(space->getGeomExtents(e), Acad::eOk);
    EXPECT_EQ(e.minPoint(), (AcGePoint3d{0, 0, -6}));
    EXPECT_EQ(e.maxPoint(), (AcGePoint3d{4, 5, 3}));
    EXPECT_EQ((std::pair{mesh->mSize(), mesh->nSize()}), (std::pair{2, 2}));
    EXPECT_EQ(VerticesText(*mesh), "0,0,1;0,10,2;10,0,3;10,10,-4");
    EXPECT_EQ(VerticesText(*faces), "0,0,7;2,0,7;2,2,8");
    ASSERT_EQ(faces->numFaces(), 1u);
    EXPECT_EQ(faces->faceAt(0), (AcDbPolyFaceMesh::Face{1, 2, 3, 0}));

    AcDbObjectPointer<AcDbDictionary> named(db->namedObjectsDictionaryId(), AcDb::kForRead);
    AcDbObjectId details;
    ASSERT_EQ(named->getAt(u"QX_DETAILS", details), Acad::eOk);
    EXPECT_EQ(XrecordItems(details, u"REALS"), (ResItems{ResItem::text(1, u"x"), ResItem::real(38, 1.25),
                                                         ResItem::real(39, 2.5), ResItem::point(10, {1, 2, 3})}));
}
