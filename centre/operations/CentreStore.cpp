// The storage seam's shared parts.
#include "centre/operations/CentreStore.h"

ICentreStore::~ICentreStore() = default;

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
