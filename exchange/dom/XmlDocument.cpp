// The DOM document: creation, loading from a file or from text, node creation and the document's own view.
#include "exchange/dom/XmlDocument.h"

#include "exchange/dom/XmlChars.h"
#include "exchange/dom/XmlStore.h"
#include "support/FileSystem.h"

bool CXmlDocument::CreateInstance() {
    try {
        m_store = std::make_shared<CXmlStore>();
        m_parseError.Empty();
        return true;
    } catch (const std::bad_alloc&) {
        m_store.reset();
        return false;
    }
}

void CXmlDocument::Release() {
    m_store.reset();
    m_parseError.Empty();
}

CXmlNode CXmlDocument::root() const {
    if (!m_store) throw CXmlDomError(CXmlDomError::kInvalidPointer);
    return CXmlNode(m_store, m_store->doc);
}

bool CXmlDocument::replaceContent(bool (*parse)(std::string_view, CXmlStore&, CString&), std::string_view bytes) {
    // A fresh store, so that references into the old content stay valid on their own.
    auto store = QxXmlGuard([] { return std::make_shared<CXmlStore>(); });
    CString reason;
    const bool parsed = QxXmlGuard([&] { return parse(bytes, *store, reason); });
    m_store = std::move(store);
    m_parseError = parsed ? CString() : reason;
    return parsed;
}

bool CXmlDocument::load(const CString& path) {
    root();
    std::string bytes;
    if (!QxFs::ReadBytes(path, bytes)) {
        m_store = QxXmlGuard([] { return std::make_shared<CXmlStore>(); });
        m_parseError = CString(u"The system cannot open the file: ") + path;
        return false;
    }
    return replaceContent(&ParseXmlFile, bytes);
}

bool CXmlDocument::loadXML(const CString& text) {
    root();
    const std::string utf8 = QxXmlGuard([&] { return ToXmlText(text); });
    return replaceContent(&ParseXmlText, utf8);
}

CXmlNode CXmlDocument::create(pugi::xml_node_type type, const CString& name, const CString& value) const {
    root();
    return QxXmlGuard([&] {
        pugi::xml_node node = m_store->Unattached().append_child(type);
        if (!node) throw std::bad_alloc();
        if (!name.IsEmpty() && !node.set_name(ToXmlText(name).c_str())) throw std::bad_alloc();
        if (!value.IsEmpty() && !node.set_value(DropForbiddenXmlChars(ToXmlText(value)).c_str())) throw std::bad_alloc();
        return CXmlNode(m_store, node);
    });
}

CXmlNode CXmlDocument::createProcessingInstruction(const CString& target, const CString& data) const {
    root();
    CheckXmlName(target);
    return create(pugi::node_pi, target, data);
}

CXmlElement CXmlDocument::createElement(const CString& name) const {
    root();
    CheckXmlName(name);
    return CXmlElement(create(pugi::node_element, name, CString()));
}

CXmlNode CXmlDocument::createTextNode(const CString& text) const { return create(pugi::node_pcdata, CString(), text); }

CXmlNode CXmlDocument::appendChild(const CXmlNode& child) const { return root().appendChild(child); }

CXmlElement CXmlDocument::documentElement() const {
    root();
    return CXmlElement(CXmlNode(m_store, m_store->DocumentElement()));
}

CXmlNode CXmlDocument::selectSingleNode(const CString& xpath) const { return root().selectSingleNode(xpath); }

CXmlNodeList CXmlDocument::selectNodes(const CString& xpath) const { return root().selectNodes(xpath); }

CString CXmlDocument::xml() const { return root().xml(); }
