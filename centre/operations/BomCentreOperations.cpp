// The BOM centre's operations over the storage seam.
#include "centre/operations/BomCentreOperations.h"

#include "centre/operations/CentreError.h"
#include "centre/operations/CentreIds.h"
#include "centre/operations/CentreXml.h"
#include "centre/operations/CredentialHash.h"
#include "centre/operations/TreeChecks.h"
#include "support/FileSystem.h"
#include "support/Format.h"

#include <algorithm>
#include <climits>
#include <ctime>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>

namespace {

using Mode = CentreTransaction::Mode;

std::vector<CentreRow> rowsOf(const HMProjectTree_INFO& device) {
    std::vector<CentreRow> rows;
    for (const bool secondary : {false, true}) {
        for (const BOM_INFO& row : secondary ? device.m_arrSecondaryBom : device.m_arrPrimaryBom)
            rows.push_back({row.m_strRowLabel, row.m_strRowName, row.m_strRowModel, row.m_strRowCount,
                            row.m_strRowRemark, row.m_strRowCode, secondary});
    }
    return rows;
}

BOM_INFO bomInfoOf(const CentreRow& row) {
    return {row.label, row.name, row.model, row.count, row.remark, row.code};
}

// Primary rows first, each system in its stored order.
void appendRows(BomRows& out, const std::vector<CentreRow>& rows) {
    for (const bool secondary : {false, true})
        for (const CentreRow& row : rows)
            if (row.secondary == secondary) out.Add(bomInfoOf(row));
}

void copyNodeFields(const CentreNode& from, HMProjectTree_INFO& to) {
    to.m_strID = FormatCentreId(from.id);
    to.m_strName = from.name;
    to.m_strType = from.type;
    to.m_strCirNo = from.cirNo;
    to.m_strCirName = from.cirName;
    to.m_strCirType = from.cirType;
    to.m_strCirSize = from.cirSize;
    to.m_strDataSchema = MakeDataSchemaXml();
}

// The devices a submit or comparison takes: a tree that is itself a device is one, else the root's list.
std::vector<HMProjectTree_INFO*> devicesOf(HMProjectTree_INFO& tree) {
    if (HMIsDeviceType(tree.m_strType)) return {&tree};
    std::vector<HMProjectTree_INFO*> devices;
    for (HMProjectTree_INFO* device : tree.m_arrCabinets)
        if (device) devices.push_back(device);
    return devices;
}

} // namespace

std::vector<CentreNode> NodesInWalkOrder(std::vector<CentreNode> nodes) {
    std::sort(nodes.begin(), nodes.end(), [](const CentreNode& a, const CentreNode& b) {
        return std::tie(a.parentId, a.position, a.id) < std::tie(b.parentId, b.position, b.id);
    });
    std::unordered_map<long long, std::vector<const CentreNode*>> children;
    for (const CentreNode& node : nodes) children[node.parentId].push_back(&node);
    std::vector<CentreNode> order;
    std::vector<const CentreNode*> pending;
    const auto pushChildren = [&](long long parent) {
        const auto found = children.find(parent);
        if (found == children.end()) return;
        for (auto it = found->second.rbegin(); it != found->second.rend(); ++it) pending.push_back(*it);
    };
    pushChildren(0);
    while (!pending.empty() && order.size() < nodes.size()) {
        const CentreNode* node = pending.back();
        pending.pop_back();
        order.push_back(*node);
        pushChildren(node->id);
    }
    return order;
}

CString CentreTimeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    ::gmtime_r(&now, &tm);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%SZ", &tm);
    return CString(buffer);
}

int CBomCentreOperations::CheckAccount(const CString& enterprise, const CString& user, const CString& credential) {
    const auto known = [&](const CentreAccount& account) {
        return !account.disabled && VerifyCredential(account.credentialHash, credential) ? 1 : -1;
    };
    if (const auto account = m_store.account(enterprise, user)) return known(*account);
    // Hashing is slow on purpose, so it happens before the write lock is taken.
    const CString hash = HashCredential(credential);
    if (hash.IsEmpty()) throw CCentreError(u"The credential could not be hashed.");
    CentreTransaction transaction(m_store, Mode::Write);
    if (const auto taken = m_store.account(enterprise, user)) return known(*taken);
    m_store.addAccount({enterprise, user, hash, CentreTimeNow(), false});
    transaction.commit();
    return 1;
}

