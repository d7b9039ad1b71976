#include "SettingsFixture.h"

#include "settings/HistoryDataOprt.h"
#include "settings/HistoryDefaults.h"
#include "support/Format.h"

#include <filesystem>
#include <vector>

namespace {

std::u16string joined(const CStringArray& values, const CString& separator) {
    CString text;
    for (int i = 0; i < values.GetSize(); ++i) text += (i ? separator : CString()) + values[i];
    return text.str();
}

CString valueAt(CHistoryDataOprt& history, int index) {
    CString value = u"?";
    history.GetData(index, value);
    return value;
}

} // namespace

TEST(HistoryDefaults, HoldTheNamedValuesAndEndCountingToSixteen) {
    CStringArray values;
    GetHistoryDefaults(values);
    ASSERT_EQ(values.GetSize(), QX_HISTORY_DEFAULT_COUNT);
    for (const char16_t* named : {u"800", u"12", u"2.5", u"0.7", u"-5.0", u"0.00", u"A", u"WL", u"C30-15L(1.5)"})
        EXPECT_GE(values.Find(named), 0) << CString(named);
    for (int i = 1; i <= 16; ++i) EXPECT_EQ(values[QX_HISTORY_DEFAULT_COUNT - 17 + i], QxFormat(u"%d", i));
}

TEST_F(SettingsTest, AFirstRunWritesTheDefaultsWhereLocalDataIsAndElseOnlyAfterASetter) {
    CStringArray expected;
    GetHistoryDefaults(expected);
    const std::string defaults = EncodeLegacy(joined(expected, u"\r\n"));
    {
        CHistoryDataOprt history;
        EXPECT_EQ(history.m_arrData.GetSize(), QX_HISTORY_DEFAULT_COUNT);
    }
    EXPECT_FALSE(install.exists("LocalData"));
    {
        CHistoryDataOprt history;
        history.SetDoubleData(3, 2.5);
    }
    expected[3] = u"2.50";
    EXPECT_EQ(install.readFile("LocalData/HistoryData.txt"), EncodeLegacy(joined(expected, u"\r\n")));

    // LocalData there but no history file yet: the first run writes the defaults at once.
    std::filesystem::remove(install.native() + "/LocalData/HistoryData.txt");
    {
        CHistoryDataOprt history;
        EXPECT_EQ(install.readFile("LocalData/HistoryData.txt"), defaults);
        history.m_arrData[7] = u"双压";
        history.SetIntData(8, 3);
    }
    // GB18030 of 双压 is also valid UTF-8 ("˫ѹ"): the value must come back as written, and stay so across a
    // rewrite.
    for (const int value : {4, 5}) {
        CHistoryDataOprt history;
        EXPECT_EQ(valueAt(history, 7), u"双压");
        history.SetIntData(8, value);
    }
}

TEST_F(SettingsTest, HistoryIsNotRewrittenWithoutASetter) {
    const std::string lfOnly = "7\n\n9\n";
    install.writeFile("LocalData/HistoryData.txt", lfOnly);
    {
        CHistoryDataOprt history;
        // The file ends with a line end: its last value is empty; beyond the file's lines, the defaults.
        history.SetIntData(QX_HISTORY_DEFAULT_COUNT, 5);
        history.SetIntData(-1, 5);
        EXPECT_EQ((std::vector<CString>{valueAt(history, 0), valueAt(history, 3), valueAt(history, 4), valueAt(history, QX_HISTORY_DEFAULT_COUNT)}),
                  (std::vector<CString>{u"7", u"", u"1", u""}));
        EXPECT_FALSE(history.m_bChanged);
    }
    EXPECT_EQ(install.readFile("LocalData/HistoryData.txt"), lfOnly);
}

TEST_F(SettingsTest, HistoryKeepsExtraLinesAndWritesTheLegacyCodePage) {
    CStringArray lines;
    GetHistoryDefaults(lines);
    lines[50] = u"项目";
    lines.Add(u"多出来的");
    lines.Add(u"");
    writeUtf8("LocalData/HistoryData.txt", joined(lines, u"\n"));
    {
        CHistoryDataOprt history;
        ASSERT_EQ(history.m_arrData.GetSize(), QX_HISTORY_DEFAULT_COUNT + 2);
        EXPECT_EQ(valueAt(history, 50), u"项目");
        history.SetDoubleData(0, 0.7);
        history.SetIntData(QX_HISTORY_DEFAULT_COUNT, -12);
    }
    lines[0] = u"0.70";
    lines[QX_HISTORY_DEFAULT_COUNT] = u"-12";
    // The empty last value is written as an empty last line and read back as one.
    EXPECT_EQ(install.readFile("LocalData/HistoryData.txt"), EncodeLegacy(joined(lines, u"\r\n")));
    CHistoryDataOprt again;
    EXPECT_EQ(again.m_arrData.GetSize(), QX_HISTORY_DEFAULT_COUNT + 2);
}
