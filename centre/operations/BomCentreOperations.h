// The BOM centre's operations, written once over the storage seam: accounts, usage files, projects with
// their trees, revisions of device rows, the parts catalogue and comparisons. They talk to nobody: refusals
// and store failures come back as CCentreError, and whoever runs them (the embedded backend, a server)
// tells the person. Every change is one transaction; on an error neither the store nor the caller's tree
// is changed.
#pragma once

#include "centre/operations/BomComparison.h"
#include "centre/operations/CentreStore.h"
#include "project/ProjectTree.h"

#include <memory>

// Who asks: the logged-in enterprise and user. Projects belong to an enterprise.
struct CentreUser {
    CString enterprise;
    CString user;
};

struct SubmitReport {
    int accepted = 0;
    std::vector<CString> skipped;  // devices the centre did not take, each with the reason
};

class QX_API CBomCentreOperations {
public:
    explicit CBomCentreOperations(ICentreStore& store) : m_store(store) {}

    // 1: the credential matches (the first login of an enterprise and user makes the account); -1: it does not,
    // or the account is disabled. For one person's own centre; a team's accounts are kept by CCentreAccounts.
    int CheckAccount(const CString& enterprise, const CString& user, const CString& credential);
    void KeepUsageFile(const CentreUser& who, const CString& item, const CString& key, const CString& text);

    // Empty when the enterprise has no project of this ID.
    CString ProjectName(const CentreUser& who, const CString& projectId);
    std::vector<CentreProject> Projects(const CentreUser& who);
    // The project's tree as the centre has it, with links, cabinets and both XML blocks; null when the
    // enterprise has no project of this ID.
    std::unique_ptr<HMProjectTree_INFO> ProjectTree(const CentreUser& who, const CString& projectId);
    // The first device of the enterprise's most recently submitted project, alone; null when there is none.
    std::unique_ptr<HMProjectTree_INFO> OneCabinetTree(const CentreUser& who);

    // Creates the project: IDs, revision 1 of every device, both blocks, and m_bChanged on every node.
    void SubmitItm(const CentreUser& who, HMProjectTree_INFO& tree);
    // A new revision of every known device of the tree; the accepted rows go back into m_strBoms. A submit
    // with a key that a device's revision already carries (the same submit sent again) keeps nothing new
    // for that device and answers with that revision.
    SubmitReport SubmitBom(const CentreUser& who, HMProjectTree_INFO& tree, const CString& submitKey = {});
    // The same with the tree's secondary rows over the current primary rows.
    SubmitReport SubmitSecondary(const CentreUser& who, HMProjectTree_INFO& tree, const CString& submitKey = {});

    // The current rows of one device of the project (primary first), or of all its devices when the
    // cabinet ID is empty. False, with no rows, for an unknown project or device.
    bool ImportRows(const CentreUser& who, const CString& projectId, const CString& cabinetId, BomRows& rows);
    // One row per distinct name, model and code over the current revisions of the enterprise's devices.
    BomRows PartsCatalogue(const CentreUser& who);
    // Each device of the tree against the centre's current revision.
    std::vector<DeviceComparison> Compare(const CentreUser& who, const HMProjectTree_INFO& tree);

private:
    enum class SubmitKind { Bom, Secondary };
    SubmitReport submitRevisions(const CentreUser& who, HMProjectTree_INFO& tree, SubmitKind kind, const CString& submitKey);
    std::optional<CentreProject> ownProject(const CentreUser& who, const CString& projectId);
    std::unique_ptr<HMProjectTree_INFO> buildTree(const CentreProject& project);
    std::vector<CentreRow> currentRows(long long nodeId, int* revision = nullptr);

    ICentreStore& m_store;
};

// A project's nodes with every parent before its children and siblings in their order, as trees are walked.
// Nodes whose parent is missing are left out.
QX_API std::vector<CentreNode> NodesInWalkOrder(std::vector<CentreNode> nodes);

// The time stamps the centre writes: UTC, ISO 8601, to the second.
QX_API CString CentreTimeNow();
