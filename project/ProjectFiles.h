// The project (.itm) and device (.prj) files: their skeleton, their notes, and the files found in a project's
// folder tree.
#pragma once

#include "project/ProjectTree.h"
#include "support/CArray.h"
#include "support/CString.h"

// One note of a .itm or .prj: a name and a value, which may be empty.
struct QX_API STRUCT_PRJ_NOTE {
    CString m_strName;
    CString m_strValue;

    friend bool operator==(const STRUCT_PRJ_NOTE&, const STRUCT_PRJ_NOTE&) = default;
};

using PrjNoteList = CArray<STRUCT_PRJ_NOTE>;

// Everything a .itm or .prj holds: its notes in file order and the lines of its content section.
struct QX_API STRUCT_PRJ_FILE {
    PrjNoteList m_arrNotes;
    CStringArray m_arrContent;
};

// The markers of the format. The closing markers are also written "$End NOTE OF PRJ" and
// "$End CONTENT OF PRJ" by other programs of the application.
inline constexpr const char16_t* PRJ_BEGIN_NOTES = u"$BEGIN NOTE OF PRJ";
inline constexpr const char16_t* PRJ_END_NOTES = u"$END NOTE OF PRJ";
inline constexpr const char16_t* PRJ_END_NOTES_OTHER = u"$End NOTE OF PRJ";
inline constexpr const char16_t* PRJ_BEGIN_CONTENT = u"$BEGIN CONTENT OF PRJ";
inline constexpr const char16_t* PRJ_END_CONTENT = u"$END CONTENT OF PRJ";
inline constexpr const char16_t* PRJ_END_CONTENT_OTHER = u"$End CONTENT OF PRJ";
inline constexpr const char16_t* PRJ_EOF = u"$EOF";
inline constexpr const char16_t* PRJ_BEGIN_ONE_NOTE = u"$BEGIN_ONE_NOTE";
inline constexpr const char16_t* PRJ_END_ONE_NOTE = u"$END_ONE_NOTE";

QX_API bool IsPrjEndNotesMarker(const CString& line);
QX_API bool IsPrjEndContentMarker(const CString& line);

// `pattern` is a folder + "*.*". True when the find gives nothing but "." and "..", so also for a folder
// that does not exist.
QX_API bool IsFolderEmpty(const CString& pattern);

// A new .itm or .prj: five lines in the legacy code page with CR LF, the last ("$EOF") without a line end.
// A file that cannot be written is left alone without a message.
QX_API void WriteProjectSkeleton(const CString& path);

// The .itm files of the sub-project folders directly in the project's folder, in listing order. False (and
// an empty list) unless `itmPath` is an existing .itm in a folder of its own name.
QX_API bool ListSubProjects(const CString& itmPath, CStringArray& list);
// The same for the device folders and their .prj files.
QX_API bool ListDevices(const CString& itmPath, CStringArray& list);
// The drawings of a device (.prj: its folder), or of a project (.itm: its folder, then each device's);
// sub-projects are not entered. Any other path gives an empty list.
QX_API void ListDrawingsOfFile(const CString& path, CStringArray& list);

// Puts the notes, in list order, directly under the first line of an existing file whose first line is
// "$BEGIN NOTE OF PRJ" in any case. True when the file was rewritten.
QX_API bool InsertNotes(const CString& path, const PrjNoteList& notes);

// Brings the four cabinet notes of a device's .prj in line with the node: values of notes that are there
// are replaced in place, missing ones are added in the order 柜编号, 柜名称, 柜型号, 柜体尺寸 just before the
// line that closes the notes ("$END NOTE OF PRJ" or "$End NOTE OF PRJ"). A file without that line is left as
// it is. Nothing happens for a node that is no device. True when the file was rewritten.
QX_API bool UpdateDeviceNotes(const HMProjectTree_INFO* node);

// Reads the notes and the content section of a .itm or .prj, accepting both spellings of the closing
// markers. False when the file cannot be read or its first line is not "$BEGIN NOTE OF PRJ" (any case).
QX_API bool ReadProjectFile(const CString& path, STRUCT_PRJ_FILE& file);
