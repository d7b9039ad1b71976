#include "SettingsFixture.h"

#include "common/CapturedOutput.h"
#include "settings/ReadAworkSys.h"
#include "settings/SettingsSession.h"

#include <filesystem>
#include <tuple>

TEST_F(SettingsTest, AworkValuesAreReadInEitherEncoding) {
    const std::u16string text =
        u"未知的行\r\n"
        u"连线交叉结点大小: 3 0\r\n"         // a blank inside a number
        u"连线交叉结点大小: 99\r\n"          // only the first line of a key counts
        u"默认文字样式:  宋 体 \r\n"
        u"元件标号文字字高: 3. 75\r\n"
        u"外框宽度: abc\r\n"                 // not a number
        u"标题栏类型: A 3 横\r\n"
        u"  符号新旧标: 7\r\n"               // a key must begin the line
        u"\r\n"
        u"垂直连线线号文字方向:5\r\n";       // the key holds its blank: no match
    for (int encoding = 0; encoding < 2; ++encoding) {
        if (encoding == 0) writeLegacy("LocalData/awork.sys", text);
        else writeUtf8("LocalData/awork.sys", text);
        CSettingsSession session;
        CReadAworkSys settings;
        ASSERT_TRUE(settings.Load(session));
        EXPECT_TRUE(settings.m_bRead);
        EXPECT_EQ(settings.m_arrLines.GetSize(), 9);  // the empty line is dropped
        EXPECT_EQ(std::tuple(settings.m_nCrossNodeSize, settings.m_strDefaultTextStyle, settings.m_dLabelTextHeight, settings.m_dFrameWidth,
                             settings.m_strTitleBlockType, settings.m_nSymbolNewOld, settings.m_nVertWireNoTextDir),
                  std::tuple(30, CString(u" 宋 体 "), 3.75, 0.0, CString(u"A3横"), 0, 0));
        EXPECT_EQ((std::vector<CString>{settings.GetValueByKey(u"标题栏类型: "), settings.GetValueByKeyAsIs(u"标题栏类型: "), settings.GetValueByKey(u"没有的键: ")}),
                  (std::vector<CString>{u"A3横", u"A 3 横", u""}));
    }
}

TEST_F(SettingsTest, AnUnreadableFileIsReportedAndLoadsAsAnEmptyFileDoesWithZeroesAndTheFallbacks) {
    CapturedOutput output;
    CSettingsSession session;
    CReadAworkSys settings;
    settings.m_nCrossNodeSize = 40;
    EXPECT_FALSE(settings.Load(session));
    EXPECT_EQ(std::tuple(settings.m_bRead, settings.m_nCrossNodeSize, settings.m_nTitleBlockExplode),
              std::tuple(true, 0, 1));
    install.makeFolder("LocalData/awork.sys");
    EXPECT_FALSE(settings.Load(session));
    const CString path = install.logic() + u"LocalData\\awork.sys";
    EXPECT_EQ(output.printed, u"打开文件" + path + u"时出错，错误码为 2\n打开文件" + path + u"时出错，错误码为 21\n");

    std::filesystem::remove(install.native() + "/LocalData/awork.sys");
    install.writeFile("LocalData/awork.sys", "");
    settings.m_nCrossNodeSize = 40;
    ASSERT_TRUE(settings.Load(session));
    // Pin wiring: no text leaves it as it was.
    EXPECT_EQ(std::tuple(settings.m_nCrossNodeSize, settings.m_nCircuitBlockExplode, settings.m_nUseSpareTerminalEnds,
                         settings.m_nVertWireNoTextDir, settings.m_dFrameWidth, settings.m_nSamePartPinWiring,
                         settings.m_nSoftwareEdition),
              std::tuple(0, 1, 1, 0, 0.0, 1, 1));
    EXPECT_EQ((std::vector<CString>{settings.m_strShortWireToPartDist, settings.m_strWireColorTextPos,
                                    settings.m_strDeviceTerminalWires}),
              (std::vector<CString>{u"3.0", u"连线下方", u""}));

    // A value of blanks is empty too; a given value wins over the fallback.
    writeLegacy("LocalData/awork.sys",
                u"电路图图块允许炸开:    \r\n短接线到元件的距离: 4 .5\r\n打开DWG默认启动方式: 0\r\n");
    settings.m_nCircuitBlockExplode = 7;
    settings.Load(session);
    EXPECT_EQ(std::tuple(settings.m_nCircuitBlockExplode, settings.m_strShortWireToPartDist, settings.m_nDwgOpenMode),
              std::tuple(1, CString(u"4.5"), 0));
}

TEST_F(SettingsTest, TheTwoWiringTextsSetThePinWiringModeAndOthersLeaveIt) {
    CSettingsSession session;
    CReadAworkSys settings;
    const auto modeAfter = [&](const std::u16string& value) {
        writeLegacy("LocalData/awork.sys", u"同元件引脚接线方式:" + value + u"\r\n");
        settings.Load(session);
        return settings.m_nSamePartPinWiring;
    };
    EXPECT_EQ((std::vector<int>{modeAfter(u" 短线 方式"), modeAfter(u"其他"), modeAfter(u"文字方式"), modeAfter(u"0")}), (std::vector<int>{0, 0, 1, 1}));
}

TEST_F(SettingsTest, SoftwareEditionFallsBackOnTheErpOrCadMode) {
    install.writeFile("LocalData/awork.sys", "");
    install.writeFile("Data/ErpOrCad.txt", "bsf edition\r\n");
    CReadAworkSys settings;
    {
        CSettingsSession session;
        settings.Load(session);
        EXPECT_EQ(settings.m_nSoftwareEdition, 0);
        // The mode is the session's: a changed file is not read again.
        install.writeFile("Data/ErpOrCad.txt", "Erp");
        settings.Load(session);
        EXPECT_EQ(settings.m_nSoftwareEdition, 0);
    }
    CSettingsSession next;
    settings.Load(next);
    EXPECT_EQ(settings.m_nSoftwareEdition, 1);
    writeLegacy("LocalData/awork.sys", u"软件当前版本: 3\r\n");
    settings.Load(next);
    EXPECT_EQ(settings.m_nSoftwareEdition, 3);
}
