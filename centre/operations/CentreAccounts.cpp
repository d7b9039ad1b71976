// Accounts kept by an administrator.
#include "centre/operations/CentreAccounts.h"

#include "centre/operations/BomCentreOperations.h"
#include "centre/operations/CentreError.h"
#include "centre/operations/CredentialHash.h"
#include "support/Format.h"

namespace {

using Mode = CentreTransaction::Mode;

// What an unknown account's credential is checked against: a hash like any other, made once.
const CString& standInHash() {
    static const CString hash = HashCredential(u"no account has this credential");
    return hash;
}

CString hashOf(const CString& credential) {
    CString hash = HashCredential(credential);
    if (hash.IsEmpty()) throw CCentreError(u"The credential could not be hashed.");
    return hash;
}

} // namespace

void RequireAccountText(const CString& text, const char16_t* what) {
    if (text.IsEmpty()) throw CCentreError(QxFormat(u"The %s must not be empty.", CString(what)));
    if (text.Find(u'\0') >= 0) throw CCentreError(QxFormat(u"The %s must not hold a NUL character.", CString(what)));
}

void CCentreAccounts::Add(const CString& enterprise, const CString& user, const CString& credential) {
    RequireAccountText(enterprise, u"enterprise");
    RequireAccountText(user, u"user");
    RequireAccountText(credential, u"credential");
    const CString hash = hashOf(credential);
    CentreTransaction transaction(m_store, Mode::Write);
    if (m_store.account(enterprise, user))
        throw CCentreError(QxFormat(u"The account %s/%s exists already.", enterprise, user));
    m_store.addAccount({enterprise, user, hash, CentreTimeNow(), false});
    transaction.commit();
}

CentreAccount CCentreAccounts::existing(const CString& enterprise, const CString& user) {
    auto account = m_store.account(enterprise, user);
    if (!account) throw CCentreError(QxFormat(u"There is no account %s/%s.", enterprise, user));
    return *account;
}

void CCentreAccounts::Disable(const CString& enterprise, const CString& user) {
    change(enterprise, user, [](CentreAccount& account) { account.disabled = true; });
}

void CCentreAccounts::SetCredential(const CString& enterprise, const CString& user, const CString& credential) {
    RequireAccountText(credential, u"credential");
    const CString hash = hashOf(credential);
    change(enterprise, user, [&](CentreAccount& account) { account.credentialHash = hash; });
}

// Every change of an account ends its sessions: a disabled account or an old password opens nothing more.
void CCentreAccounts::change(const CString& enterprise, const CString& user,
                             const std::function<void(CentreAccount&)>& edit) {
    CentreTransaction transaction(m_store, Mode::Write);
    CentreAccount account = existing(enterprise, user);
    edit(account);
    m_store.updateAccount(account);
    m_store.removeSessionsOf(enterprise, user);
    transaction.commit();
}

std::vector<CentreAccount> CCentreAccounts::List() { return m_store.accounts(); }

int CCentreAccounts::Check(const CString& enterprise, const CString& user, const CString& credential) {
    const auto account = m_store.account(enterprise, user);
    const bool matches = VerifyCredential(account ? account->credentialHash : standInHash(), credential);
    return account && !account->disabled && matches ? 1 : -1;
}
