// The drawing model: handles, look-ups, walks, xdata, dictionaries and opening.
#include "drawing/model/DrawingBuilder.h"

#include <gtest/gtest.h>

TEST(AcDbHandleTest, TextIsUpperHexWithoutLeadingZeros) {
    EXPECT_EQ(AcDbHandle(0x1a2b).text(), u"1A2B");
    EXPECT_EQ(AcDbHandle(0).text(), u"0");
    EXPECT_EQ(AcDbHandle(std::u16string_view(u"  00ff ")).value(), 0xFFu);
    EXPECT_TRUE(AcDbHandle(std::u16string_view(u"xyz")).isNull());
    EXPECT_TRUE(AcDbHandle(std::u16string_view(u"1FFFFFFFFFFFFFFFF")).isNull());  // 17 digits do not fit

    char16_t small[3];
    EXPECT_FALSE(AcDbHandle(0xABC).getIntoAsciiBuffer(small, 3));
    char16_t fits[4];
    ASSERT_TRUE(AcDbHandle(0xABC).getIntoAsciiBuffer(fits, 4));
    EXPECT_EQ(CString(fits), u"ABC");
}

TEST(AcDbDatabaseTest, FindsObjectsByHandleAndGivesFreshHandlesOnCollision) {
    AcDbDatabase db;
    AcDbObjectId first;
    ASSERT_EQ(db.addAcDbObject(first, std::make_unique<AcDbXrecord>(), AcDbHandle(0x500)), Acad::eOk);
    AcDbObjectId second;
    db.addAcDbObject(second, std::make_unique<AcDbXrecord>(), AcDbHandle(0x500));
    EXPECT_NE(second.handle(), AcDbHandle(0x500));
    EXPECT_GT(db.handseed(), second.handle());

    AcDbObjectId found;
    EXPECT_EQ(db.getAcDbObjectId(found, false, AcDbHandle(0x500)), Acad::eOk);
    EXPECT_EQ(found, first);
    EXPECT_EQ(db.getAcDbObjectId(found, false, AcDbHandle(0x7777)), Acad::eUnknownHandle);
    EXPECT_TRUE(found.isNull());
    EXPECT_EQ(first.database(), &db);
}

TEST(AcDbBlockTableTest, WalksInDrawingOrderSkippingErasedAndNeedsWriteToAppend) {
    DrawingBuilder b;
    const AcDbObjectId a = b.addText(u"a", {});
    const AcDbObjectId gone = b.addMText(u"gone", {});
    const AcDbObjectId c = b.addLine({}, {1, 1, 0});
    b.erase(gone);

    AcDbBlockTable* table = nullptr;
    ASSERT_EQ(b.database().getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecord* model = nullptr;
    ASSERT_EQ(table->getAt(u"*MODEL_SPACE", model, AcDb::kForRead), Acad::eOk);
    table->close();

    std::unique_ptr<AcDbBlockTableRecordIterator> it;
    model->newIterator(it);
    std::vector<AcDbObjectId> seen;
    for (it->start(); !it->done(); it->step()) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(it->getEntity(entity, AcDb::kForRead), Acad::eOk);
        seen.push_back(entity->objectId());
        entity->close();
    }
    EXPECT_EQ(seen, (std::vector<AcDbObjectId>{a, c}));

    AcDbObjectId added;
    EXPECT_EQ(model->appendAcDbEntity(added, std::make_unique<AcDbText>()), Acad::eNotOpenForWrite);
    model->close();
    ASSERT_EQ(acdbOpenObject(model, b.modelSpace(), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(model->appendAcDbEntity(added, std::make_unique<AcDbText>()), Acad::eOk);
    model->close();
    EXPECT_EQ(model->entityIds().back(), added);
    EXPECT_EQ(AcDbEntity::cast(added.objectUnchecked())->blockId(), b.modelSpace());
}

TEST(AcDbObjectTest, XDataByApplicationIgnoringCase) {
    DrawingBuilder b;
    const AcDbObjectId id = b.addMText(u"x", {});
    b.setXDataStrings(id, u"QX_SYMB1_TYPE", {u"断路器", u"second"});
    b.setXData(id, u"OTHER", {ResItem::integer(1070, 7), ResItem::point(1010, {1, 2, 3})});

    AcDbObjectPointer<AcDbMText> text(id, AcDb::kForRead);
    ASSERT_EQ(text.openStatus(), Acad::eOk);
    ResbufPtr chain(text->xData(u"qx_symb1_type"));
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->restype, 1001);
    EXPECT_EQ(CString(chain->resval.rstring), u"QX_SYMB1_TYPE");
    ASSERT_NE(chain->rbnext, nullptr);
    EXPECT_EQ(chain->rbnext->restype, 1000);
    EXPECT_EQ(CString(chain->rbnext->resval.rstring), u"断路器");
    EXPECT_EQ(text->xData(u"MISSING"), nullptr);

    const ResItems all = FromRbChain(ResbufPtr(text->xData()).get());
    ASSERT_EQ(all.size(), 6u);
    EXPECT_EQ(all[3].asText(), u"OTHER");
    EXPECT_EQ(all[4].asInteger(), 7);
    EXPECT_EQ(all[5].asPoint(), (AcGePoint3d{1, 2, 3}));

    // A chain naming an application with no items removes that application's xdata only.
    ResbufPtr removal(ToRbChain({ResItem::text(1001, u"qx_symb1_type")}));
    EXPECT_EQ(text->setXData(removal.get()), Acad::eOk);
    EXPECT_EQ(text->findXData(u"QX_SYMB1_TYPE"), nullptr);
    EXPECT_NE(text->findXData(u"OTHER"), nullptr);
}

TEST(AcDbObjectTest, OpeningChecksClassAndErasure) {
    DrawingBuilder b;
    const AcDbObjectId text = b.addText(u"t", {});
    AcDbMText* mtext = nullptr;
    EXPECT_EQ(acdbOpenObject(mtext, text, AcDb::kForRead), Acad::eNotThatKindOfClass);
    EXPECT_EQ(mtext, nullptr);
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, b.database().namedObjectsDictionaryId(), AcDb::kForRead),
              Acad::eNotThatKindOfClass);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, AcDbObjectId::kNull, AcDb::kForRead), Acad::eNullObjectId);
    b.erase(text);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, text, AcDb::kForRead), Acad::eWasErased);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, text, AcDb::kForRead, true), Acad::eOk);
    // An attribute definition is text.
    EXPECT_NE(AcDbText::cast(b.addAttributeDefinition(u"TAG", u"v", {}).objectUnchecked()), nullptr);
}

