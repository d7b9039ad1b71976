// Project tree records to JSON and back.
#include "TreeJson.h"

#include <stdexcept>
#include <string>

namespace {

// Deeper input is refused rather than risking the stack on hostile JSON.
constexpr int kMaxDepth = 1000;

std::string text(const CString& value) { return value.ToUtf8(); }

// Text of a key: a string as it stands, a number or truth value as written, null or absent as empty.
CString textOf(const nlohmann::json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null()) return CString();
    if (found->is_string()) return CString::FromUtf8(found->get_ref<const std::string&>());
    if (found->is_primitive()) return CString::FromUtf8(found->dump());
    throw std::invalid_argument(std::string(key) + " must be text");
}

const nlohmann::json* arrayOf(const nlohmann::json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null()) return nullptr;
    if (!found->is_array()) throw std::invalid_argument(std::string(key) + " must be an array");
    return &*found;
}

void fillNode(HMProjectTree_INFO& node, const nlohmann::json& json, HMProjectTree_INFO& root, int depth) {
    if (!json.is_object()) throw std::invalid_argument("a node must be an object");
    if (depth > kMaxDepth) throw std::invalid_argument("m_arrChildren nests too deep");
    node.m_strID = textOf(json, "m_strID");
    node.m_strName = textOf(json, "m_strName");
    node.m_strType = textOf(json, "m_strType");
    node.m_strCirNo = textOf(json, "m_strCirNo");
    node.m_strCirName = textOf(json, "m_strCirName");
    node.m_strCirType = textOf(json, "m_strCirType");
    node.m_strCirSize = textOf(json, "m_strCirSize");
    node.m_strDataSchema = textOf(json, "m_strDataSchema");
    node.m_strBoms = textOf(json, "m_strBoms");
    if (const nlohmann::json* rows = arrayOf(json, "m_arrPrimaryBom")) node.m_arrPrimaryBom = BomRowsFromJson(*rows);
    if (const nlohmann::json* rows = arrayOf(json, "m_arrSecondaryBom")) node.m_arrSecondaryBom = BomRowsFromJson(*rows);
    const nlohmann::json* children = arrayOf(json, "m_arrChildren");
    if (!children) return;
    for (const nlohmann::json& childJson : *children) {
        // Owned by the parent from the start, so that a failure further down frees everything.
        auto* child = new HMProjectTree_INFO;
        node.m_arrChildren.Add(child);
        child->m_pParent = &node;
        child->m_pRoot = &root;
        fillNode(*child, childJson, root, depth + 1);
        if (HMIsDeviceType(child->m_strType)) root.m_arrCabinets.Add(child);
    }
}

} // namespace

nlohmann::ordered_json BomRowToJson(const BOM_INFO& row) {
    return {
        {"m_strRowLabel", text(row.m_strRowLabel)}, {"m_strRowName", text(row.m_strRowName)},
        {"m_strRowModel", text(row.m_strRowModel)}, {"m_strRowCount", text(row.m_strRowCount)},
        {"m_strRowRemark", text(row.m_strRowRemark)}, {"m_strRowCode", text(row.m_strRowCode)},
    };
}

nlohmann::ordered_json TreeNodeToJson(const HMProjectTree_INFO& node) {
    nlohmann::ordered_json json = {
        {"m_strID", text(node.m_strID)},           {"m_strName", text(node.m_strName)},
        {"m_strType", text(node.m_strType)},       {"m_strCirNo", text(node.m_strCirNo)},
        {"m_strCirName", text(node.m_strCirName)}, {"m_strCirType", text(node.m_strCirType)},
        {"m_strCirSize", text(node.m_strCirSize)}, {"m_strDataSchema", text(node.m_strDataSchema)},
        {"m_strBoms", text(node.m_strBoms)},
    };
    nlohmann::ordered_json children = nlohmann::ordered_json::array();
    for (const HMProjectTree_INFO* child : node.m_arrChildren) children.push_back(TreeNodeToJson(*child));
    json["m_arrChildren"] = std::move(children);
    nlohmann::ordered_json primary = nlohmann::ordered_json::array();
    for (const BOM_INFO& row : node.m_arrPrimaryBom) primary.push_back(BomRowToJson(row));
    json["m_arrPrimaryBom"] = std::move(primary);
    nlohmann::ordered_json secondary = nlohmann::ordered_json::array();
    for (const BOM_INFO& row : node.m_arrSecondaryBom) secondary.push_back(BomRowToJson(row));
    json["m_arrSecondaryBom"] = std::move(secondary);
    return json;
}

BomRows BomRowsFromJson(const nlohmann::json& rows) {
    BomRows result;
    for (const nlohmann::json& row : rows) {
        if (!row.is_object()) throw std::invalid_argument("a BOM row must be an object");
        result.Add(BOM_INFO{textOf(row, "m_strRowLabel"), textOf(row, "m_strRowName"), textOf(row, "m_strRowModel"),
                            textOf(row, "m_strRowCount"), textOf(row, "m_strRowRemark"), textOf(row, "m_strRowCode")});
    }
    return result;
}

std::unique_ptr<HMProjectTree_INFO> TreeNodeFromJson(const nlohmann::json& json) {
    auto root = std::make_unique<HMProjectTree_INFO>();
    fillNode(*root, json, *root, 0);
    return root;
}
