// Writing notes into a .itm or .prj: the description notes of a new file, and a device's cabinet notes.
#include "project/ProjectFiles.h"

#include "support/FileUtils.h"

#include <array>

namespace {

void insertNoteBlock(CStringArray& lines, int at, const CString& name, const CString& value) {
    lines.InsertAt(at, PRJ_BEGIN_ONE_NOTE);
    lines.InsertAt(at + 1, name);
    lines.InsertAt(at + 2, value);
    lines.InsertAt(at + 3, PRJ_END_ONE_NOTE);
}

// Empty lines are dropped but for the value line of a note block: an existing note with an empty value
// keeps its place instead of shifting the blocks after it.
void dropStrayEmptyLines(CStringArray& lines) {
    for (int i = lines.GetSize() - 1; i >= 0; --i) {
        if (!lines[i].IsEmpty()) continue;
        const bool isValueLine = i >= 2 && lines[i - 2] == PRJ_BEGIN_ONE_NOTE;
        if (!isValueLine) lines.RemoveAt(i);
    }
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
    CStringArray lines;
    if (!ReadFileLines(path, lines, true)) return false;
    dropStrayEmptyLines(lines);
    if (lines.IsEmpty() || !lines[0].EqualsNoCase(PRJ_BEGIN_NOTES)) return false;
    int at = 1;
    for (const STRUCT_PRJ_NOTE& note : notes) {
        insertNoteBlock(lines, at, note.m_strName, note.m_strValue);
        at += 4;
    }
    return WriteFileLines(path, lines);
}

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
    for (int i = 0; i < lines.GetSize() - 3; ++i) {
        if (lines[i] != PRJ_BEGIN_ONE_NOTE) continue;
        const int k = cabinetNoteIndex(lines[i + 1]);
        if (k < 0) continue;
        const CString& value = node->*kCabinetNotes[static_cast<size_t>(k)].field;
        if (lines[i + 2] == PRJ_END_ONE_NOTE) {
            // A block that lost its value line gets one back rather than losing its end line.
            lines.InsertAt(i + 2, value);
            if (insertAt > i + 2) ++insertAt;
        } else {
            lines[i + 2] = value;
        }
        found[static_cast<size_t>(k)] = true;
    }
    for (size_t k = 0; k < kCabinetNotes.size(); ++k) {
        if (found[k]) continue;
        insertNoteBlock(lines, insertAt, kCabinetNotes[k].name, node->*kCabinetNotes[k].field);
        insertAt += 4;
    }
    return WriteFileLines(path, lines);
}
