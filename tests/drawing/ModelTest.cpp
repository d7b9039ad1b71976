// The drawing model: handles, look-ups, walks, xdata, dictionaries and opening.
#include "drawing/model/DrawingBuilder.h"
#include "support/Format.h"

#include <gtest/gtest.h>

TEST(AcDbHandleTest, TextIsUpperHexWithoutLeadingZeros) {
    EXPECT_EQ(AcDbHandle(0x1a2b).text(), u"1A2B");
    EXPECT_EQ(AcDbHandle(0).text(), u"0");
    EXPECT_EQ(AcDbHandle(std::u16string_view(u"  00ff ")).value(), 0xFFu);
    EXPECT_TRUE(AcDbHandle(std::u16string_view(u"xyz")).isNull());
    EXPECT_TRUE(AcDbHandle(std::u16string_view(u"1FFFFFFFFFFFFFFFF")).isNull());  // 17 digits do not fit
    // Sixteen digits fit, however many zeros lead them; a byte beyond ASCII is no digit.
    EXPECT_EQ(AcDbHandle(std::u16string_view(u"000FEDCBA9876543210")).value(), 0xFEDCBA9876543210u);
    EXPECT_TRUE(AcDbHandle(std::u16string_view(u"1\u0131")).isNull());

    char16_t small[3];
    EXPECT_FALSE(AcDbHandle(0xABC).getIntoAsciiBuffer(small, 3));
    char16_t fits[4];
    ASSERT_TRUE(AcDbHandle(0xABC).getIntoAsciiBuffer(fits, 4));
    EXPECT_EQ(CString(fits), u"ABC");
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

TEST(AcDbObjectTest, XDataByApplicationIgnoringCaseAndOpeningChecksClassAndErasure) {
    DrawingBuilder b;
    const AcDbObjectId id = b.addMText(u"x", {});
    b.setXDataStrings(id, u"QX_SYMB1_TYPE", {u"断路器", u"second"});
    b.setXData(id, u"OTHER", {ResItem::integer(1070, 7), ResItem::point(1010, {1, 2, 3})});

    AcDbObjectPointer<AcDbMText> text(id, AcDb::kForRead);
    ASSERT_EQ(text.openStatus(), Acad::eOk);
    // The chain of one application, found ignoring case, and of all of them.
    EXPECT_EQ(FromRbChain(ResbufPtr(text->xData(u"qx_symb1_type")).get()),
              (ResItems{ResItem::text(1001, u"QX_SYMB1_TYPE"), ResItem::text(1000, u"断路器"), ResItem::text(1000, u"second")}));
    EXPECT_EQ(text->xData(u"MISSING"), nullptr);
    EXPECT_EQ(FromRbChain(ResbufPtr(text->xData()).get()),
              (ResItems{ResItem::text(1001, u"QX_SYMB1_TYPE"), ResItem::text(1000, u"断路器"), ResItem::text(1000, u"second"),
                        ResItem::text(1001, u"OTHER"), ResItem::integer(1070, 7), ResItem::point(1010, {1, 2, 3})}));

    // A chain naming an application with no items removes that application's xdata only.
    ResbufPtr removal(ToRbChain({ResItem::text(1001, u"qx_symb1_type")}));
    EXPECT_EQ(text->setXData(removal.get()), Acad::eOk);
    EXPECT_EQ(text->findXData(u"QX_SYMB1_TYPE"), nullptr);
    EXPECT_NE(text->findXData(u"OTHER"), nullptr);

    const AcDbObjectId plain = b.addText(u"t", {});
    AcDbMText* mtext = nullptr;
    EXPECT_EQ(acdbOpenObject(mtext, plain, AcDb::kForRead), Acad::eNotThatKindOfClass);
    EXPECT_EQ(mtext, nullptr);
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, b.database().namedObjectsDictionaryId(), AcDb::kForRead),
              Acad::eNotThatKindOfClass);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, AcDbObjectId::kNull, AcDb::kForRead), Acad::eNullObjectId);
    b.erase(plain);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, plain, AcDb::kForRead), Acad::eWasErased);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, plain, AcDb::kForRead, true), Acad::eOk);
    // An attribute definition is text.
    EXPECT_NE(AcDbText::cast(b.addAttributeDefinition(u"TAG", u"v", {}).objectUnchecked()), nullptr);
}

