// The JSON form of the centre's records.
#include "platform/cloud/http/CentreJson.h"

#include <functional>

using nlohmann::json;

CString JsonText(const json& object, const char* key) {
    if (!object.is_object()) throw CCentreJsonError("an object was expected");
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string()) throw CCentreJsonError(std::string("the text field \"") + key + "\" is missing");
    return CString::FromUtf8(found->get_ref<const std::string&>());
}

namespace {

std::string utf8(const CString& text) { return text.ToUtf8(); }

const json& arrayField(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_array()) throw CCentreJsonError(std::string("the list \"") + key + "\" is missing");
    return *found;
}

bool boolField(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_boolean()) throw CCentreJsonError(std::string("the flag \"") + key + "\" is missing");
    return found->get<bool>();
}

long long numberField(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_number_integer()) throw CCentreJsonError(std::string("the number \"") + key + "\" is missing");
    return found->get<long long>();
}

void preorder(HMProjectTree_INFO& node, std::vector<HMProjectTree_INFO*>& out) {
    out.push_back(&node);
    for (HMProjectTree_INFO* child : node.m_arrChildren)
        if (child) preorder(*child, out);
}

void preorder(const HMProjectTree_INFO& node, std::vector<const HMProjectTree_INFO*>& out) {
    out.push_back(&node);
    for (const HMProjectTree_INFO* child : node.m_arrChildren)
        if (child) preorder(*child, out);
}

json nodeToJson(const HMProjectTree_INFO& node) {
    json children = json::array();
    for (const HMProjectTree_INFO* child : node.m_arrChildren)
        if (child) children.push_back(nodeToJson(*child));
    return {{"id", utf8(node.m_strID)},          {"name", utf8(node.m_strName)},       {"type", utf8(node.m_strType)},
            {"path", utf8(node.m_strPath)},      {"dataSchema", utf8(node.m_strDataSchema)},
            {"changed", node.m_bChanged},        {"cirNo", utf8(node.m_strCirNo)},     {"cirName", utf8(node.m_strCirName)},
            {"cirType", utf8(node.m_strCirType)}, {"cirSize", utf8(node.m_strCirSize)}, {"boms", utf8(node.m_strBoms)},
            {"cabCount", node.m_nCabCount},      {"primary", RowsToJson(node.m_arrPrimaryBom)},
            {"secondary", RowsToJson(node.m_arrSecondaryBom)}, {"children", children}};
}

void nodeFromJson(const json& from, HMProjectTree_INFO& node, HMProjectTree_INFO& root, int depth) {
    if (depth > kMaxTreeDepth) throw CCentreJsonError("the tree is deeper than " + std::to_string(kMaxTreeDepth) + " levels");
    node.m_strID = JsonText(from, "id");
    node.m_strName = JsonText(from, "name");
    node.m_strType = JsonText(from, "type");
    node.m_strPath = JsonText(from, "path");
    node.m_strDataSchema = JsonText(from, "dataSchema");
    node.m_bChanged = boolField(from, "changed");
    node.m_strCirNo = JsonText(from, "cirNo");
    node.m_strCirName = JsonText(from, "cirName");
    node.m_strCirType = JsonText(from, "cirType");
    node.m_strCirSize = JsonText(from, "cirSize");
    node.m_strBoms = JsonText(from, "boms");
    node.m_nCabCount = static_cast<int>(numberField(from, "cabCount"));
    node.m_arrPrimaryBom = RowsFromJson(arrayField(from, "primary"));
    node.m_arrSecondaryBom = RowsFromJson(arrayField(from, "secondary"));
    for (const json& childJson : arrayField(from, "children")) {
        auto child = std::make_unique<HMProjectTree_INFO>();
        child->m_pParent = &node;
        child->m_pRoot = &root;
        HMProjectTree_INFO& added = *child;
        node.m_arrChildren.Add(child.release());
        nodeFromJson(childJson, added, root, depth + 1);
    }
}

} // namespace

json RowsToJson(const BomRows& rows) {
    json out = json::array();
    for (const BOM_INFO& row : rows)
        out.push_back({{"label", utf8(row.m_strRowLabel)}, {"name", utf8(row.m_strRowName)}, {"model", utf8(row.m_strRowModel)},
                       {"count", utf8(row.m_strRowCount)}, {"remark", utf8(row.m_strRowRemark)}, {"code", utf8(row.m_strRowCode)}});
    return out;
}

BomRows RowsFromJson(const json& json) {
    if (!json.is_array()) throw CCentreJsonError("a list of rows was expected");
    BomRows rows;
    for (const auto& row : json)
        rows.Add({JsonText(row, "label"), JsonText(row, "name"), JsonText(row, "model"), JsonText(row, "count"),
                  JsonText(row, "remark"), JsonText(row, "code")});
    return rows;
}

