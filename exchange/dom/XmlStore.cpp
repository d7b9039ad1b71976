// The shared store of one DOM document and its hidden place for nodes not yet appended.
#include "exchange/dom/XmlStore.h"

namespace {

// Not a valid XML name, so that no document can hold an element that looks like it.
constexpr const char* kUnattachedName = "#unattached";

} // namespace

pugi::xml_node CXmlStore::Unattached() {
    if (!m_unattached) m_unattached = doc.prepend_child(kUnattachedName);
    return m_unattached;
}

bool CXmlStore::IsHidden(pugi::xml_node node) const { return m_unattached && node == m_unattached; }

pugi::xml_node CXmlStore::UnattachedTop(pugi::xml_node node) const {
    if (!m_unattached) return {};
    for (pugi::xml_node walk = node; walk; walk = walk.parent()) {
        if (walk.parent() == m_unattached) return walk;
    }
    return {};
}

pugi::xml_node CXmlStore::DocumentElement() const {
    for (pugi::xml_node child : doc.children()) {
        if (child.type() == pugi::node_element && !IsHidden(child)) return child;
    }
    return {};
}
