// Names of a workbook's sheets as Excel judges them: no character it refuses, at most 31 UTF-16 units, no
// apostrophe at either end, "History" reserved, and unique ignoring case across all of Unicode.
#pragma once

#include "support/CString.h"

#include <set>
#include <string>

class CSheetNames {
public:
    // A name for the sheet wanted, made valid and unique among those taken so far: refused characters
    // become "_", a taken name gets " (2)", " (3)" ....
    std::string Take(const CString& wanted);

private:
    std::set<std::u32string> m_taken;  // folded
};
