// The storage seam's shared parts.
#include "centre/operations/CentreStore.h"

#include "centre/operations/CentreError.h"

ICentreStore::~ICentreStore() = default;

namespace {

[[noreturn]] void refuseKeys() { throw CCentreStoreError(u"This store keeps no keys of submits."); }

} // namespace

long long ICentreStore::addSubmittedRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows,
                                             const CString& submitKey) {
    if (!submitKey.IsEmpty()) refuseKeys();
    return addRevision(revision, rows);
}

std::optional<CentreRevision> ICentreStore::revisionOfSubmit(long long, const CString& submitKey) {
    if (!submitKey.IsEmpty()) refuseKeys();
    return std::nullopt;
}

std::string StoreText(const CString& text) {
    if (text.Find(u'\0') >= 0) throw CCentreError(u"A text holding a NUL character is refused.");
    return text.ToUtf8();
}

CentreTransaction::CentreTransaction(ICentreStore& store, Mode mode) : m_store(store) {
    if (mode == Mode::Write) m_store.beginWrite();
    else m_store.beginRead();
}

CentreTransaction::~CentreTransaction() {
    if (m_open) m_store.rollback();
}

void CentreTransaction::commit() {
    m_store.commit();
    m_open = false;
}