TEST(AcDbDictionaryTest, LooksUpIgnoringCaseButNotBlanksAndKeepsOrderAtAnySize) {
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
    EXPECT_EQ(FromRbChain(ResbufPtr(chain).get()), (ResItems{ResItem::text(1, u"x")}));

    // Large dictionaries look up as small ones.
    const AcDbObjectId manyId = b.namedDictionary(u"MANY");
    auto* many = AcDbDictionary::cast(manyId.objectUnchecked());
    std::vector<AcDbObjectId> records;
    for (int i = 0; i < 40; ++i) records.push_back(b.addXrecordTo(manyId, QxFormat(u"Entry%d", i), {}));
    // A name given again replaces the entry's object; another case of a name finds the first entry.
    const AcDbObjectId replaced = b.addXrecordTo(manyId, u"ENTRY7", {});
    many->addEntry(u"entry8", records[0]);
    EXPECT_EQ(many->numEntries(), 41u);
    for (int i = 0; i < 40; ++i) {
        AcDbObjectId id;
        ASSERT_EQ(many->getAt(QxFormat(u"entry%d", i), id), Acad::eOk) << i;
        EXPECT_EQ(id, i == 7 ? replaced : records[static_cast<size_t>(i)]) << i;
    }
    EXPECT_FALSE(many->has(u"Entry40"));
    EXPECT_EQ(CString(many->entries()[7].name), u"Entry7");
}

TEST(ResbufTest, ChainsKeepEveryKindOfValueAndItemsCopyAndMoveTextOfAnyLength) {
    const ResItems items{ResItem::text(1, u"文字"), ResItem::real(40, 2.5), ResItem::point(10, {1, 2, 3}),
                         ResItem::integer(70, -3), ResItem::integer(90, 100000), ResItem::integer(160, 1LL << 40),
                         ResItem::text(330, u"1F")};
    ResbufPtr chain(ToRbChain(items));
    EXPECT_EQ(chain->rbnext->resval.rreal, 2.5);
    EXPECT_EQ(chain->rbnext->rbnext->rbnext->resval.rint, -3);
    EXPECT_EQ(FromRbChain(chain.get()), items);
    EXPECT_EQ(ToRbChain({}), nullptr);
    EXPECT_EQ(acutRelRb(nullptr), RTNORM);

    // Items copy and move text of any length.
    const CString longText(u'长', 300);
    ResItems texts{ResItem::text(1, longText), ResItem::text(1000, u"12 units ok!"),
                   ResItem::text(1000, u"13 units ok!!"), ResItem::real(38, 1.5)};
    ResItems copy = texts;
    texts[0] = ResItem::text(1, u"short");
    texts[1] = texts[2];
    texts[2] = std::move(texts[3]);
    EXPECT_EQ(copy[0].asText(), longText);
    EXPECT_EQ(copy[1].textView(), u"12 units ok!");
    EXPECT_EQ(copy[2].textView(), u"13 units ok!!");
    EXPECT_EQ(texts[1], copy[2]);
    EXPECT_EQ(texts[2], ResItem::real(38, 1.5));
    EXPECT_NE(ResItem::real(40, 1.0), ResItem::integer(40, 1));
    EXPECT_EQ(ResItem::real(40, 1e300).asInteger(), 0);  // no integer value, and no overflow
    ResItems moved = std::move(copy);
    EXPECT_EQ(moved[0].asText(), longText);
}

TEST(AcDbDatabaseTest, FindsObjectsByHandleFarApartOrAtTheTopAndGivesFreshHandlesOnCollision) {
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

    std::vector<AcDbObjectId> ids;
    // Handles that share their low bits, then the largest handle there is.
    for (std::uint64_t i = 1; i <= 3000; ++i) {
        AcDbObjectId id;
        ASSERT_EQ(db.addAcDbObject(id, std::make_unique<AcDbXrecord>(), AcDbHandle(i << 40)), Acad::eOk);
        ids.push_back(id);
    }
    AcDbObjectId top;
    db.addAcDbObject(top, std::make_unique<AcDbXrecord>(), AcDbHandle(~std::uint64_t{0}));
    EXPECT_EQ(top.handle().value(), ~std::uint64_t{0});
    // The next fresh handle wraps around, but never to the null handle or a taken one.
    AcDbObjectId fresh;
    ASSERT_EQ(db.addAcDbObject(fresh, std::make_unique<AcDbXrecord>()), Acad::eOk);
    EXPECT_FALSE(fresh.handle().isNull());
    for (size_t i = 0; i < ids.size(); ++i) {
        ASSERT_EQ(db.getAcDbObjectId(found, false, AcDbHandle(std::uint64_t{i + 1} << 40)), Acad::eOk);
        EXPECT_EQ(found, ids[i]);
    }
    EXPECT_EQ(db.getAcDbObjectId(found, false, fresh.handle()), Acad::eOk);
    EXPECT_EQ(found, fresh);
}
