#include "platform/cloud/http/HttpTransport.h"

#include <curl/curl.h>

#include <cstdlib>

namespace {

size_t collect(char* data, size_t size, size_t count, void* target) {
    static_cast<std::string*>(target)->append(data, size * count);
    return size * count;
}

// Replies larger than this are cut off: nothing the centre sends comes near it.
constexpr size_t kMaxReplyBytes = 256u << 20;

size_t collectBounded(char* data, size_t size, size_t count, void* target) {
    auto* body = static_cast<std::string*>(target);
    if (body->size() + size * count > kMaxReplyBytes) return 0;
    return collect(data, size, count, target);
}

} // namespace

struct CHttpTransport::Handle {
    Handle() {
        static const bool ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
        if (ready) curl = curl_easy_init();
    }
    ~Handle() {
        if (curl) curl_easy_cleanup(curl);
    }
    CURL* curl = nullptr;
};

CHttpTransport::CHttpTransport(std::string base) : m_base(std::move(base)), m_handle(std::make_unique<Handle>()) {
    while (!m_base.empty() && m_base.back() == '/') m_base.pop_back();
}

CHttpTransport::~CHttpTransport() = default;

HttpReply CHttpTransport::request(const char* method, const std::string& path, const std::string& body, const std::string& token) {
    HttpReply reply;
    CURL* curl = m_handle->curl;
    if (!curl) {
        reply.failure = "libcurl cannot be initialised";
        return reply;
    }
    curl_easy_reset(curl);
    const std::string url = m_base + path;
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, method);
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    // Paths are made here from IDs; sent as they are, so that the server alone judges them.
    curl_easy_setopt(curl, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, 6L);
    // A server that sends nothing for 60 s is given up; a large submit may take longer than that in all.
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, 60L);
    if (const char* ca = std::getenv("HEXMOOR_CA_FILE"); ca && *ca) curl_easy_setopt(curl, CURLOPT_CAINFO, ca);
    if (std::string(method) != "GET") {
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.data());
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    }
    curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
    const std::string authorization = "Authorization: Bearer " + token;
    if (!token.empty()) headers = curl_slist_append(headers, authorization.c_str());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, collectBounded);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &reply.body);
    char error[CURL_ERROR_SIZE] = "";
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, error);

    const CURLcode result = curl_easy_perform(curl);
    curl_slist_free_all(headers);
    if (result != CURLE_OK) {
        reply.failure = *error ? error : curl_easy_strerror(result);
        reply.body.clear();
        return reply;
    }
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &reply.status);
    return reply;
}
