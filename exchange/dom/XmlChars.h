// The characters an XML 1.0 document may hold. The DOM keeps no other: a strict reader refuses a document
// with a control character in it, even written as a reference ("&#7;"), so values lose such characters
// on their way in.
#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>

// The UTF-8 text without the characters XML 1.0 forbids: C0 controls other than tab, line feed and
// carriage return, U+FFFE, U+FFFF and surrogate code points.
std::string DropForbiddenXmlChars(std::string_view utf8);

// The same for every value and attribute value of a parsed tree, which the XML library takes from
// references such as "&#7;" without complaint.
void DropForbiddenXmlChars(pugi::xml_node root);
