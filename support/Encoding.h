// Text conversions at the edges: UTF-8, UTF-16 and the legacy code page of the Windows application.
#pragma once

#include "support/Export.h"

#include <optional>
#include <string>
#include <string_view>

// Malformed UTF-8 sequences become U+FFFD; conversion never fails.
QX_API std::u16string Utf8ToUtf16(std::string_view utf8);
// Unpaired surrogates become U+FFFD.
QX_API std::string Utf16ToUtf8(std::u16string_view utf16);
QX_API bool IsValidUtf8(std::string_view bytes);

// The iconv name of the legacy code page: $QXHM_CODEPAGE, else GB18030.
QX_API std::string LegacyCodePage();

// Converts bytes in the named code page. Undecodable bytes become U+FFFD one by one.
// Empty result when iconv does not know the name.
QX_API std::optional<std::u16string> DecodeCodePage(std::string_view bytes, const std::string& codePage);
// Characters the code page cannot hold become '?'. Empty result when iconv does not know the name.
QX_API std::optional<std::string> EncodeCodePage(std::u16string_view text, const std::string& codePage);

QX_API std::u16string DecodeLegacy(std::string_view bytes);
QX_API std::string EncodeLegacy(std::u16string_view text);

// The reading rule of the application's text files: a UTF-8 byte-order mark says UTF-8 (and is dropped);
// bytes that are not valid UTF-8 are in the legacy code page; bytes valid in both are read the way that
// is more plausible as the application's text (TextImplausibility), the legacy page on a tie.
QX_API std::u16string DecodeTextFile(std::string_view bytes);
