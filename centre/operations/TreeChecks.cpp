// What the centre asks of a tree before it keeps it.
#include "centre/operations/TreeChecks.h"

#include "centre/operations/CentreError.h"
#include "support/FileSystem.h"
#include "support/Format.h"

#include <unordered_map>
#include <unordered_set>

namespace {

// Characters no folder name may hold on the clients' file systems.
bool isForbidden(char16_t ch) {
    return ch < 0x20 || ch == u'\\' || ch == u'/' || ch == u':' || ch == u'*' || ch == u'?' || ch == u'"' ||
           ch == u'<' || ch == u'>' || ch == u'|';
}

// Names are compared as the file system compares them, each folded once, so that a wide level costs
// linear time.
void checkSiblings(const HMProjectTree_INFO& parent) {
    std::unordered_map<std::u16string, const CString*> folded;
    for (const HMProjectTree_INFO* child : parent.m_arrChildren) {
        std::u16string key = child->m_strName.str();
        for (char16_t& ch : key) ch = QxFs::FoldNameChar(ch);
        const auto [it, added] = folded.try_emplace(std::move(key), &child->m_strName);
        if (!added)
            throw CCentreError(QxFormat(u"\"%s\" and \"%s\" under \"%s\" would share one folder.", *it->second,
                                        child->m_strName, parent.m_strName));
    }
}

} // namespace

std::vector<TreeWalkStep> NodesBelow(const HMProjectTree_INFO& root) {
    std::vector<TreeWalkStep> order;
    std::unordered_set<const HMProjectTree_INFO*> seen{&root};
    std::vector<const HMProjectTree_INFO*> parents{&root};
    std::vector<int> next{0};
    while (!parents.empty()) {
        const HMProjectTree_INFO& parent = *parents.back();
        const int index = next.back()++;
        if (index >= parent.m_arrChildren.GetSize()) {
            parents.pop_back();
            next.pop_back();
            continue;
        }
        HMProjectTree_INFO* child = parent.m_arrChildren[index];
        if (!child || !seen.insert(child).second) continue;
        order.push_back({child, &parent, index});
        parents.push_back(child);
        next.push_back(0);
    }
    return order;
}

CString FolderNameProblem(const CString& name) {
    if (name.IsEmpty()) return u"an empty name";
    if (name == u"." || name == u"..") return QxFormat(u"the name \"%s\"", name);
    for (const char16_t ch : name.view())
        if (isForbidden(ch)) return QxFormat(u"the name \"%s\", which holds a character no folder name may hold", name);
    const char16_t last = name[name.GetLength() - 1];
    if (last == u' ' || last == u'.') return QxFormat(u"the name \"%s\", which ends in a space or a dot", name);
    return CString();
}

void CheckNewProjectTree(const HMProjectTree_INFO& root) {
    if (!root.m_strType.IsEmpty())
        throw CCentreError(QxFormat(u"\"%s\" is not the root of a project (its type is \"%s\").", root.m_strName, root.m_strType));
    if (const CString problem = FolderNameProblem(root.m_strName); !problem.IsEmpty())
        throw CCentreError(QxFormat(u"The project cannot be kept: it has %s.", problem));

    std::vector<const HMProjectTree_INFO*> parents{&root};
    for (const TreeWalkStep& step : NodesBelow(root)) parents.push_back(step.node);
    std::unordered_set<const HMProjectTree_INFO*> seen{&root};
    for (const HMProjectTree_INFO* parent : parents) {
        for (const HMProjectTree_INFO* child : parent->m_arrChildren) {
            if (!child || !seen.insert(child).second)
                throw CCentreError(QxFormat(u"A node under \"%s\" is empty or appears twice in the tree.", parent->m_strName));
            if (const CString problem = FolderNameProblem(child->m_strName); !problem.IsEmpty())
                throw CCentreError(QxFormat(u"A node under \"%s\" has %s.", parent->m_strName, problem));
            if (child->m_strType.IsEmpty())
                throw CCentreError(QxFormat(u"\"%s\" has no type: only a project's root has none.", child->m_strName));
            if (HMIsDeviceType(child->m_strType) && !child->m_arrChildren.IsEmpty())
                throw CCentreError(QxFormat(u"The device \"%s\" has nodes below it.", child->m_strName));
        }
        checkSiblings(*parent);
    }
}
