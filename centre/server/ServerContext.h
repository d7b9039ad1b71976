// What the server's handlers share: the store pool, the sessions, and the way a handler runs a piece of
// work for a user with a store lent to it, turning every failure into a clear status.
#pragma once

#include "centre/operations/CentreError.h"
#include "platform/cloud/http/CentreJson.h"
#include "centre/server/SessionTable.h"
#include "centre/server/StorePool.h"

#include <httplib.h>

// A request about something the user's enterprise does not have, whatever the reason.
class CNotFound : public std::runtime_error {
public:
    CNotFound() : std::runtime_error("not found") {}
};

struct ServerContext {
    CStorePool& pool;
    CSessionTable& sessions;
    bool tls = false;  // served over HTTPS: the web view's cookie is then never sent in the clear
};

void SendJson(httplib::Response& response, int status, const nlohmann::json& body);
void SendError(httplib::Response& response, int status, const std::string& message);

// Runs `work(centre, store)` with a lent store. Malformed input gives 400, CNotFound 404, a refusal of the
// centre 422, a failing store 503; the store of a failure is not lent again.
template <typename Work>
void RunWithStore(ServerContext& context, httplib::Response& response, Work&& work) {
    try {
        auto lease = context.pool.borrow();
        try {
            CBomCentreOperations centre(lease.store());
            work(centre, lease.store());
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
    } catch (const CCentreStoreError& error) {
        SendError(response, 503, error.message().ToUtf8());
    } catch (const CCentreError& error) {
        SendError(response, 422, error.message().ToUtf8());
    }
}

// A decimal ID of a path; IDs too long for a number name nothing.
long long PathId(const std::string& text);

// Registers the JSON API under /api/.
void RegisterCentreApi(httplib::Server& server, ServerContext& context);
// Registers the web view at "/".
void RegisterWebView(httplib::Server& server, ServerContext& context);
