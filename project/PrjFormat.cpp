// The .itm/.prj format: its markers, the skeleton of a new file, and the reader of a whole file.
#include "project/ProjectFiles.h"

#include "support/FileUtils.h"
#include "support/TextFile.h"

bool IsPrjEndNotesMarker(const CString& line) { return line == PRJ_END_NOTES || line == PRJ_END_NOTES_OTHER; }

bool IsPrjEndContentMarker(const CString& line) {
    return line == PRJ_END_CONTENT || line == PRJ_END_CONTENT_OTHER;
}

void WriteProjectSkeleton(const CString& path) {
    // Text mode writes each "\n" as CR LF; the last line has no line end.
    const CString text = CString(PRJ_BEGIN_NOTES) + u"\n" + PRJ_END_NOTES + u"\n" + PRJ_BEGIN_CONTENT + u"\n" +
                         PRJ_END_CONTENT + u"\n" + PRJ_EOF;
    WriteLegacyText(path, text);
}

namespace {

// Reads note blocks from `i` up to the line that closes the notes; leaves `i` on that line (or past the end).
void readNotes(const CStringArray& lines, int& i, PrjNoteList& notes) {
    const int count = lines.GetSize();
    while (i < count && !IsPrjEndNotesMarker(lines[i]) && !lines[i].EqualsNoCase(PRJ_BEGIN_CONTENT)) {
        if (lines[i] != PRJ_BEGIN_ONE_NOTE) {
            ++i;
            continue;
        }
        if (i + 1 >= count || IsPrjEndNotesMarker(lines[i + 1])) {
            ++i;
            break;
        }
        STRUCT_PRJ_NOTE note;
        note.m_strName = lines[i + 1];
        if (i + 2 < count && lines[i + 2] != PRJ_END_ONE_NOTE) note.m_strValue = lines[i + 2];
        notes.Add(note);
        // A block cut short by its end line still ends there, so the next block is not swallowed.
        int next = i + 1;
        while (next < count && next <= i + 3 && lines[next] != PRJ_END_ONE_NOTE && !IsPrjEndNotesMarker(lines[next]))
            ++next;
        i = (next < count && lines[next] == PRJ_END_ONE_NOTE) ? next + 1 : next;
    }
}

} // namespace

bool ReadProjectFile(const CString& path, STRUCT_PRJ_FILE& file) {
    file.m_arrNotes.RemoveAll();
    file.m_arrContent.RemoveAll();
    CStringArray lines;
    if (!ReadFileLines(path, lines, true)) return false;
    if (lines.IsEmpty() || !lines[0].EqualsNoCase(PRJ_BEGIN_NOTES)) return false;

    int i = 1;
    readNotes(lines, i, file.m_arrNotes);
    while (i < lines.GetSize() && !lines[i].EqualsNoCase(PRJ_BEGIN_CONTENT)) ++i;
    for (++i; i < lines.GetSize(); ++i) {
        if (IsPrjEndContentMarker(lines[i]) || lines[i] == PRJ_EOF) break;
        file.m_arrContent.Add(lines[i]);
    }
    return true;
}
