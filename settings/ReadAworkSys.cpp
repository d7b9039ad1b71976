// CReadAworkSys: the key table of awork.sys and its load.
#include "settings/ReadAworkSys.h"

#include "platform/host/HostOutput.h"
#include "settings/SettingsSession.h"
#include "support/FileSystem.h"
#include "support/NumberText.h"
#include "support/TextFile.h"

#include <cerrno>
#include <variant>

namespace {

using IntField = int CReadAworkSys::*;
using DoubleField = double CReadAworkSys::*;
using TextField = CString CReadAworkSys::*;

// Keys whose value is not a plain conversion.
enum class Rule {
    Plain,
    KeepBlanks,       // the text style: blanks belong to the name
    PinWiringMode,    // "文字方式" or "短线方式"; any other text leaves the field as it was
    SoftwareEdition,  // absent: 1, or 0 when Data\ErpOrCad.txt says mode 2
};

struct KeyRule {
    const char16_t* key;
    std::variant<IntField, DoubleField, TextField> field;
    const char16_t* fallback = nullptr;  // for an absent or empty value
    Rule rule = Rule::Plain;
};

using R = CReadAworkSys;

// In the order in which a load reads them.
const KeyRule kKeyRules[] = {
    {u"符号新旧标: ", &R::m_nSymbolNewOld},
    {u"默认文字样式: ", &R::m_strDefaultTextStyle, nullptr, Rule::KeepBlanks},
    {u"连线交叉结点大小: ", &R::m_nCrossNodeSize},
    {u"T型连线交叉点: ", &R::m_nTCrossNode},
    {u"元件安装位置文字字高: ", &R::m_dPositionTextHeight},
    {u"元件标号文字字高: ", &R::m_dLabelTextHeight},
    {u"垂直符号标号文字位置: ", &R::m_nVertLabelTextPos},
    {u"垂直符号标号文字方向: ", &R::m_nVertLabelTextDir},
    {u"单端水平符号标号文字位置", &R::m_nSingleHorzLabelTextPos},
    {u"单端垂直符号标号文字位置", &R::m_nSingleVertLabelTextPos},
    {u"元件管角号文字字高: ", &R::m_dPinTextHeight},
    {u"水平符号管脚号文字位置: ", &R::m_nHorzPinTextPos},
    {u"垂直符号管脚号文字位置: ", &R::m_nVertPinTextPos},
    {u"垂直符号管脚号文字方向: ", &R::m_nVertPinTextDir},
    {u"连线线号文字字高: ", &R::m_dWireNoTextHeight},
    {u"线号文字到线的距离: ", &R::m_dWireNoTextDist},
    {u"垂直连线线号文字位置: ", &R::m_nVertWireNoTextPos},
    {u"垂直连线线号文字方向: ", &R::m_nVertWireNoTextDir},
    {u"电路图图块允许炸开: ", &R::m_nCircuitBlockExplode, u"1"},
    {u"打开DWG默认启动方式: ", &R::m_nDwgOpenMode, u"1"},
    {u"标题栏类型: ", &R::m_strTitleBlockType},
    {u"标题栏图块允许炸开: ", &R::m_nTitleBlockExplode, u"1"},
    {u"接线连线自适应标识: ", &R::m_strWiringAdaptive},
    {u"继保端子及装置标号与端号之间加分隔符: ", &R::m_strRelaySeparator},
    {u"端子表格式: ", &R::m_nTerminalTableFormat},
    {u"接线图元件序号: ", &R::m_nWiringPartNo},
    {u"接线格式: ", &R::m_nWiringFormat},
    {u"元件接线标注文字字高: ", &R::m_dWiringNoteTextHeight},
    {u"分板名称文字字高: ", &R::m_dPanelNameTextHeight},
    {u"元件接线线长: ", &R::m_dWiringLineLength},
    {u"元件布置标注文字字高: ", &R::m_dLayoutNoteTextHeight},
    {u"外框宽度: ", &R::m_dFrameWidth},
    {u"外框高度: ", &R::m_dFrameHeight},
    {u"外框直径: ", &R::m_dFrameDiameter},
    {u"元件线号到线距离: ", &R::m_dPartWireNoDist},
    {u"元件布置标头圆圈直径: ", &R::m_dLayoutHeadCircleDiameter},
    {u"元件接线文字格式: ", &R::m_strWiringTextFormat},
    {u"导线颜色文字位置: ", &R::m_strWireColorTextPos, u"连线下方"},
    {u"导线颜色文字到连线距离: ", &R::m_dWireColorTextDist},
    {u"同元件引脚接线方式:", &R::m_nSamePartPinWiring, nullptr, Rule::PinWiringMode},
    {u"短接线到元件的距离:", &R::m_strShortWireToPartDist, u"3.0"},
    {u"短接线之间的阶距:", &R::m_strShortWireStep, u"0.5"},
    {u"接线文字宽度:", &R::m_strWiringTextWidth},
    {u"装置端子接线数量:", &R::m_strDeviceTerminalWires},
    {u"元件描述文字显示位置:", &R::m_strPartDescTextPos},
    {u"软件当前版本: ", &R::m_nSoftwareEdition, nullptr, Rule::SoftwareEdition},
    {u"是否是继电保护版: ", &R::m_nRelayEdition},
    {u"原理图端子表作为接线图端子表: ", &R::m_nSchematicTerminalTable},
    {u"是否利用端子空余接线端: ", &R::m_nUseSpareTerminalEnds, u"1"},
    {u"端子一端是否接两根线: ", &R::m_nTwoWiresPerEnd, u"1"},
    {u"继电保护端子作为普通端子: ", &R::m_nRelayTerminalAsPlain},
    {u"接线图端子表分隔符格式: ", &R::m_strWiringTableSeparator},
    {u"接线图图块允许炸开: ", &R::m_nWiringBlockExplode, u"1"},
};

CString withoutBlanks(const CString& text) {
    std::u16string out;
    for (char16_t ch : text.str())
        if (!IsQxBlank(ch)) out += ch;
    return CString(std::move(out));
}

// An errno code for a file that could not be read: ENOENT when it is not there, EISDIR for a folder,
// EACCES for a file that is there but cannot be read.
int unreadableFileCode(const CString& path) {
    if (path.IsEmpty() || !QxFs::Exists(path)) return ENOENT;
    if (QxFs::IsFolder(path)) return EISDIR;
    return EACCES;
}

void assign(CReadAworkSys& settings, const std::variant<IntField, DoubleField, TextField>& field,
            const CString& value) {
    if (const auto* i = std::get_if<IntField>(&field)) settings.*(*i) = QxToInt(value);
    else if (const auto* d = std::get_if<DoubleField>(&field)) settings.*(*d) = QxToDouble(value);
    else settings.*std::get<TextField>(field) = value;
}

} // namespace

