// The well-formedness walk of the plain-text XML class.
#pragma once

#include "exchange/text/ElementIndex.h"
#include "support/CString.h"

#include <string_view>

// Walks the text once, filling the element index, and gives the first problem found in words, or the
// empty text for a well-formed document. The text itself is never changed.
CString WalkXmlDocument(std::u16string_view text, CElementIndex& index);
