// Trees that the team tests submit: a project of one sub-project and a few devices, as HMItmSubmit
// builds it from folders.
#pragma once

#include "project/ProjectTree.h"

#include <memory>
#include <string>

namespace team_test {

inline HMProjectTree_INFO* addNode(HMProjectTree_INFO& parent, HMProjectTree_INFO& root, const CString& name, const CString& type) {
    auto* child = new HMProjectTree_INFO;
    child->m_strName = name;
    child->m_strType = type;
    child->m_strCirNo = name;
    child->m_pParent = &parent;
    child->m_pRoot = &root;
    parent.m_arrChildren.Add(child);
    if (HMIsDeviceType(type)) root.m_arrCabinets.Add(child);
    return child;
}

// `devices` devices under one sub-project "出线", each with one primary row.
inline std::unique_ptr<HMProjectTree_INFO> project(const CString& name, int devices) {
    auto root = std::make_unique<HMProjectTree_INFO>();
    root->m_strName = name;
    HMProjectTree_INFO* lines = addNode(*root, *root, u"出线", u"100");
    for (int i = 1; i <= devices; ++i) {
        HMProjectTree_INFO* device = addNode(*lines, *root, CString(("AH" + std::to_string(i)).c_str()), u"0");
        device->m_arrPrimaryBom.Add({CString(), u"断路器", u"VS1-12/1250", u"1", u"带 <手车> & \"底座\"", u"QF-01"});
    }
    return root;
}

// The whole tree in one line, to compare at once: "name:type" of every node with its children in braces,
// then the root's device list. A node whose parent or root link is wrong is marked "(unlinked)".
inline std::string shape(const HMProjectTree_INFO& node, const HMProjectTree_INFO* parent = nullptr,
                         const HMProjectTree_INFO* root = nullptr) {
    std::string text = (node.m_strName + ":" + node.m_strType).ToUtf8();
    if (parent && (node.m_pParent != parent || node.m_pRoot != root)) text += "(unlinked)";
    if (!node.m_arrChildren.IsEmpty()) {
        text += " {";
        for (const HMProjectTree_INFO* child : node.m_arrChildren) text += " " + shape(*child, &node, root ? root : &node);
        text += " }";
    }
    if (!parent) {
        text += " devices:";
        for (const HMProjectTree_INFO* device : node.m_arrCabinets) text += " " + device->m_strName.ToUtf8();
    }
    return text;
}

} // namespace team_test
