#include "SettingsFixture.h"

#include "settings/HistoryDataOprt.h"
#include "settings/HistoryDefaults.h"
#include "support/Format.h"

namespace {

size_t countOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

} // namespace

TEST(HistoryDefaults, HoldTheNamedValuesAndEndCountingToSixteen) {
    CStringArray values;
    GetHistoryDefaults(values);
    ASSERT_EQ(values.GetSize(), QX_HISTORY_DEFAULT_COUNT);
    for (const char16_t* named : {u"800", u"12", u"2.5", u"0.7", u"-5.0", u"0.00", u"A", u"WL", u"C30-15L(1.5)"})
        EXPECT_GE(values.Find(named), 0) << CString(named);
    for (int i = 1; i <= 16; ++i) EXPECT_EQ(values[QX_HISTORY_DEFAULT_COUNT - 17 + i], QxFormat(u"%d", i));
    for (const CString& value : values) EXPECT_EQ(value.Find(u'\n'), -1);
}

TEST_F(SettingsTest, AFirstRunWithoutLocalDataWritesOnlyAfterASetter) {
    {
        CHistoryDataOprt history;
        EXPECT_EQ(history.m_arrData.GetSize(), QX_HISTORY_DEFAULT_COUNT);
    }
    EXPECT_FALSE(install.exists("LocalData"));
    {
        CHistoryDataOprt history;
        history.SetDoubleData(3, 2.5);
    }
    const std::string bytes = install.readFile("LocalData/HistoryData.txt");
    EXPECT_EQ(countOf(bytes, "\r\n"), static_cast<size_t>(QX_HISTORY_DEFAULT_COUNT - 1));
    EXPECT_EQ(countOf(bytes, "\n"), static_cast<size_t>(QX_HISTORY_DEFAULT_COUNT - 1));
    EXPECT_EQ(bytes.substr(bytes.size() - 6), "15\r\n16");
    EXPECT_EQ(bytes.substr(0, 13), "1\r\n1\r\n1\r\n2.50");
}

TEST_F(SettingsTest, AFirstRunWithLocalDataWritesTheDefaults) {
    install.makeFolder("LocalData");
    CHistoryDataOprt history;
    CStringArray defaults;
    GetHistoryDefaults(defaults);
    CString expected;
    for (int i = 0; i < defaults.GetSize(); ++i) expected += (i ? u"\r\n" : u"") + defaults[i];
    EXPECT_EQ(install.readFile("LocalData/HistoryData.txt"), EncodeLegacy(expected.str()));
}

TEST_F(SettingsTest, HistoryIsNotRewrittenWithoutASetter) {
    const std::string lfOnly = "7\n\n9\n";
    install.writeFile("LocalData/HistoryData.txt", lfOnly);
    {
        CHistoryDataOprt history;
        CString text;
        history.GetData(0, text);
        EXPECT_EQ(text, CString(u"7"));
        history.GetData(1, text);
        EXPECT_EQ(text, CString());
        history.GetData(3, text);  // the file ends with a line end: its last value is empty
        EXPECT_EQ(text, CString());
        history.GetData(4, text);
        EXPECT_EQ(text, CString(u"1"));  // a default beyond the file's lines
        history.SetIntData(QX_HISTORY_DEFAULT_COUNT, 5);
        history.SetIntData(-1, 5);
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
    CString text;
    for (int i = 0; i < lines.GetSize(); ++i) text += (i ? u"\n" : u"") + lines[i];
    writeUtf8("LocalData/HistoryData.txt", text.str());
    {
        CHistoryDataOprt history;
        ASSERT_EQ(history.m_arrData.GetSize(), QX_HISTORY_DEFAULT_COUNT + 2);
        CString value;
        history.GetData(50, value);
        EXPECT_EQ(value, CString(u"项目"));
        history.GetData(QX_HISTORY_DEFAULT_COUNT, value);
        EXPECT_EQ(value, CString(u"多出来的"));
        history.SetIntData(QX_HISTORY_DEFAULT_COUNT + 1, -12);
        history.SetDoubleData(0, 0.7);
        history.GetData(0, value);
        EXPECT_EQ(value, CString(u"0.70"));
        history.GetData(QX_HISTORY_DEFAULT_COUNT + 5, value);
        EXPECT_EQ(value, CString());
    }
    lines[0] = u"0.70";
    lines[QX_HISTORY_DEFAULT_COUNT + 1] = u"-12";
    CString expected;
    for (int i = 0; i < lines.GetSize(); ++i) expected += (i ? u"\r\n" : u"") + lines[i];
    EXPECT_EQ(install.readFile("LocalData/HistoryData.txt"), EncodeLegacy(expected.str()));
}

TEST_F(SettingsTest, AnEmptyLastValueSurvivesARewrite) {
    install.makeFolder("LocalData");
    {
        CHistoryDataOprt history;
        history.m_arrData[QX_HISTORY_DEFAULT_COUNT - 1] = u"";
        history.SetIntData(0, 0);
    }
    CHistoryDataOprt again;
    CString value = u"x";
    again.GetData(QX_HISTORY_DEFAULT_COUNT - 1, value);
    EXPECT_EQ(value, CString());
    EXPECT_EQ(again.m_arrData.GetSize(), QX_HISTORY_DEFAULT_COUNT);
}
