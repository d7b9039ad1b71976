// The kind lists of Data\ and their line rules.
#include "settings/KindLists.h"

#include "settings/SettingsSession.h"
#include "support/Format.h"
#include "support/NumberText.h"
#include "support/TextFile.h"
#include "support/TextHelpers.h"

#include <initializer_list>

namespace {

const std::initializer_list<const char16_t*> kDefaultTerminalKinds = {
    u"普通端子:,6.2",       u"光隔端子:,6.2",          u"光藕端子:,6.2",     u"电流端子:粗线,8.2",
    u"试验端子:粗线,8.2",   u"熔断器端子:熔断器符号,6.2", u"保险端子:熔断器符号,6.2", u"电压端子:▽,6.2",
    u"刀闸端子:＆,6.2",     u"双进双出端子:＃,6.2",     u"双进双出刀闸端子:＃＆,6.2",
};

const std::initializer_list<const char16_t*> kDefaultWireKinds = {
    u"三芯屏蔽线:@", u"屏蔽双绞线:*", u"4*0.5mm屏蔽线:★", u"9芯单头(孔)DB9线:◆", u"≥8芯单头(孔)DB9线:◇",
    u"9芯单头(针)DB9线:■",
};

const std::initializer_list<const char16_t*> kDefaultCircuitKinds = {u"电流回路:", u"电压回路:", u"普通回路:"};

using LineRule = bool (*)(const CString&, CKindColumns&);

// Splits "name:rest"; the name is trimmed. False when there is no ":".
bool splitName(const CString& line, CString& name, CString& rest) {
    const int colon = line.Find(u':');
    if (colon < 0) return false;
    name = line.Left(colon);
    name.Trim();
    rest = line.Mid(colon + 1);
    return true;
}

// An entry of the form with a width; the rest behind the name is "symbol,width[,rest]".
void addWithWidth(const CString& name, CString rest, CKindColumns& kinds) {
    CStringArray items;
    SplitString(rest, u",", items);
    CString after;
    if (items.GetSize() > 2) {
        const int first = rest.Find(u',');
        after = rest.Mid(rest.Find(u',', first + 1) + 1);
    }
    kinds.m_arrName.Add(name);
    kinds.m_arrSymbol.Add(items[0]);
    kinds.m_arrWidth.Add(QxFormat(u"%.2f", QxToDouble(items.GetSize() > 1 ? items[1] : CString())));
    kinds.m_arrRest.Add(after);
}

void fillDefaults(std::initializer_list<const char16_t*> lines, LineRule rule, CKindColumns& kinds) {
    kinds.RemoveAll();
    for (const char16_t* line : lines) rule(line, kinds);
}

// The lines of a list file below the install folder; false when it cannot be read.
bool readListLines(const CString& relative, CStringArray& lines) {
    const CString path = GetSettingsFilePath(relative);
    return !path.IsEmpty() && ReadTextLines(path, lines);
}

// True when the lines give at least one entry; else the defaults stand in.
bool parseOrDefaults(const CStringArray& lines, std::initializer_list<const char16_t*> defaults, LineRule rule,
                     CKindColumns& kinds) {
    kinds.RemoveAll();
    for (const CString& line : lines) rule(line, kinds);
    if (kinds.GetSize() > 0) return true;
    fillDefaults(defaults, rule, kinds);
    return false;
}

CString firstRestOnly(CString rest) {
    // The split on ":" keeps only the second item.
    const int colon = rest.Find(u':');
    return colon < 0 ? rest : rest.Left(colon);
}

} // namespace

void CKindColumns::RemoveAll() {
    m_arrName.RemoveAll();
    m_arrSymbol.RemoveAll();
    m_arrWidth.RemoveAll();
    m_arrRest.RemoveAll();
}

bool ParseTerminalKindLine(const CString& line, CKindColumns& kinds) {
    CString text = line;
    text.Replace(u"：", u":");
    text.Replace(u"，", u",");
    CString name, rest;
    if (!splitName(text, name, rest)) return false;
    addWithWidth(name, firstRestOnly(rest), kinds);
    return true;
}

bool ParseWireKindLine(const CString& line, CKindColumns& kinds) {
    CString text = line;
    text.Replace(u"：", u":");
    text.Replace(u"，", u",");
    CString name, rest;
    if (!splitName(text, name, rest)) return false;
    rest = firstRestOnly(rest);
    if (rest.Find(u',') >= 0) {
        addWithWidth(name, rest, kinds);
        return true;
    }
    kinds.m_arrName.Add(name);
    kinds.m_arrSymbol.Add(rest);
    kinds.m_arrWidth.Add(CString());
    kinds.m_arrRest.Add(CString());
    return true;
}

bool ParseCircuitKindLine(const CString& line, CKindColumns& kinds) {
    CString text = line;
    text.Replace(u"：", u":");
    CString name, rest;
    if (!splitName(text, name, rest)) return false;
    kinds.m_arrName.Add(name);
    kinds.m_arrSymbol.Add(rest);  // "a:b:c" gives "b:c": the one more ":" joined again
    kinds.m_arrWidth.Add(CString());
    kinds.m_arrRest.Add(CString());
    return true;
}

bool ReadTerminalKinds(CKindColumns& kinds) {
    CStringArray lines;
    const bool newForm = readListLines(u"Data\\DZBDZLXFH.txt", lines) && !lines.IsEmpty() &&
                         (lines[0].Find(u',') >= 0 || lines[0].Find(u'，') >= 0);
    if (!newForm) lines.RemoveAll();
    return parseOrDefaults(lines, kDefaultTerminalKinds, ParseTerminalKindLine, kinds);
}

bool ReadWireKinds(CKindColumns& kinds) {
    CStringArray lines;
    readListLines(u"Data\\DZBDXLXFH.txt", lines);
    return parseOrDefaults(lines, kDefaultWireKinds, ParseWireKindLine, kinds);
}

bool ReadCircuitKinds(CKindColumns& kinds) {
    CStringArray lines;
    readListLines(u"Data\\DZBHUILUFH.txt", lines);
    return parseOrDefaults(lines, kDefaultCircuitKinds, ParseCircuitKindLine, kinds);
}
