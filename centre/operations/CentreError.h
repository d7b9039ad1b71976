// Why the BOM centre refused or failed an operation, in words for the person.
#pragma once

#include "support/CString.h"

#include <stdexcept>

// The centre refuses the request: bad input, an unknown ID, a name already taken. Nothing was changed.
class QX_API CCentreError : public std::runtime_error {
public:
    explicit CCentreError(const CString& message) : std::runtime_error(message.ToUtf8()), m_message(message) {}
    const CString& message() const { return m_message; }

private:
    CString m_message;
};

// The store behind the centre failed: locked too long, damaged, of a newer schema, not writable.
// Whatever the operation had begun was rolled back.
class QX_API CCentreStoreError : public CCentreError {
public:
    explicit CCentreStoreError(const CString& message, bool locked = false) : CCentreError(message), m_locked(locked) {}
    // Another process held the store longer than the centre waits: a later try may succeed.
    bool locked() const { return m_locked; }

private:
    bool m_locked;
};

// A writer of the store held what this operation needs longer than the store waits for it. The words are
// fit for anyone; the store itself is sound and a later try may succeed.
class QX_API CCentreBusyError : public CCentreStoreError {
public:
    explicit CCentreBusyError(const CString& message) : CCentreStoreError(message, true) {}
};