void CBomCentreOperations::KeepUsageFile(const CentreUser& who, const CString& item, const CString& key, const CString& text) {
    m_store.addUsageFile({0, who.enterprise, who.user, item, key, text, CentreTimeNow()});
}

std::optional<CentreProject> CBomCentreOperations::ownProject(const CentreUser& who, const CString& projectId) {
    const auto id = ParseCentreId(projectId);
    if (!id) return std::nullopt;
    auto project = m_store.project(*id);
    if (!project || project->enterprise != who.enterprise) return std::nullopt;
    return project;
}

CString CBomCentreOperations::ProjectName(const CentreUser& who, const CString& projectId) {
    const auto project = ownProject(who, projectId);
    return project ? project->name : CString();
}

std::vector<CentreProject> CBomCentreOperations::Projects(const CentreUser& who) { return m_store.projects(who.enterprise); }

std::vector<CentreRow> CBomCentreOperations::currentRows(long long nodeId, int* revision) {
    const auto current = m_store.currentRevision(nodeId);
    if (revision) *revision = current ? current->number : 0;
    return current ? m_store.rows(current->id) : std::vector<CentreRow>();
}

std::unique_ptr<HMProjectTree_INFO> CBomCentreOperations::buildTree(const CentreProject& project) {
    auto root = std::make_unique<HMProjectTree_INFO>();
    root->m_strID = FormatCentreId(project.id);
    root->m_strName = project.name;
    root->m_strDataSchema = MakeDataSchemaXml();
    std::unordered_map<long long, HMProjectTree_INFO*> made{{0, root.get()}};
    for (const CentreNode& node : NodesInWalkOrder(m_store.nodes(project.id))) {
        HMProjectTree_INFO* parent = made.at(node.parentId);
        auto record = std::make_unique<HMProjectTree_INFO>();
        copyNodeFields(node, *record);
        record->m_pParent = parent;
        record->m_pRoot = root.get();
        if (HMIsDeviceType(node.type)) {
            int revision = 0;
            const auto rows = currentRows(node.id, &revision);
            record->m_strBoms = MakeCabinetXml(record->m_strID, node.name, revision, rows);
        }
        HMProjectTree_INFO* added = record.release();
        parent->m_arrChildren.Add(added);
        if (HMIsDeviceType(node.type)) root->m_arrCabinets.Add(added);
        made[node.id] = added;
    }
    return root;
}

std::unique_ptr<HMProjectTree_INFO> CBomCentreOperations::ProjectTree(const CentreUser& who, const CString& projectId) {
    CentreTransaction transaction(m_store, Mode::Read);
    const auto project = ownProject(who, projectId);
    return project ? buildTree(*project) : nullptr;
}

std::unique_ptr<HMProjectTree_INFO> CBomCentreOperations::OneCabinetTree(const CentreUser& who) {
    CentreTransaction transaction(m_store, Mode::Read);
    const auto projects = m_store.projects(who.enterprise);
    const auto latest = std::max_element(projects.begin(), projects.end(), [](const CentreProject& a, const CentreProject& b) {
        return a.lastRevisionId < b.lastRevisionId;
    });
    if (latest == projects.end() || latest->lastRevisionId == 0) return nullptr;
    for (const CentreNode& node : NodesInWalkOrder(m_store.nodes(latest->id))) {
        if (!HMIsDeviceType(node.type)) continue;
        auto device = std::make_unique<HMProjectTree_INFO>();
        copyNodeFields(node, *device);
        int revision = 0;
        const auto rows = currentRows(node.id, &revision);
        device->m_strBoms = MakeCabinetXml(device->m_strID, node.name, revision, rows);
        return device;
    }
    return nullptr;
}

