#include "SettingsFixture.h"

#include "settings/KindLists.h"
#include "settings/SettingsSession.h"

#include <vector>

namespace {

// Every entry, its columns joined by "|".
std::vector<CString> rows(const CKindColumns& kinds) {
    std::vector<CString> all;
    for (int i = 0; i < kinds.GetSize(); ++i) all.push_back(kinds.m_arrName[i] + u"|" + kinds.m_arrSymbol[i] + u"|" + kinds.m_arrWidth[i] + u"|" + kinds.m_arrRest[i]);
    return all;
}

} // namespace

TEST_F(SettingsTest, AbsentListFilesGiveTheDefaultLists) {
    CKindColumns kinds;
    EXPECT_FALSE(ReadTerminalKinds(kinds));
    const std::vector<CString> terminals = rows(kinds);
    ASSERT_EQ(terminals.size(), 11u);
    EXPECT_EQ((std::vector<CString>{terminals[3], terminals[10]}), (std::vector<CString>{u"电流端子|粗线|8.20|", u"双进双出刀闸端子|＃＆|6.20|"}));
    EXPECT_FALSE(ReadWireKinds(kinds));
    ASSERT_EQ(kinds.GetSize(), 6);
    EXPECT_EQ(rows(kinds)[2], u"4*0.5mm屏蔽线|★||");
    EXPECT_FALSE(ReadCircuitKinds(kinds));
    ASSERT_EQ(kinds.GetSize(), 3);
    EXPECT_EQ(rows(kinds)[2], u"普通回路|||");
}

TEST_F(SettingsTest, TerminalKindLinesSplitIntoNameSymbolWidthAndRest) {
    writeLegacy("Data/DZBDZLXFH.txt",
                u" 甲端子 ：粗线，7\r\n"       // full-width separators
                u"乙端子:▽,6.25,红\r\n"        // three items: the third is the rest
                u"丙端子:,5,a,b,c\r\n"         // more: everything behind the second ","
                u"不是一行\r\n"                // names nothing
                u"丁端子:X\r\n");              // no width
    CKindColumns kinds;
    EXPECT_TRUE(ReadTerminalKinds(kinds));
    EXPECT_EQ(rows(kinds), (std::vector<CString>{u"甲端子|粗线|7.00|", u"乙端子|▽|6.25|红", u"丙端子||5.00|a,b,c", u"丁端子|X|0.00|"}));
}

TEST_F(SettingsTest, ATerminalFileOfTheOldFormIsReplacedByTheDefaults) {
    writeUtf8("Data/DZBDZLXFH.txt", u"普通端子:\r\n电流端子:粗线,8.2\r\n");
    CKindColumns kinds;
    EXPECT_FALSE(ReadTerminalKinds(kinds));
    EXPECT_EQ(kinds.GetSize(), 11);
    writeUtf8("Data/DZBDZLXFH.txt", u"普通端子:，6\r\n");
    EXPECT_TRUE(ReadTerminalKinds(kinds));
    EXPECT_EQ(kinds.GetSize(), 1);
}

TEST_F(SettingsTest, WireKindsMixTheShortAndTheLongForm) {
    writeLegacy("Data/DZBDXLXFH.txt", u"屏蔽线：@\r\n双绞线:*,4.5,备注\r\n\r\n");
    CKindColumns kinds;
    EXPECT_TRUE(ReadWireKinds(kinds));
    EXPECT_EQ(rows(kinds), (std::vector<CString>{u"屏蔽线|@||", u"双绞线|*|4.50|备注"}));
}

TEST_F(SettingsTest, ACircuitValueKeepsItsOwnColon) {
    writeLegacy("Data/DZBHUILUFH.txt", u"电流回路:A:B\r\n电压回路：U\r\n");
    CKindColumns kinds;
    EXPECT_TRUE(ReadCircuitKinds(kinds));
    EXPECT_EQ(rows(kinds), (std::vector<CString>{u"电流回路|A:B||", u"电压回路|U||"}));

    install.writeFile("Data/DZBHUILUFH.txt", "junk\r\n");
    EXPECT_FALSE(ReadCircuitKinds(kinds));
    EXPECT_EQ(kinds.GetSize(), 3);
}

TEST_F(SettingsTest, DistLimitIsAPositiveNumberReadOncePerSession) {
    const auto distLimitOf = [&](const std::string& content) {
        install.writeFile("Data/DistLimit.txt", content);
        return CSettingsSession().GetDistLimit();
    };
    EXPECT_DOUBLE_EQ(CSettingsSession().GetDistLimit(), 0.5);
    EXPECT_EQ((std::vector<double>{distLimitOf("1.25\r\n3\r\n"), distLimitOf("0"), distLimitOf("-2"), distLimitOf("abc")}),
              (std::vector<double>{1.25, 0.5, 0.5, 0.5}));

    CSettingsSession session;
    install.writeFile("Data/DistLimit.txt", "2");
    EXPECT_DOUBLE_EQ(session.GetDistLimit(), 2.0);
    install.writeFile("Data/DistLimit.txt", "3");
    EXPECT_DOUBLE_EQ(session.GetDistLimit(), 2.0);
}

TEST_F(SettingsTest, ErpOrCadModeComesFromTheFirstLineInAnyCase) {
    EXPECT_EQ(CSettingsSession().GetErpOrCadMode(), QX_MODE_CAD);
    install.writeFile("Data/ErpOrCad.txt", "ERPsystem");
    EXPECT_EQ(CSettingsSession().GetErpOrCadMode(), QX_MODE_ERP);
    install.writeFile("Data/ErpOrCad.txt", "CAD\r\nBSF");
    EXPECT_EQ(CSettingsSession().GetErpOrCadMode(), QX_MODE_CAD);
}
