// How the Access engine evaluates what the host's database provider would: Like patterns and names, with
// text compared ignoring case.
#pragma once

#include "support/database/DatabaseEngine.h"

#include <optional>

// `%` stands for any run of characters, `_` for exactly one; everything else matches itself ignoring case
// (letters of the Latin, Greek and Cyrillic alphabets and full-width Latin).
QX_API bool LikeMatches(const CString& text, const CString& pattern);
// The text of a value that a statement puts between double quotes, as the provider reads the literal: a
// doubled quote stands for one. nullopt when a lone quote would end the literal early, which breaks the
// statement on every engine.
QX_API std::optional<CString> QuotedValueText(const CString& value);
// Names of tables and fields are the same ignoring case.
QX_API bool SameDbName(const CString& a, const CString& b);
// Whether a value passes `Like "pattern"`; a null never does.
QX_API bool ValueIsLike(const DbValue& value, const CString& pattern);
// Ordering of ORDER BY: nulls first, numbers by value, text ignoring case.
QX_API bool ValueOrdersBefore(const DbValue& a, const DbValue& b);
