// Logins to hexmoord, shared by the API and the web view.
#include "centre/operations/CentreAccounts.h"
#include "centre/server/RequestLimits.h"
#include "centre/server/ServerContext.h"

LoginAnswer LogIn(ServerContext& context, ICentreStore& store, const httplib::Request& request, const CentreUser& who,
                  const CString& credential) {
    const std::string account = who.enterprise.ToUtf8() + "/" + who.user.ToUtf8();
    const std::string address = context.clientAddress(request);
    const std::string named = LogSafe(account) + " from " + LogSafe(address);
    // A waiting account or address is not even checked: a flood of guesses costs no hashing.
    if (const auto wait = context.throttle.wait(account, address); wait.count() > 0) {
        context.log("login throttled: " + named + " waits " + std::to_string(wait.count()) + " s");
        return {LoginAnswer::Outcome::Throttled, {}, wait};
    }
    if (CCentreAccounts(store).Check(who.enterprise, who.user, credential) < 1) {
        const auto wait = context.throttle.failed(account, address);
        context.log("login refused: wrong credential for " + named +
                    (wait.count() > 0 ? ", next try in " + std::to_string(wait.count()) + " s" : std::string()));
        return {LoginAnswer::Outcome::Refused, {}, wait};
    }
    context.throttle.succeeded(account, address);
    return {LoginAnswer::Outcome::Accepted, context.sessions.open(store, who), {}};
}
