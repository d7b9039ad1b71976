// Node, element and node-list references over the pugixml tree of a document's store.
#include "exchange/dom/XmlNode.h"

#include "exchange/dom/XmlChars.h"
#include "exchange/dom/XmlStore.h"
#include "support/Encoding.h"

namespace {

[[noreturn]] void fail(const char16_t* description) { throw CXmlDomError(CXmlDomError::kUnspecified, description); }

bool canHoldChildren(pugi::xml_node node) {
    return node.type() == pugi::node_element || node.type() == pugi::node_document;
}

bool isAncestorOrSelf(pugi::xml_node candidate, pugi::xml_node node) {
    for (pugi::xml_node walk = node; walk; walk = walk.parent()) {
        if (walk == candidate) return true;
    }
    return false;
}

// What a document may hold at its top: one element and markup around it, no text.
void checkTopLevelChild(const CXmlStore& store, pugi::xml_node child) {
    switch (child.type()) {
    case pugi::node_element:
        if (store.DocumentElement() && store.DocumentElement() != child)
            fail(u"Only one top level element is allowed in an XML document.");
        return;
    case pugi::node_pi:
    case pugi::node_comment:
    case pugi::node_declaration:
    case pugi::node_doctype:
        return;
    default:
        fail(u"This operation cannot be performed with a node of this type at the top level of a document.");
    }
}

// XML names, with every non-ASCII character let through: enough to refuse what no DOM would take.
bool isNameStart(char16_t ch) { return (ch >= u'A' && ch <= u'Z') || (ch >= u'a' && ch <= u'z') || ch == u'_' || ch == u':' || ch >= 0x80; }
bool isNameChar(char16_t ch) { return isNameStart(ch) || (ch >= u'0' && ch <= u'9') || ch == u'-' || ch == u'.'; }

} // namespace

std::string ToXmlText(const CString& text) { return Utf16ToUtf8(text.view()); }

CString FromXmlText(const char* utf8) { return CString(Utf8ToUtf16(utf8 ? utf8 : "")); }

CString PrintXmlNode(pugi::xml_node node) {
    struct StringWriter final : pugi::xml_writer {
        std::string text;
        void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
    } writer;
    node.print(writer, "", kXmlPrintOptions, pugi::encoding_utf8);
    return CString(Utf8ToUtf16(writer.text));
}

void CheckXmlName(const CString& name) {
    bool valid = !name.IsEmpty() && isNameStart(name[0]);
    for (int i = 1; valid && i < name.GetLength(); ++i) valid = isNameChar(name[i]);
    if (!valid) fail(u"The name is not a valid XML name.");
}

pugi::xml_node CXmlNode::checked() const {
    if (!m_node || !m_store) throw CXmlDomError(CXmlDomError::kInvalidPointer);
    return m_node;
}

CXmlNode CXmlNode::appendChild(const CXmlNode& child) const {
    const pugi::xml_node parent = checked();
    const pugi::xml_node moving = child.checked();
    return QxXmlGuard([&] {
        if (!canHoldChildren(parent)) fail(u"This node cannot hold children.");
        if (moving.type() == pugi::node_document) fail(u"A document cannot be appended to a node.");
        if (parent.type() == pugi::node_document) checkTopLevelChild(*m_store, moving);
        if (child.m_store != m_store) {
            const pugi::xml_node copy = pugi::xml_node(parent).append_copy(moving);
            if (!copy) throw std::bad_alloc();
            return CXmlNode(m_store, copy);
        }
        if (isAncestorOrSelf(moving, parent)) fail(u"The node to append holds the node it is appended to.");
        const pugi::xml_node moved = pugi::xml_node(parent).append_move(moving);
        if (!moved) fail(u"The node cannot be appended here.");
        return CXmlNode(m_store, moved);
    });
}

CXmlNode CXmlNode::cloneNode(bool deep) const {
    const pugi::xml_node source = checked();
    return QxXmlGuard([&] {
        if (source.type() == pugi::node_document) fail(u"A document cannot be cloned as a node.");
        pugi::xml_node holder = m_store->Unattached();
        if (deep) {
            const pugi::xml_node copy = holder.append_copy(source);
            if (!copy) throw std::bad_alloc();
            return CXmlNode(m_store, copy);
        }
        pugi::xml_node copy = holder.append_child(source.type());
        if (!copy) throw std::bad_alloc();
        if (*source.name() && !copy.set_name(source.name())) throw std::bad_alloc();
        if (*source.value() && !copy.set_value(source.value())) throw std::bad_alloc();
        for (pugi::xml_attribute attribute : source.attributes()) {
            if (!copy.append_attribute(attribute.name()).set_value(attribute.value())) throw std::bad_alloc();
        }
        return CXmlNode(m_store, copy);
    });
}

CXmlNode CXmlNode::selectSingleNode(const CString& xpath) const {
    const CXmlNodeList matches = selectNodes(xpath);
    return matches.item(0);
}

CXmlNodeList CXmlNode::selectNodes(const CString& xpath) const {
    const pugi::xml_node context = checked();
    return QxXmlGuard([&] {
        const pugi::xpath_query query(ToXmlText(xpath).c_str());
        pugi::xpath_node_set found = query.evaluate_node_set(context);
        found.sort();
        // From the document proper only its own nodes are found; from an unattached node also its own subtree.
        const pugi::xml_node contextTop = m_store->UnattachedTop(context);
        auto entries = std::make_shared<CXmlNodeList::Entries>();
        entries->store = m_store;
        for (const pugi::xpath_node& match : found) {
            const pugi::xml_node node = match.node();
            if (!node || m_store->IsHidden(node)) continue;
            if (m_store->UnattachedTop(node) != contextTop) continue;
            entries->nodes.push_back(node);
        }
        return CXmlNodeList(std::move(entries));
    });
}

CString CXmlNode::xml() const {
    const pugi::xml_node node = checked();
    return QxXmlGuard([&] {
        if (node.type() != pugi::node_document) return PrintXmlNode(node);
        CString text;
        for (pugi::xml_node child : node.children()) {
            if (!m_store->IsHidden(child)) text += PrintXmlNode(child);
        }
        return text;
    });
}

CXmlElement::CXmlElement(const CXmlNode& node) {
    if (node.m_node.type() != pugi::node_element) return;
    m_store = node.m_store;
    m_node = node.m_node;
}

void CXmlElement::setAttribute(const CString& name, const CString& value) const {
    pugi::xml_node element = checked();
    CheckXmlName(name);
    QxXmlGuard([&] {
        const std::string key = ToXmlText(name);
        pugi::xml_attribute attribute = element.attribute(key.c_str());
        if (!attribute) attribute = element.append_attribute(key.c_str());
        if (!attribute || !attribute.set_value(DropForbiddenXmlChars(ToXmlText(value)).c_str())) throw std::bad_alloc();
    });
}

std::optional<CString> CXmlElement::getAttribute(const CString& name) const {
    const pugi::xml_node element = checked();
    return QxXmlGuard([&]() -> std::optional<CString> {
        const pugi::xml_attribute attribute = element.attribute(ToXmlText(name).c_str());
        if (!attribute) return std::nullopt;
        return FromXmlText(attribute.value());
    });
}

int CXmlNodeList::length() const {
    if (!m_entries) throw CXmlDomError(CXmlDomError::kInvalidPointer);
    return static_cast<int>(m_entries->nodes.size());
}

CXmlNode CXmlNodeList::item(int index) const {
    if (index < 0 || index >= length()) return CXmlNode();
    return CXmlNode(m_entries->store, m_entries->nodes[static_cast<size_t>(index)]);
}
