// The encoding rule of the plain-text XML class: what the declaration names decides how bytes are read.
#pragma once

#include "support/CString.h"

#include <string>
#include <string_view>

// UTF-8 unless `encoding` is not empty and its first five characters differ from "UTF-8" ignoring case.
// Another name is read by iconv under that name (GB2312 as its superset GB18030); a name iconv does not
// know, or one that does not read ASCII as ASCII (UTF-16, UTF-32: the declaration itself was single bytes),
// is read in the legacy code page. A byte-order mark is decoded like any other bytes.
std::u16string DecodeXmlFileBytes(std::string_view bytes, const CString& encoding);
