// CReadAworkSys: the drawing, wiring and terminal settings of LocalData\awork.sys.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

class CSettingsSession;

// One field per key of awork.sys, each with the value it holds before a load. A load sets every field: a
// key that is absent or empty gives the key's fallback where it has one, else 0 or the empty text.
class QX_API CReadAworkSys {
public:
    virtual ~CReadAworkSys() = default;

    // Reads install folder + "LocalData\awork.sys". An unreadable file is reported on the command line and
    // loads as an empty file. True when the file was read.
    bool Load(CSettingsSession& session);

    // The text behind the first line that begins with `key`, with every blank removed; empty if none.
    CString GetValueByKey(const CString& key) const;
    // The same text as it stands.
    CString GetValueByKeyAsIs(const CString& key) const;

    bool m_bRead = false;
    CStringArray m_arrLines;  // the non-empty lines of the file, unchanged

    int m_nSymbolNewOld = 0;                     // "符号新旧标: "
    CString m_strDefaultTextStyle;               // "默认文字样式: ", blanks kept
    int m_nCrossNodeSize = 15;                   // "连线交叉结点大小: "
    int m_nTCrossNode = 0;                       // "T型连线交叉点: "
    double m_dPositionTextHeight = 2.5;          // "元件安装位置文字字高: "
    double m_dLabelTextHeight = 2.5;             // "元件标号文字字高: "
    int m_nVertLabelTextPos = 0;                 // "垂直符号标号文字位置: "
    int m_nVertLabelTextDir = 0;                 // "垂直符号标号文字方向: "
    int m_nSingleHorzLabelTextPos = 0;           // "单端水平符号标号文字位置"
    int m_nSingleVertLabelTextPos = 0;           // "单端垂直符号标号文字位置"
    double m_dPinTextHeight = 2.0;               // "元件管角号文字字高: "
    int m_nHorzPinTextPos = 0;                   // "水平符号管脚号文字位置: "
    int m_nVertPinTextPos = 0;                   // "垂直符号管脚号文字位置: "
    int m_nVertPinTextDir = 0;                   // "垂直符号管脚号文字方向: "
    double m_dWireNoTextHeight = 2.5;            // "连线线号文字字高: "
    double m_dWireNoTextDist = 1.5;              // "线号文字到线的距离: "
    int m_nVertWireNoTextPos = 0;                // "垂直连线线号文字位置: "
    int m_nVertWireNoTextDir = 1;                // "垂直连线线号文字方向: "
    int m_nCircuitBlockExplode = 1;              // "电路图图块允许炸开: "
    int m_nDwgOpenMode = 1;                      // "打开DWG默认启动方式: "
    CString m_strTitleBlockType;                 // "标题栏类型: "
    int m_nTitleBlockExplode = 1;                // "标题栏图块允许炸开: "
    CString m_strWiringAdaptive = u"否";         // "接线连线自适应标识: "
    CString m_strRelaySeparator = u"1";          // "继保端子及装置标号与端号之间加分隔符: "
    int m_nTerminalTableFormat = 0;              // "端子表格式: "
    int m_nWiringPartNo = 0;                     // "接线图元件序号: "
    int m_nWiringFormat = 0;                     // "接线格式: "
    double m_dWiringNoteTextHeight = 2.0;        // "元件接线标注文字字高: "
    double m_dPanelNameTextHeight = 3.0;         // "分板名称文字字高: "
    double m_dWiringLineLength = 5.0;            // "元件接线线长: "
    double m_dLayoutNoteTextHeight = 3.0;        // "元件布置标注文字字高: "
    double m_dFrameWidth = 21.0;                 // "外框宽度: "
    double m_dFrameHeight = 5.0;                 // "外框高度: "
    double m_dFrameDiameter = 12.0;              // "外框直径: "
    double m_dPartWireNoDist = 1.3;              // "元件线号到线距离: "
    double m_dLayoutHeadCircleDiameter = 12.0;   // "元件布置标头圆圈直径: "
    CString m_strWiringTextFormat = u"多行";     // "元件接线文字格式: "
    CString m_strWireColorTextPos = u"连线下方"; // "导线颜色文字位置: "
    double m_dWireColorTextDist = 1.5;           // "导线颜色文字到连线距离: "
    int m_nSamePartPinWiring = 1;                // "同元件引脚接线方式:" 1 文字方式, 0 短线方式
    CString m_strShortWireToPartDist = u"3";     // "短接线到元件的距离:"
    CString m_strShortWireStep = u"0.5";         // "短接线之间的阶距:"
    CString m_strWiringTextWidth;                // "接线文字宽度:"
    CString m_strDeviceTerminalWires = u"可接两根线"; // "装置端子接线数量:"
    CString m_strPartDescTextPos;                // "元件描述文字显示位置:"
    int m_nSoftwareEdition = 0;                  // "软件当前版本: "
    int m_nRelayEdition = 0;                     // "是否是继电保护版: "
    int m_nSchematicTerminalTable = 0;           // "原理图端子表作为接线图端子表: "
    int m_nUseSpareTerminalEnds = 0;             // "是否利用端子空余接线端: "
    int m_nTwoWiresPerEnd = 1;                   // "端子一端是否接两根线: "
    int m_nRelayTerminalAsPlain = 0;             // "继电保护端子作为普通端子: "
    CString m_strWiringTableSeparator;           // "接线图端子表分隔符格式: "
    int m_nWiringBlockExplode = 1;               // "接线图图块允许炸开: "

private:
    // Index of the first line that begins with the key, or -1.
    int findKeyLine(const CString& key) const;
};