void CBomCentreOperations::SubmitItm(const CentreUser& who, HMProjectTree_INFO& tree) {
    CheckNewProjectTree(tree);
    const std::vector<TreeWalkStep> steps = NodesBelow(tree);
    const CString now = CentreTimeNow();

    CentreTransaction transaction(m_store, Mode::Write);
    m_store.lockEnterprise(who.enterprise);
    for (const CentreProject& project : m_store.projects(who.enterprise))
        if (QxFs::NamesEqual(project.name, tree.m_strName))
            throw CCentreError(QxFormat(u"The enterprise already has a project named \"%s\" (ID %s).", project.name,
                                        FormatCentreId(project.id)));
    const long long projectId = m_store.addProject({0, who.enterprise, tree.m_strName, now, 0});
    // Walk order puts a parent before its children, so a parent's key is known when its child is kept.
    std::unordered_map<const HMProjectTree_INFO*, long long> ids{{&tree, 0}};
    std::unordered_map<const HMProjectTree_INFO*, CString> blocks;
    for (const TreeWalkStep& step : steps) {
        const HMProjectTree_INFO& node = *step.node;
        const long long id = m_store.addNode({0, projectId, ids.at(step.parent), step.position, node.m_strName,
                                              node.m_strType, node.m_strCirNo, node.m_strCirName, node.m_strCirType,
                                              node.m_strCirSize});
        ids[&node] = id;
        if (!HMIsDeviceType(node.m_strType)) continue;
        const auto rows = rowsOf(node);
        m_store.addRevision({0, id, 1, u"itm", who.enterprise, who.user, now}, rows);
        blocks[&node] = MakeCabinetXml(FormatCentreId(id), node.m_strName, 1, rows);
    }
    transaction.commit();

    tree.m_strID = FormatCentreId(projectId);
    tree.m_strDataSchema = MakeDataSchemaXml();
    tree.m_bChanged = true;
    for (const TreeWalkStep& step : steps) {
        HMProjectTree_INFO* node = step.node;
        node->m_strID = FormatCentreId(ids.at(node));
        node->m_strDataSchema = tree.m_strDataSchema;
        if (const auto block = blocks.find(node); block != blocks.end()) node->m_strBoms = block->second;
        node->m_bChanged = true;
    }
}

SubmitReport CBomCentreOperations::SubmitBom(const CentreUser& who, HMProjectTree_INFO& tree, const CString& submitKey) {
    return submitRevisions(who, tree, SubmitKind::Bom, submitKey);
}

SubmitReport CBomCentreOperations::SubmitSecondary(const CentreUser& who, HMProjectTree_INFO& tree, const CString& submitKey) {
    return submitRevisions(who, tree, SubmitKind::Secondary, submitKey);
}

SubmitReport CBomCentreOperations::submitRevisions(const CentreUser& who, HMProjectTree_INFO& tree, SubmitKind kind,
                                                   const CString& submitKey) {
    struct Accepted {
        HMProjectTree_INFO* device;
        CString block;
    };
    const CString now = CentreTimeNow();
    SubmitReport report;
    std::vector<Accepted> accepted;

    CentreTransaction transaction(m_store, Mode::Write);
    // A project's tree may only touch that project's devices.
    long long requiredProject = 0;
    if (!HMIsDeviceType(tree.m_strType) && !tree.m_strID.IsEmpty()) {
        const auto project = ownProject(who, tree.m_strID);
        if (!project)
            throw CCentreError(QxFormat(u"The centre has no project of the ID \"%s\" (\"%s\").", tree.m_strID, tree.m_strName));
        requiredProject = project->id;
        m_store.lockProject(requiredProject);
    }
    std::set<long long> taken;
    // Projects already found to be the user's enterprise's: each is looked up once, not once per device.
    std::set<long long> ownProjects;
    if (requiredProject != 0) ownProjects.insert(requiredProject);
    const auto isOwn = [&](long long projectId) {
        if (ownProjects.contains(projectId)) return true;
        if (requiredProject != 0) return false;
        const auto project = m_store.project(projectId);
        if (!project || project->enterprise != who.enterprise) return false;
        ownProjects.insert(projectId);
        return true;
    };
    for (HMProjectTree_INFO* device : devicesOf(tree)) {
        const auto id = ParseCentreId(device->m_strID);
        const auto node = id ? m_store.node(*id) : std::nullopt;
        const bool known = node && HMIsDeviceType(node->type) && isOwn(node->projectId);
        if (!known) {
            report.skipped.push_back(QxFormat(u"%s: the centre knows no device of the ID \"%s\" in this project",
                                              device->m_strName, device->m_strID));
            continue;
        }
        if (!taken.insert(*id).second) {
            report.skipped.push_back(QxFormat(u"%s: the device of the ID %s is in the tree twice", device->m_strName, device->m_strID));
            continue;
        }
        // A device's project never changes, so it may be locked after it was read.
        if (node->projectId != requiredProject) m_store.lockProject(node->projectId);
        // The same submit sent again, its first answer lost: what it kept then is the answer.
        if (const auto kept = m_store.revisionOfSubmit(*id, submitKey)) {
            accepted.push_back({device, MakeCabinetXml(device->m_strID, node->name, kept->number, m_store.rows(kept->id))});
            continue;
        }
        int current = 0;
        std::vector<CentreRow> rows = rowsOf(*device);
        if (kind == SubmitKind::Secondary) {
            std::vector<CentreRow> merged;
            for (const CentreRow& row : currentRows(*id, &current))
                if (!row.secondary) merged.push_back(row);
            for (const CentreRow& row : rows)
                if (row.secondary) merged.push_back(row);
            rows = std::move(merged);
        } else if (const auto revision = m_store.currentRevision(*id)) {
            // A new primary list replaces the rows whole: only the number of the current one is needed.
            current = revision->number;
        }
        m_store.addSubmittedRevision({0, *id, current + 1, kind == SubmitKind::Bom ? u"bom" : u"secondary", who.enterprise,
                                      who.user, now},
                                     rows, submitKey);
        accepted.push_back({device, MakeCabinetXml(device->m_strID, node->name, current + 1, rows)});
    }
    transaction.commit();

    const CString schema = MakeDataSchemaXml();
    for (const Accepted& done : accepted) {
        done.device->m_strBoms = done.block;
        if (done.device->m_strDataSchema.IsEmpty()) done.device->m_strDataSchema = schema;
        done.device->m_bChanged = true;
    }
    report.accepted = static_cast<int>(accepted.size());
    return report;
}

