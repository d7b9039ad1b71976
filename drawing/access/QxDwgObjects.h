// Reading objects of a drawing: class tests, handles, block names, xrecords of extension dictionaries.
#pragma once

#include "drawing/model/AcDb.h"
#include "support/CArray.h"

// The entity when it is of that class or derived from it; null stays null.
QX_API AcDbMText* QxAsMText(AcDbEntity* entity);
QX_API AcDbText* QxAsText(AcDbEntity* entity);
QX_API AcDbBlockReference* QxAsBlockReference(AcDbEntity* entity);

// The object of a handle's text; false with a null id when there is none.
QX_API bool QxHandleToId(AcDbDatabase* database, CString handle, AcDbObjectId& id);
// The object opened as MText, or null (an object of another class is closed again).
QX_API AcDbMText* QxOpenMText(AcDbObjectId id, AcDb::OpenMode mode);
// The name of the reference's block table record; empty for a null reference.
QX_API CString QxGetBlockName(AcDbBlockReference* reference);

// The chain of the xrecord whose entry name, trimmed, equals `name` ignoring case; the caller frees it.
QX_API bool QxGetXRecordChain(AcDbObject* object, CString name, resbuf*& chain);
// The extension dictionary exists and has an entry of that name (by the dictionary's own look-up).
QX_API bool QxHasXRecord(AcDbObject* object, CString name);
// Appends the text of each item of type 1, in order.
QX_API void QxChainToStrings(const resbuf* chain, CStringArray& strings);
