// How the two XML readers (the DOM and the plain-text class) read an encoding that a declaration names.
#pragma once

#include <string>
#include <string_view>

// The iconv name for bytes that a declaration labels `declared`. GB2312 (and its other names) is read as
// Windows reads it, through its superset GB18030: files labelled GB2312 hold GBK characters such as 堃 and
// 喆 as often as not. Other names are taken as they stand.
std::string XmlDecoderName(std::string_view declared);

// Whether a declaration read as single bytes can truly name `iconvName`: the name must decode ASCII
// markup to itself. UTF-16 and UTF-32 do not, so such a label on an ASCII declaration is wrong. False too
// for a name iconv does not know.
bool XmlLabelFitsAsciiBytes(const std::string& iconvName);