bool CReadAworkSys::Load(CSettingsSession& session) {
    m_bRead = true;
    m_arrLines.RemoveAll();

    const CString path = GetSettingsFilePath(u"LocalData\\awork.sys");
    CStringArray lines;
    const bool read = !path.IsEmpty() && ReadTextLines(path, lines);
    if (!read) acutPrintf(u"%s\n", QxFormat(u"打开文件%s时出错，错误码为 %d", path, unreadableFileCode(path)));
    for (const CString& line : lines)
        if (!line.IsEmpty()) m_arrLines.Add(line);

    for (const KeyRule& rule : kKeyRules) {
        CString value = rule.rule == Rule::KeepBlanks ? GetValueByKeyAsIs(rule.key) : GetValueByKey(rule.key);
        if (rule.rule == Rule::PinWiringMode) {
            if (value == u"文字方式") m_nSamePartPinWiring = 1;
            else if (value == u"短线方式") m_nSamePartPinWiring = 0;
            continue;
        }
        if (rule.rule == Rule::SoftwareEdition && value.IsEmpty())
            value = session.GetErpOrCadMode() == QX_MODE_BSF ? u"0" : u"1";
        if (value.IsEmpty() && rule.fallback) value = rule.fallback;
        assign(*this, rule.field, value);
    }
    return read;
}

int CReadAworkSys::findKeyLine(const CString& key) const {
    for (int i = 0; i < m_arrLines.GetSize(); ++i)
        if (m_arrLines[i].StartsWith(key)) return i;
    return -1;
}

CString CReadAworkSys::GetValueByKeyAsIs(const CString& key) const {
    const int at = findKeyLine(key);
    return at < 0 ? CString() : m_arrLines[at].Mid(key.GetLength());
}

CString CReadAworkSys::GetValueByKey(const CString& key) const {
    return withoutBlanks(GetValueByKeyAsIs(key));
}
