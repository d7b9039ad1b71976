// qxinspect centre [--store FILE]: what the embedded BOM centre holds, as JSON, read-only: each project
// with its tree, every device's revisions with their rows, and the usage files clients sent.
#include "TreeJson.h"
#include "Views.h"

#include "centre/operations/BomCentreOperations.h"
#include "centre/operations/CentreError.h"
#include "centre/operations/CentreIds.h"
#include "platform/cloud/embedded/BomCentre.h"
#include "centre/sqlite/SqliteCentreStore.h"

#include <iostream>
#include <unordered_map>

namespace {

using json = nlohmann::ordered_json;

std::string utf8(const CString& text) { return text.ToUtf8(); }

json revisionsJson(ICentreStore& store, long long nodeId) {
    json out = json::array();
    for (const CentreRevision& revision : store.revisions(nodeId)) {
        json rows = json::array();
        for (const CentreRow& row : store.rows(revision.id)) {
            json shown = BomRowToJson({row.label, row.name, row.model, row.count, row.remark, row.code});
            shown["secondary"] = row.secondary;
            rows.push_back(std::move(shown));
        }
        out.push_back({{"number", revision.number},
                       {"kind", utf8(revision.kind)},
                       {"enterprise", utf8(revision.enterprise)},
                       {"user", utf8(revision.user)},
                       {"submitted", utf8(revision.submitted)},
                       {"rows", std::move(rows)}});
    }
    return out;
}

json nodeJson(const CentreNode& node) {
    json out{{"m_strID", utf8(FormatCentreId(node.id))}, {"m_strName", utf8(node.name)}, {"m_strType", utf8(node.type)}};
    if (HMIsDeviceType(node.type)) {
        out["m_strCirNo"] = utf8(node.cirNo);
        out["m_strCirName"] = utf8(node.cirName);
        out["m_strCirType"] = utf8(node.cirType);
        out["m_strCirSize"] = utf8(node.cirSize);
    }
    return out;
}

// The project's root with its children nested, every device with its revisions.
json treeJson(ICentreStore& store, const CentreProject& project) {
    json root{{"m_strID", utf8(FormatCentreId(project.id))}, {"m_strName", utf8(project.name)}, {"m_strType", ""},
              {"m_arrChildren", json::array()}};
    // In walk order a node's whole sub-tree comes before its next sibling, so the pointer to a placed node
    // is used only while its siblings' array has not grown again.
    std::unordered_map<long long, json*> placed{{0, &root}};
    for (const CentreNode& node : NodesInWalkOrder(store.nodes(project.id))) {
        json shown = nodeJson(node);
        if (HMIsDeviceType(node.type)) shown["revisions"] = revisionsJson(store, node.id);
        else shown["m_arrChildren"] = json::array();
        json& siblings = (*placed.at(node.parentId))["m_arrChildren"];
        siblings.push_back(std::move(shown));
        placed[node.id] = &siblings.back();
    }
    return root;
}

int showCentre(const std::string& requested) {
    const std::string path = requested.empty() ? CEmbeddedBomCentre::StorePath() : requested;
    if (path.empty()) {
        std::cerr << "qxinspect: no BOM centre store: the install folder does not exist and HEXMOOR_STORE is not set\n";
        return kInputUnreadable;
    }
    json out{{"store", path}};
    try {
        const auto store = CSqliteCentreStore::OpenForReading(path);
        const int version = store->schemaVersion();
        out["schema_version"] = version;
        out["projects"] = json::array();
        out["usage_files"] = json::array();
        if (version != 0) {
            CentreTransaction transaction(*store, CentreTransaction::Mode::Read);
            for (const CentreProject& project : store->allProjects()) {
                out["projects"].push_back({{"m_strID", utf8(FormatCentreId(project.id))},
                                           {"enterprise", utf8(project.enterprise)},
                                           {"m_strName", utf8(project.name)},
                                           {"created", utf8(project.created)},
                                           {"tree", treeJson(*store, project)}});
            }
            for (const CentreUsageFile& file : store->usageFiles()) {
                out["usage_files"].push_back({{"enterprise", utf8(file.enterprise)},
                                              {"user", utf8(file.user)},
                                              {"item", utf8(file.item)},
                                              {"key", utf8(file.key)},
                                              {"received", utf8(file.received)},
                                              {"text", utf8(file.text)}});
            }
        }
    } catch (const CCentreError& error) {
        std::cerr << "qxinspect: " << error.message() << '\n';
        return kInputUnreadable;
    }
    std::cout << out.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
    return kViewRan;
}

const bool registered = RegisterInspectView({
    "centre",
    "the projects, trees, revisions and usage files of the embedded BOM centre, read-only",
    [](CLI::App& command) -> std::function<int()> {
        auto store = std::make_shared<std::string>();
        command.add_option("--store", *store, "the store file (default: $HEXMOOR_STORE, else LocalData/hexmoor.db of the install)");
        return [store] { return showCentre(*store); };
    },
});

} // namespace
