#include "SettingsFixture.h"

#include "settings/KindLists.h"
#include "settings/SettingsSession.h"

#include <map>
#include <vector>

namespace {

using KindReader = bool (*)(CKindColumns&);

// Every entry, its columns joined by "|".
std::vector<CString> rows(const CKindColumns& kinds) {
    std::vector<CString> all;
    for (int i = 0; i < kinds.GetSize(); ++i)
        all.push_back(kinds.m_arrName[i] + u"|" + kinds.m_arrSymbol[i] + u"|" + kinds.m_arrWidth[i] + u"|" +
                      kinds.m_arrRest[i]);
    return all;
}

} // namespace

TEST_F(SettingsTest, KindListsComeFromTheirFilesElseFromTheDefaults) {
    // With no file, each reader gives its default list and says so.
    std::map<KindReader, std::vector<CString>> defaults;
    for (const KindReader read : {ReadTerminalKinds, ReadWireKinds, ReadCircuitKinds}) {
        CKindColumns kinds;
        EXPECT_FALSE(read(kinds));
        defaults[read] = rows(kinds);
    }
    const auto& terminals = defaults[ReadTerminalKinds];
    const auto& wires = defaults[ReadWireKinds];
    const auto& circuits = defaults[ReadCircuitKinds];
    ASSERT_EQ((std::vector<size_t>{terminals.size(), wires.size(), circuits.size()}), (std::vector<size_t>{11, 6, 3}));
    EXPECT_EQ((std::vector<CString>{terminals[3], terminals[10], wires[2], circuits[2]}),
              (std::vector<CString>{u"电流端子|粗线|8.20|", u"双进双出刀闸端子|＃＆|6.20|", u"4*0.5mm屏蔽线|★||", u"普通回路|||"}));

    const struct {
        const char* what;
        KindReader read;
        std::string file;
        bool utf8;  // else the legacy code page
        std::u16string text;
        bool fromFile;  // else the default list stands in
        std::vector<CString> expected;
    } files[] = {
        {"terminal lines: full-width separators, a rest behind the second \",\", a line naming nothing, no width",
         ReadTerminalKinds, "Data/DZBDZLXFH.txt", false,
         u" 甲端子 ：粗线，7\r\n乙端子:▽,6.25,红\r\n丙端子:,5,a,b,c\r\n不是一行\r\n丁端子:X\r\n", true,
         {u"甲端子|粗线|7.00|", u"乙端子|▽|6.25|红", u"丙端子||5.00|a,b,c", u"丁端子|X|0.00|"}},
        {"a terminal file of the old form, no \",\" in its first line, is not used", ReadTerminalKinds,
         "Data/DZBDZLXFH.txt", true, u"普通端子:\r\n电流端子:粗线,8.2\r\n", false, {}},
        {"a full-width comma in the first line is of the new form", ReadTerminalKinds, "Data/DZBDZLXFH.txt", true,
         u"普通端子:，6\r\n", true, {u"普通端子||6.00|"}},
        {"wire kinds mix the short and the long form", ReadWireKinds, "Data/DZBDXLXFH.txt", false,
         u"屏蔽线：@\r\n双绞线:*,4.5,备注\r\n\r\n", true, {u"屏蔽线|@||", u"双绞线|*|4.50|备注"}},
        {"a circuit value keeps its own colon", ReadCircuitKinds, "Data/DZBHUILUFH.txt", false,
         u"电流回路:A:B\r\n电压回路：U\r\n", true, {u"电流回路|A:B||", u"电压回路|U||"}},
        {"a circuit file of no entry", ReadCircuitKinds, "Data/DZBHUILUFH.txt", false, u"junk\r\n", false, {}},
    };
    for (const auto& file : files) {
        if (file.utf8) writeUtf8(file.file, file.text);
        else writeLegacy(file.file, file.text);
        CKindColumns kinds;
        EXPECT_EQ(file.read(kinds), file.fromFile) << file.what;
        EXPECT_EQ(rows(kinds), file.fromFile ? file.expected : defaults[file.read]) << file.what;
    }
}

TEST_F(SettingsTest, DistLimitIsAPositiveNumberReadOncePerSession) {
    const auto limitOf = [&](const std::string& content) {
        install.writeFile("Data/DistLimit.txt", content);
        return CSettingsSession().GetDistLimit();
    };
    EXPECT_DOUBLE_EQ(CSettingsSession().GetDistLimit(), 0.5);
    const std::vector<double> limits{limitOf("1.25\r\n3\r\n"), limitOf("0.25"), limitOf("0"), limitOf("-2"),
                                     limitOf("abc")};
    EXPECT_EQ(limits, (std::vector<double>{1.25, 0.25, 0.5, 0.5, 0.5}));

    CSettingsSession session;
    install.writeFile("Data/DistLimit.txt", "2");
    EXPECT_DOUBLE_EQ(session.GetDistLimit(), 2.0);
    install.writeFile("Data/DistLimit.txt", "3");
    EXPECT_DOUBLE_EQ(session.GetDistLimit(), 2.0);
}