json TreeToJson(const HMProjectTree_INFO& tree) {
    json out = nodeToJson(tree);
    std::vector<const HMProjectTree_INFO*> order;
    preorder(tree, order);
    json cabinets = json::array();
    for (const HMProjectTree_INFO* cabinet : tree.m_arrCabinets) {
        for (size_t i = 0; i < order.size(); ++i)
            if (order[i] == cabinet) cabinets.push_back(i);
    }
    out["cabinets"] = cabinets;
    return out;
}

std::unique_ptr<HMProjectTree_INFO> TreeFromJson(const json& json) {
    auto root = std::make_unique<HMProjectTree_INFO>();
    nodeFromJson(json, *root, *root, 0);
    std::vector<HMProjectTree_INFO*> order;
    preorder(*root, order);
    for (const auto& index : arrayField(json, "cabinets")) {
        if (!index.is_number_unsigned() || index.get<size_t>() >= order.size() || index.get<size_t>() == 0)
            throw CCentreJsonError("a device of the tree's list is not in the tree");
        root->m_arrCabinets.Add(order[index.get<size_t>()]);
    }
    return root;
}

bool CopyCentreFields(const HMProjectTree_INFO& from, HMProjectTree_INFO& to) {
    std::vector<const HMProjectTree_INFO*> source;
    std::vector<HMProjectTree_INFO*> target;
    preorder(from, source);
    preorder(to, target);
    if (source.size() != target.size()) return false;
    for (size_t i = 0; i < source.size(); ++i)
        if (source[i]->m_arrChildren.GetSize() != target[i]->m_arrChildren.GetSize()) return false;
    for (size_t i = 0; i < source.size(); ++i) {
        target[i]->m_strID = source[i]->m_strID;
        target[i]->m_strDataSchema = source[i]->m_strDataSchema;
        target[i]->m_bChanged = source[i]->m_bChanged;
        target[i]->m_strBoms = source[i]->m_strBoms;
        target[i]->m_arrPrimaryBom = source[i]->m_arrPrimaryBom;
        target[i]->m_arrSecondaryBom = source[i]->m_arrSecondaryBom;
    }
    return true;
}

json ReportToJson(const SubmitReport& report) {
    json skipped = json::array();
    for (const CString& reason : report.skipped) skipped.push_back(utf8(reason));
    return {{"accepted", report.accepted}, {"skipped", skipped}};
}

SubmitReport ReportFromJson(const json& json) {
    SubmitReport report;
    report.accepted = static_cast<int>(numberField(json, "accepted"));
    for (const auto& reason : arrayField(json, "skipped")) {
        if (!reason.is_string()) throw CCentreJsonError("a skipped device is not text");
        report.skipped.push_back(CString::FromUtf8(reason.get_ref<const std::string&>()));
    }
    return report;
}

namespace {

const char* changeName(RowChange change) {
    switch (change) {
    case RowChange::Added: return "added";
    case RowChange::Removed: return "removed";
    case RowChange::CountChanged: return "count";
    }
    return "added";
}

RowChange changeFrom(const CString& name) {
    if (name == CString(u"removed")) return RowChange::Removed;
    if (name == CString(u"count")) return RowChange::CountChanged;
    if (name == CString(u"added")) return RowChange::Added;
    throw CCentreJsonError("an unknown kind of change");
}

} // namespace

json ComparisonsToJson(const std::vector<DeviceComparison>& devices) {
    json out = json::array();
    for (const DeviceComparison& device : devices) {
        json differences = json::array();
        for (const RowDifference& d : device.differences)
            differences.push_back({{"change", changeName(d.change)}, {"secondary", d.secondary}, {"name", utf8(d.name)},
                                   {"model", utf8(d.model)}, {"centreCount", d.centreCount}, {"localCount", d.localCount}});
        out.push_back({{"name", utf8(device.name)}, {"id", utf8(device.id)}, {"known", device.known},
                       {"revision", device.revision}, {"differences", differences}});
    }
    return out;
}

std::vector<DeviceComparison> ComparisonsFromJson(const json& json) {
    if (!json.is_array()) throw CCentreJsonError("a list of comparisons was expected");
    std::vector<DeviceComparison> devices;
    for (const auto& device : json) {
        DeviceComparison out{JsonText(device, "name"), JsonText(device, "id"), boolField(device, "known"),
                             static_cast<int>(numberField(device, "revision")), {}};
        for (const auto& d : arrayField(device, "differences"))
            out.differences.push_back({changeFrom(JsonText(d, "change")), boolField(d, "secondary"), JsonText(d, "name"),
                                       JsonText(d, "model"), numberField(d, "centreCount"), numberField(d, "localCount")});
        devices.push_back(std::move(out));
    }
    return devices;
}