bool CBomCentreOperations::ImportRows(const CentreUser& who, const CString& projectId, const CString& cabinetId, BomRows& rows) {
    rows.RemoveAll();
    CentreTransaction transaction(m_store, Mode::Read);
    const auto project = ownProject(who, projectId);
    if (!project) return false;
    std::vector<CentreNode> devices;
    for (const CentreNode& node : NodesInWalkOrder(m_store.nodes(project->id)))
        if (HMIsDeviceType(node.type) && (cabinetId.IsEmpty() || FormatCentreId(node.id) == cabinetId)) devices.push_back(node);
    if (devices.empty() && !cabinetId.IsEmpty()) return false;
    BomRows found;
    for (const CentreNode& device : devices) appendRows(found, currentRows(device.id));
    rows = std::move(found);
    return true;
}

BomRows CBomCentreOperations::PartsCatalogue(const CentreUser& who) {
    using PartKey = std::tuple<std::u16string, std::u16string, std::u16string>;
    std::map<PartKey, int> index;
    BomRows catalogue;
    std::vector<long long> totals;
    CentreTransaction transaction(m_store, Mode::Read);
    for (const CentreProject& project : m_store.projects(who.enterprise)) {
        for (const CentreNode& node : NodesInWalkOrder(m_store.nodes(project.id))) {
            if (!HMIsDeviceType(node.type)) continue;
            for (const CentreRow& row : currentRows(node.id)) {
                const PartKey key{row.name.str(), row.model.str(), row.code.str()};
                auto [it, added] = index.try_emplace(key, catalogue.GetSize());
                if (added) {
                    catalogue.Add({CString(), row.name, row.model, CString(), CString(), row.code});
                    totals.push_back(0);
                }
                long long& total = totals[static_cast<size_t>(it->second)];
                total = std::min(total + RowCountValue(row.count), static_cast<long long>(INT_MAX));
            }
        }
    }
    for (int i = 0; i < catalogue.GetSize(); ++i) catalogue[i].m_strRowCount = QxFormat(u"%d", totals[static_cast<size_t>(i)]);
    return catalogue;
}

std::vector<DeviceComparison> CBomCentreOperations::Compare(const CentreUser& who, const HMProjectTree_INFO& tree) {
    std::vector<DeviceComparison> out;
    CentreTransaction transaction(m_store, Mode::Read);
    for (const HMProjectTree_INFO* device : devicesOf(const_cast<HMProjectTree_INFO&>(tree))) {
        DeviceComparison comparison{device->m_strName, device->m_strID, false, 0, {}};
        const auto id = ParseCentreId(device->m_strID);
        const auto node = id ? m_store.node(*id) : std::nullopt;
        const auto project = node ? m_store.project(node->projectId) : std::nullopt;
        comparison.known = node && HMIsDeviceType(node->type) && project && project->enterprise == who.enterprise;
        if (comparison.known) comparison.differences = CompareRows(currentRows(*id, &comparison.revision), rowsOf(*device));
        out.push_back(std::move(comparison));
    }
    return out;
}
