#include "platform/cloud/CentrePerson.h"

#include "platform/cloud/HexmoorClient.h"
#include "platform/host/HostOutput.h"
#include "platform/host/Prompts.h"

#include <optional>

namespace {

std::optional<CString> askWithDefault(const CString& question, const CString& current) {
    const CString shown = current.IsEmpty() ? question : question + u" [" + current + u"]";
    auto answer = HostPrompts().AskText(shown);
    if (!answer) return std::nullopt;
    answer->Trim();
    return answer->IsEmpty() ? current : *answer;
}

} // namespace

bool AskCentreLogin(CHexmoorInteFace& client) {
    const auto enterprise = askWithDefault(u"Hexmoor enterprise", client.m_strEnterprise);
    if (!enterprise || enterprise->IsEmpty()) return false;
    const auto user = askWithDefault(u"Hexmoor user", client.m_strUser);
    if (!user || user->IsEmpty()) return false;
    const auto credential = HostPrompts().AskSecret(u"Hexmoor credential");
    if (!credential) return false;
    client.m_strEnterprise = *enterprise;
    client.m_strUser = *user;
    client.m_strCredential = *credential;
    return true;
}

void TellCentreMessage(const CString& message) { acutPrintf(u"\nHexmoor: %s\n", message); }
