// Reading the cells of a BOM table: a cell's text, and the text of a cell that a link leads to, counted
// only when the target links back.
#pragma once

#include "drawing/model/AcDb.h"

// For text its string, for MText its contents cleaned of format codes; otherwise false with empty text.
QX_API bool QxGetTextOfObject(AcDbObjectId id, CString& text);

// The cleaned contents of the MText of `handle` when its xdata under `application` has a 1005 item equal
// to `name` ignoring case; empty otherwise (no such object, no MText, no back link).
QX_API CString GetLinkedMText(AcDbDatabase* database, CString name, CString handle, CString application);

// True when a link value names a cell: not empty and not "0".
QX_API bool QxIsBomLink(const CString& handle);

// The link rule: the first 1005 item of `forwardKey` in the anchor; no link gives empty text, otherwise
// the linked MText that leads back to the anchor through `backKey`, where a text of one blank is empty.
// `target` receives the link value as read.
QX_API CString QxFollowBomLink(AcDbDatabase* database, const AcDbEntity& anchor, const CString& anchorHandle,
                               const char16_t* forwardKey, const char16_t* backKey, CString* target = nullptr);
