// The JSON form of project tree records, keyed by their member names, for the views that show or take trees.
#pragma once

#include "project/ProjectTree.h"

#include <memory>
#include <nlohmann/json.hpp>

nlohmann::ordered_json BomRowToJson(const BOM_INFO& row);
// The node with its children, recursively, and its rows.
nlohmann::ordered_json TreeNodeToJson(const HMProjectTree_INFO& node);

// Rows from an array of row objects.
BomRows BomRowsFromJson(const nlohmann::json& rows);
// A tree from its JSON form: a missing key reads as empty and unknown keys are ignored. Parent and root
// links are set and every device below the root goes into the root's m_arrCabinets in walk order.
// Throws std::invalid_argument, saying which key is wrong, for JSON that is not of this form.
std::unique_ptr<HMProjectTree_INFO> TreeNodeFromJson(const nlohmann::json& json);
