// The storage seam's shared parts.
#include "centre/operations/CentreStore.h"

#include "centre/operations/CentreError.h"

ICentreStore::~ICentreStore() = default;

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
