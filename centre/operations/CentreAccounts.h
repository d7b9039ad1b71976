// The accounts of a BOM centre that an administrator keeps (hexmoord's): made, disabled and given a new
// credential by hand, never by a login. Ending an account's credential or the account ends its sessions.
#pragma once

#include "centre/operations/CentreStore.h"

#include <functional>
#include <vector>

class QX_API CCentreAccounts {
public:
    explicit CCentreAccounts(ICentreStore& store) : m_store(store) {}

    // Refused with CCentreError: an empty or NUL-holding enterprise, user or credential; an account that exists.
    void Add(const CString& enterprise, const CString& user, const CString& credential);
    // Refused with CCentreError for an unknown account.
    void Disable(const CString& enterprise, const CString& user);
    void SetCredential(const CString& enterprise, const CString& user, const CString& credential);
    std::vector<CentreAccount> List();

    // 1: an enabled account whose credential matches; -1: otherwise (unknown, disabled or wrong), after
    // the same slow check, so that the answer's time does not tell which accounts exist.
    int Check(const CString& enterprise, const CString& user, const CString& credential);

private:
    CentreAccount existing(const CString& enterprise, const CString& user);
    void change(const CString& enterprise, const CString& user, const std::function<void(CentreAccount&)>& edit);

    ICentreStore& m_store;
};

// Refuses, with CCentreError, a name or credential a person gave that is empty or holds a NUL character.
QX_API void RequireAccountText(const CString& text, const char16_t* what);
