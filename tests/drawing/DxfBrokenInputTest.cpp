// The DXF reader on broken input: it fails or passes the bad object over, and never crashes or hangs.
#include "DxfFixtures.h"
#include "common/TempFolder.h"
#include "drawing/dxf/DxfReader.h"
#include "drawing/dxf/DxfTextDecoder.h"

#include <gtest/gtest.h>

TEST(DxfBrokenInputTest, BrokenFramesDoNotOpenAndADwgPathTakesDxfInsideOrBeside) {
    for (const char* name : {"broken_truncated.dxf", "broken_groupcode.dxf", "broken_binary.dwg", "broken_empty.dxf"}) {
        SCOPED_TRACE(name);
        Acad::ErrorStatus status;
        auto db = ReadFixture(name, &status);
        EXPECT_NE(status, Acad::eOk);
        EXPECT_TRUE(db->modelSpaceId().isNull());
    }
    Acad::ErrorStatus status;
    ReadFixture("no_such_file.dwg", &status);
    EXPECT_EQ(status, Acad::eFileNotFound);

    // A ".dwg" path takes DXF text inside it, or a DXF file of that name beside it in any case.
    std::string dxf;
    ASSERT_TRUE(QxFs::ReadBytes(FixturePath("sample_r2018.dxf"), dxf));
    TempFolder folder;
    folder.writeFile("inside.dwg", dxf);
    folder.writeFile("beside.dwg", "AC1032 binary");
    folder.writeFile("BESIDE.DXF", dxf);
    folder.writeFile("alone.dwg", "AC1032 binary");
    folder.writeFile("lone.dxf", dxf);
    AcDbDatabase db(false, true);
    EXPECT_EQ(db.readDwgFile(folder.logic() + u"inside.dwg"), Acad::eOk);
    EXPECT_EQ(EntitiesOf(db.modelSpaceId()).size(), 8u);
    EXPECT_EQ(db.originalFileName(), folder.logic() + u"inside.dwg");
    EXPECT_EQ(db.readDwgFile(folder.logic() + u"beside.dwg"), Acad::eOk);
    EXPECT_EQ(EntitiesOf(db.modelSpaceId()).size(), 8u);
    EXPECT_EQ(db.readDwgFile(folder.logic() + u"alone.dwg"), Acad::eBadDwgHeader);
    EXPECT_TRUE(db.modelSpaceId().isNull());
    EXPECT_EQ(db.readDwgFile(folder.logic() + u"lone.dwg"), Acad::eFileNotFound);
}

TEST(DxfBrokenInputTest, BadObjectsArePassedOver) {
    Acad::ErrorStatus status;
    auto db = ReadFixture("broken_number.dxf", &status);
    ASSERT_EQ(status, Acad::eOk);
    const auto entities = EntitiesOf(db->modelSpaceId());
    ASSERT_EQ(entities.size(), 7u);  // the head text with its bad x is gone
    EXPECT_EQ(AcDbText::cast(entities[0]), nullptr);

    auto links = ReadFixture("broken_links.dxf", &status);
    ASSERT_EQ(status, Acad::eOk);
    const auto texts = EntitiesOf(links->modelSpaceId());
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_TRUE(texts[0]->extensionDictionary().isNull());
    // Dictionaries that hold each other resolve without walking forever.
    AcDbObjectPointer<AcDbDictionary> named(links->namedObjectsDictionaryId(), AcDb::kForRead);
    AcDbObjectId a, b, back;
    ASSERT_EQ(named->getAt(u"CYCLE_A", a), Acad::eOk);
    ASSERT_EQ(AcDbDictionary::cast(a.objectUnchecked())->getAt(u"CYCLE_B", b), Acad::eOk);
    ASSERT_EQ(AcDbDictionary::cast(b.objectUnchecked())->getAt(u"BACK", back), Acad::eOk);
    EXPECT_EQ(back, a);
}

TEST(DxfBrokenInputTest, EveryCutAndFlippedByteIsSurvived) {
    std::string bytes;
    ASSERT_TRUE(QxFs::ReadBytes(FixturePath("sample_r2000.dxf"), bytes));
    for (size_t cut = 0; cut < bytes.size(); cut += 211) {
        AcDbDatabase db(false, true);
        ReadDxfText(std::string_view(bytes).substr(0, cut), db);
    }
    unsigned seed = 12345;
    for (int round = 0; round < 200; ++round) {
        std::string damaged = bytes;
        for (int k = 0; k < 8; ++k) {
            seed = seed * 1103515245u + 12345u;
            damaged[(seed >> 8) % damaged.size()] = static_cast<char>(seed >> 24);
        }
        AcDbDatabase db(false, true);
        if (ReadDxfText(damaged, db) == DxfLoadStatus::Ok) {
            EXPECT_FALSE(db.modelSpaceId().isNull());
        }
    }
}

TEST(DxfTextDecoderTest, CodePagesEscapesAndUtf8) {
    DxfTextDecoder legacy;
    legacy.setVersion("AC1015");
    legacy.setCodePage("ANSI_936");
    EXPECT_EQ(legacy.decode("\xB6\xCF\\U+8DEF\\M+5D6F7"), u"断路主");
    EXPECT_EQ(legacy.decode("\\U+12"), u"\\U+12");  // too short to be an escape
    EXPECT_EQ(legacy.decode("\\M+9D6F7"), u"\\M+9D6F7");
    // Caret notation: a control character or a caret; anything else stays as written.
    EXPECT_EQ(legacy.decode("a^Ib^ c^J^M^@^a^"), u"a\tb^c\n\r^@^a^");
    EXPECT_EQ(legacy.decode("\x81^I"), u"\u4E5BI");  // 0x5E as the second byte of a character is no caret
    EXPECT_EQ(legacy.decode("\\U+005EI"), u"^I");    // nor is an escaped caret

    DxfTextDecoder utf8;
    utf8.setVersion("AC1032");
    EXPECT_EQ(utf8.decode("\xE6\x96\xAD\\U+221A"), u"断\\U+221A");  // taken as stored
    EXPECT_EQ(utf8.decode("^I^ ^_"), u"\t^\x1F");
    EXPECT_EQ(IconvNameOfDwgCodePage("ansi_1252"), "CP1252");
    EXPECT_EQ(IconvNameOfDwgCodePage("nonsense"), "");
}
