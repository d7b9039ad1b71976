// Writing notes into a .itm or .prj: the description notes of a new file, and a device's cabinet notes.
#include "project/ProjectFiles.h"

#include "support/FileUtils.h"

#include <array>

namespace {

// A value (or name) is one line of the file: a line break in it, say in a cabinet name from the cloud, would
// end the note early and could close the notes section, losing the notes behind it.
CString oneLine(const CString& text) {
    CString line = text;
    line.Remove(u'\r');
    line.Remove(u'\n');
    return line;
}

void appendNoteBlock(CStringArray& lines, const CString& name, const CString& value) {
    lines.Add(PRJ_BEGIN_ONE_NOTE);
    lines.Add(oneLine(name));
    lines.Add(oneLine(value));
    lines.Add(PRJ_END_ONE_NOTE);
}

// Empty lines are dropped but for the value line of a note block: an existing note with an empty value
// keeps its place instead of shifting the blocks after it.
CStringArray withoutStrayEmptyLines(const CStringArray& lines) {
    CStringArray kept;
    for (int i = 0; i < lines.GetSize(); ++i) {
        const bool isValueLine = i >= 2 && lines[i - 2] == PRJ_BEGIN_ONE_NOTE;
        if (!lines[i].IsEmpty() || isValueLine) kept.Add(lines[i]);
    }
    return kept;
}

struct CabinetNote {
    const char16_t* name;
    CString HMProjectTree_INFO::*field;
};

constexpr std::array<CabinetNote, 4> kCabinetNotes{{
    {u"柜编号", &HMProjectTree_INFO::m_strCirNo},
    {u"柜名称", &HMProjectTree_INFO::m_strCirName},
    {u"柜型号", &HMProjectTree_INFO::m_strCirType},
    {u"柜体尺寸", &HMProjectTree_INFO::m_strCirSize},
}};

int cabinetNoteIndex(const CString& name) {
    for (size_t k = 0; k < kCabinetNotes.size(); ++k)
        if (name == kCabinetNotes[k].name) return static_cast<int>(k);
    return -1;
}

} // namespace

bool InsertNotes(const CString& path, const PrjNoteList& notes) {
    if (!FileExists(path)) return false;
    CStringArray read;
    if (!ReadFileLines(path, read, true)) return false;
    const CStringArray lines = withoutStrayEmptyLines(read);
    if (lines.IsEmpty() || !lines[0].EqualsNoCase(PRJ_BEGIN_NOTES)) return false;
    CStringArray rewritten;
    rewritten.Add(lines[0]);
    for (const STRUCT_PRJ_NOTE& note : notes) appendNoteBlock(rewritten, note.m_strName, note.m_strValue);
    for (int i = 1; i < lines.GetSize(); ++i) rewritten.Add(lines[i]);
    return WriteFileLines(path, rewritten);
}

namespace {

// The cabinet note whose block begins at line i, or -1. Blocks are looked for where three lines follow.
int cabinetBlockAt(const CStringArray& lines, int i) {
    if (i >= lines.GetSize() - 3 || lines[i] != PRJ_BEGIN_ONE_NOTE) return -1;
    return cabinetNoteIndex(lines[i + 1]);
}

} // namespace

bool UpdateDeviceNotes(const HMProjectTree_INFO* node) {
    if (!node || !HMIsDeviceType(node->m_strType)) return false;
    const CString path = node->m_strPath + node->m_strName + u".prj";
    CStringArray lines;
    if (!ReadFileLines(path, lines, true)) return false;

    // Without the line that closes the notes there is no safe place for missing notes: the file is refused
    // rather than given notes above its first line.
    int insertAt = -1;
    for (int i = 0; i < lines.GetSize() && insertAt < 0; ++i)
        if (IsPrjEndNotesMarker(lines[i])) insertAt = i;
    if (insertAt < 0) return false;

    std::array<bool, 4> found{};
    for (int i = 0; i < lines.GetSize(); ++i)
        if (const int k = cabinetBlockAt(lines, i); k >= 0) found[static_cast<size_t>(k)] = true;

    CStringArray rewritten;
    for (int i = 0; i < lines.GetSize(); ++i) {
        if (i == insertAt) {
            for (size_t k = 0; k < kCabinetNotes.size(); ++k)
                if (!found[k]) appendNoteBlock(rewritten, kCabinetNotes[k].name, node->*kCabinetNotes[k].field);
        }
        const int k = cabinetBlockAt(lines, i);
        rewritten.Add(lines[i]);
        if (k < 0) continue;
        rewritten.Add(lines[i + 1]);
        rewritten.Add(oneLine(node->*kCabinetNotes[static_cast<size_t>(k)].field));
        // A block that lost its value line gets one back rather than losing its end line; one cut short by
        // the line that closes the notes gets its end line too, and that line stays.
        if (IsPrjEndNotesMarker(lines[i + 2])) rewritten.Add(PRJ_END_ONE_NOTE);
        const bool valueLineMissing = lines[i + 2] == PRJ_END_ONE_NOTE || IsPrjEndNotesMarker(lines[i + 2]);
        i += valueLineMissing ? 1 : 2;
    }
    return WriteFileLines(path, rewritten);
}
