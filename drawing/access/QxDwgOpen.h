// Opening drawings beside the editor or in it, and finding them among the host's documents.
// Match mode 1 compares the whole path with a document's file name; any other mode only the file name
// behind the last "\". Both ignore case.
#pragma once

#include "drawing/model/AcDbDatabase.h"
#include "platform/host/Documents.h"

// The database of the drawing. False with a document's database when a document holds the drawing;
// true with a database read beside the editor, which the caller deletes; false with null when the
// drawing cannot be read.
QX_API bool QxOpenDwgDatabase(CString path, int mode, AcDbDatabase*& database);
QX_API bool QxIsDwgOpen(CString path);
// True with the document when the drawing is open in a document other than the current one; always
// false while SDI is set.
QX_API bool QxFindOtherDocument(CString path, int mode, AcApDocument*& document);
// Brings the document of this full path to the front (not while SDI is 1).
QX_API void QxActivateDwg(CString path);
// Opens the drawing in the editor, saves it in the default format and closes it, each as asked. Says so
// in a box when the drawing does not open.
QX_API void QxOpenDwgInEditor(CString path, bool open, bool save, bool close);

// QxOpenDwgDatabase for the length of a scope: deletes the database when it was read beside the editor.
// While a command's read scope stands, a drawing that no document holds comes from that scope instead.
class QX_API QxDwgDatabase {
public:
    QxDwgDatabase(CString path, int mode);
    ~QxDwgDatabase();
    QxDwgDatabase(const QxDwgDatabase&) = delete;
    QxDwgDatabase& operator=(const QxDwgDatabase&) = delete;

    AcDbDatabase* get() const { return m_database; }
    explicit operator bool() const { return m_database != nullptr; }
    // True when the database was read beside the editor for this object alone, which deletes it; false for a
    // document's and for one that the command's read scope keeps (drawing/DrawingReads.h).
    bool isSideDatabase() const { return m_owned; }

private:
    AcDbDatabase* m_database = nullptr;
    bool m_owned = false;
};
