// The JSON form of what passes between hexmoord and its clients: BOM rows, project trees, submit reports and
// comparisons. Both sides use these, so that a tree read back is the tree that was sent.
#pragma once

#include "centre/operations/BomCentreOperations.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <stdexcept>

// A JSON document that is well formed but not of the expected shape.
class QX_API CCentreJsonError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Deeper trees are refused, so that a hostile document cannot exhaust the stack.
constexpr int kMaxTreeDepth = 64;

QX_API nlohmann::json RowsToJson(const BomRows& rows);
QX_API BomRows RowsFromJson(const nlohmann::json& json);

// The node and everything below it; the root's device list travels as preorder positions.
QX_API nlohmann::json TreeToJson(const HMProjectTree_INFO& tree);
QX_API std::unique_ptr<HMProjectTree_INFO> TreeFromJson(const nlohmann::json& json);
// Copies what the centre changes in a tree (IDs, blocks, schema, the changed flag, rows) from `from` into
// the caller's own tree of the same shape; false, with nothing copied, when the shapes differ.
QX_API bool CopyCentreFields(const HMProjectTree_INFO& from, HMProjectTree_INFO& to);

QX_API nlohmann::json ReportToJson(const SubmitReport& report);
QX_API SubmitReport ReportFromJson(const nlohmann::json& json);

QX_API nlohmann::json ComparisonsToJson(const std::vector<DeviceComparison>& devices);
QX_API std::vector<DeviceComparison> ComparisonsFromJson(const nlohmann::json& json);

// Text fields: CString as UTF-8 and back; a missing or non-text field reads as an error.
QX_API CString JsonText(const nlohmann::json& object, const char* key);
