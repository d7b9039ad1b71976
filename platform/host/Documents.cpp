// The host's document manager and the working database.
#include "platform/host/Documents.h"

#include "platform/host/HostVariables.h"
#include "support/Format.h"

#include <algorithm>

namespace {

bool singleDocumentMode() {
    resbuf value{};
    return acedGetVar(u"SDI", &value) == RTNORM && value.resval.rint != 0;
}

} // namespace

AcApDocument::AcApDocument(CString fileName, std::unique_ptr<AcDbDatabase> database)
    : m_fileName(std::move(fileName)), m_database(std::move(database)) {}

AcApDocManager::AcApDocManager() {
    reset();
}

AcApDocManager::~AcApDocManager() = default;

void AcApDocManager::reset() {
    acdbHostApplicationServices()->m_working = nullptr;
    m_pending.clear();
    m_resourceHandles.clear();
    m_documents.clear();
    m_current = m_active = nullptr;
    m_untitled = 0;
    const CString name = QxFormat(u"Drawing%d.dwg", ++m_untitled);
    addDocument(std::make_unique<AcApDocument>(name, std::make_unique<AcDbDatabase>()));
}

AcApDocument* AcApDocManager::addDocument(std::unique_ptr<AcApDocument> document) {
    AcApDocument* added = document.get();
    m_documents.push_back(std::move(document));
    m_current = m_active = added;
    return added;
}

bool AcApDocManager::holds(const AcApDocument* document) const {
    return std::any_of(m_documents.begin(), m_documents.end(), [&](const auto& d) { return d.get() == document; });
}

std::unique_ptr<AcApDocumentIterator> AcApDocManager::newAcApDocumentIterator() const {
    std::vector<AcApDocument*> documents;
    for (const auto& document : m_documents) documents.push_back(document.get());
    return std::make_unique<AcApDocumentIterator>(std::move(documents));
}

Acad::ErrorStatus AcApDocManager::lockDocument(AcApDocument* document, AcAp::DocLockMode, const char16_t*,
                                               const char16_t*, bool) {
    if (!holds(document)) return Acad::eNoDocument;
    ++document->m_lockCount;
    return Acad::eOk;
}

Acad::ErrorStatus AcApDocManager::unlockDocument(AcApDocument* document) {
    if (!holds(document)) return Acad::eNoDocument;
    if (document->m_lockCount == 0) return Acad::eLockViolation;
    --document->m_lockCount;
    return Acad::eOk;
}

Acad::ErrorStatus AcApDocManager::setCurDocument(AcApDocument* document, AcAp::DocLockMode, bool activate) {
    if (!holds(document)) return Acad::eNoDocument;
    m_current = document;
    if (activate) m_active = document;
    return Acad::eOk;
}

Acad::ErrorStatus AcApDocManager::activateDocument(AcApDocument* document, bool) {
    if (!holds(document)) return Acad::eNoDocument;
    m_active = document;
    return Acad::eOk;
}

Acad::ErrorStatus AcApDocManager::sendStringToExecute(AcApDocument* document, const CString& text, bool, bool, bool) {
    if (!holds(document)) return Acad::eNoDocument;
    m_pending.push_back({document, text});
    return Acad::eOk;
}

AcApDocument* AcApDocManager::openDocument(const CString& path, bool readOnly) {
    return openDocument(path, readOnly, nullptr);
}

AcApDocument* AcApDocManager::openDocument(const CString& path, bool, std::unique_ptr<AcDbDatabase> alreadyRead) {
    for (const auto& document : m_documents) {
        if (!document->fileName().EqualsNoCase(path)) continue;
        m_current = m_active = document.get();
        return document.get();
    }
    std::unique_ptr<AcDbDatabase> database = std::move(alreadyRead);
    if (!database) {
        database = std::make_unique<AcDbDatabase>(false, false);
        if (database->readDwgFile(path) != Acad::eOk) return nullptr;
    }
    AcApDocument* replaced = singleDocumentMode() ? m_current : nullptr;
    AcApDocument* opened = addDocument(std::make_unique<AcApDocument>(path, std::move(database)));
    if (replaced != nullptr) closeDocument(replaced);
    return opened;
}

Acad::ErrorStatus AcApDocManager::closeDocument(AcApDocument* document) {
    const auto it = std::find_if(m_documents.begin(), m_documents.end(), [&](const auto& d) { return d.get() == document; });
    if (it == m_documents.end()) return Acad::eNoDocument;
    AcDbHostApplicationServices* services = acdbHostApplicationServices();
    if (services->m_working == document->database()) services->m_working = nullptr;
    std::erase_if(m_pending, [&](const PendingCommand& pending) { return pending.document == document; });
    m_documents.erase(it);
    AcApDocument* fallback = m_documents.empty() ? nullptr : m_documents.back().get();
    if (m_current == document) m_current = fallback;
    if (m_active == document) m_active = fallback;
    return Acad::eOk;
}

std::vector<PendingCommand> AcApDocManager::TakePendingCommands() {
    std::vector<PendingCommand> taken;
    taken.swap(m_pending);
    return taken;
}

AcApDocManager* acDocManagerPtr() {
    static AcApDocManager manager;
    return &manager;
}

AcDbDatabase* AcDbHostApplicationServices::workingDatabase() const {
    if (m_working != nullptr) return m_working;
    const AcApDocument* current = acDocManagerPtr()->curDocument();
    return current ? current->database() : nullptr;
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
    static AcDbHostApplicationServices services;
    return &services;
}

void acedPostCommandPrompt() {}
