// What the server's handlers share: the store pool, the sessions, the login throttle, the log, and the way a
// handler runs a piece of work for a user with a store lent to it, turning every failure into a clear status.
#pragma once

#include "centre/operations/CentreError.h"
#include "centre/server/LoginThrottle.h"
#include "centre/server/SessionTable.h"
#include "centre/server/StorePool.h"
#include "platform/cloud/http/CentreJson.h"

#include <httplib.h>

#include <functional>

// A request about something the user's enterprise does not have, whatever the reason.
class CNotFound : public std::runtime_error {
public:
    CNotFound() : std::runtime_error("not found") {}
};

struct ServerContext {
    CStorePool& pool;
    CSessionTable& sessions;
    CLoginThrottle& throttle;
    bool tls = false;  // served over HTTPS: the web view's cookie is then never sent in the clear
    // One line of the server's log (made safe to print here).
    std::function<void(const std::string&)> log;
    // Proxies whose X-Forwarded-For names the client.
    std::vector<std::string> trustedProxies;

    // The client's address: the connection's, or the one a trusted proxy forwarded.
    std::string clientAddress(const httplib::Request& request) const;
    // Whether the client's connection is encrypted: served over HTTPS here, or by a trusted proxy that says so
    // (X-Forwarded-Proto: https).
    bool clientOverTls(const httplib::Request& request) const;
};

void SendJson(httplib::Response& response, int status, const nlohmann::json& body);
void SendError(httplib::Response& response, int status, const std::string& message);

// The answer to anyone when the store fails: what failed is for the log, not for the caller.
inline const char* const kStoreUnavailable = "the BOM centre's database is not available now; try again later";

// Runs `work(centre, store)` with a lent store. Malformed input gives 400, CNotFound 404, a refusal of the
// centre 422, a failing store 503 (logged); the store of a failure is not lent again. A store that waited
// too long for another writer's lock gives 503 with its own words and Retry-After.
template <typename Work>
void RunWithStore(ServerContext& context, httplib::Response& response, Work&& work) {
    try {
        auto lease = context.pool.borrow();
        try {
            CBomCentreOperations centre(lease.store());
            work(centre, lease.store());
        } catch (const CCentreBusyError&) {
            throw;  // the store is sound: it goes back to the pool
        } catch (const CCentreStoreError&) {
            lease.discard();
            throw;
        }
    } catch (const CNotFound&) {
        SendError(response, 404, "no such project or device in your enterprise");
    } catch (const nlohmann::json::exception& error) {
        SendError(response, 400, std::string("malformed JSON: ") + error.what());
    } catch (const CCentreJsonError& error) {
        SendError(response, 400, std::string("malformed request: ") + error.what());
    } catch (const CCentreBusyError& error) {
        context.log("store busy: " + error.message().ToUtf8());
        response.set_header("Retry-After", "5");
        SendError(response, 503, error.message().ToUtf8());
    } catch (const CCentreStoreError& error) {
        context.log("store failed: " + error.message().ToUtf8());
        SendError(response, 503, kStoreUnavailable);
    } catch (const CCentreError& error) {
        SendError(response, 422, error.message().ToUtf8());
    }
}

// A request's JSON body, refused (CCentreJsonError) when nested deeper than a tree may be or when a text
// holds a NUL character; both are found while parsing, before the document is whole.
nlohmann::json ParseRequestJson(const std::string& body);
// A form or query field; refused (CCentreJsonError) when it holds a NUL character.
CString RequestText(const httplib::Request& request, const char* name);

// A decimal ID of a path; IDs too long for a number name nothing.
long long PathId(const std::string& text);

// Registers the JSON API under /api/.
void RegisterCentreApi(httplib::Server& server, ServerContext& context);
// Registers the web view at "/".
void RegisterWebView(httplib::Server& server, ServerContext& context);

// A login by the API or the web view: throttled per account and address, checked against the accounts an
// administrator made, and logged when refused or throttled.
struct LoginAnswer {
    enum class Outcome { Accepted, Refused, Throttled } outcome = Outcome::Refused;
    std::string token;          // of an accepted login
    std::chrono::seconds wait{0};  // of a throttled one
};
LoginAnswer LogIn(ServerContext& context, ICentreStore& store, const httplib::Request& request, const CentreUser& who,
                  const CString& credential);
