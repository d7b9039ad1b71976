// The JSON forms that the assembly views share: cabinet groups with their drawers, part records, and
// paths in the machine's own form.
#pragma once

#include "drawing/assembly/ReferSourceRecords.h"
#include "drawing/parts/PartRecords.h"

#include <nlohmann/json.hpp>
#include <string>

namespace assemblyjson {

using json = nlohmann::ordered_json;

// A logic path as the machine writes it (the names on disk where it exists); each piece of a "|" list.
std::string NativePath(const CString& logicPath);
json Strings(const CStringArray& strings);
json Group(const CReferSourceGroupInfo& group);
json PartRecord(const CPartBomDataBase& record);
// Prints the document on standard output.
void Print(const json& document);

} // namespace assemblyjson