TEST(AcDbDictionaryTest, LooksUpIgnoringCaseButNotBlanksAndKeepsOrder) {
    DrawingBuilder b;
    const AcDbObjectId owner = b.addMText(u"cell", {});
    b.addTextXrecord(owner, u"Second", {u"x"});
    b.addTextXrecord(owner, u" QX_CIRCUI1_BOMRECORD ", {u"型号", u"A"});
    auto* dictionary = AcDbDictionary::cast(b.extensionDictionary(owner).objectUnchecked());
    ASSERT_NE(dictionary, nullptr);
    EXPECT_TRUE(dictionary->has(u"SECOND"));
    EXPECT_FALSE(dictionary->has(u"QX_CIRCUI1_BOMRECORD"));
    EXPECT_TRUE(dictionary->has(u" qx_circui1_bomrecord "));

    std::vector<CString> names;
    for (auto it = dictionary->newIterator(); !it->done(); it->next()) names.push_back(it->name());
    EXPECT_EQ(names, (std::vector<CString>{u"Second", u" QX_CIRCUI1_BOMRECORD "}));

    AcDbObject* object = nullptr;
    ASSERT_EQ(dictionary->getAt(u"second", object, AcDb::kForRead), Acad::eOk);
    resbuf* chain = nullptr;
    ASSERT_EQ(AcDbXrecord::cast(object)->rbChain(chain), Acad::eOk);
    ResbufPtr owned(chain);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->restype, 1);
    EXPECT_EQ(CString(chain->resval.rstring), u"x");
    EXPECT_EQ(chain->rbnext, nullptr);
}

TEST(ResbufTest, ChainsKeepEveryKindOfValue) {
    const ResItems items{ResItem::text(1, u"文字"), ResItem::real(40, 2.5), ResItem::point(10, {1, 2, 3}),
                         ResItem::integer(70, -3), ResItem::integer(90, 100000), ResItem::integer(160, 1LL << 40),
                         ResItem::text(330, u"1F")};
    ResbufPtr chain(ToRbChain(items));
    EXPECT_EQ(chain->rbnext->resval.rreal, 2.5);
    EXPECT_EQ(chain->rbnext->rbnext->rbnext->resval.rint, -3);
    EXPECT_EQ(FromRbChain(chain.get()), items);
    EXPECT_EQ(ToRbChain({}), nullptr);
    EXPECT_EQ(acutRelRb(nullptr), RTNORM);
}
