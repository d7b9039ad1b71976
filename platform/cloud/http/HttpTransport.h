// One HTTP(S) connection of the cloud client to hexmoord, through libcurl; the connection is kept between
// requests. Set HEXMOOR_CA_FILE to trust a server certificate that the system's authorities did not sign.
#pragma once

#include "support/CString.h"

#include <memory>
#include <string>

struct HttpReply {
    long status = 0;      // 0: no reply came
    std::string body;
    std::string failure;  // why no reply came
};

class QX_API CHttpTransport {
public:
    // `base` is the endpoint as the person gave it ("http://host:port" with or without a trailing '/').
    explicit CHttpTransport(std::string base);
    ~CHttpTransport();
    CHttpTransport(const CHttpTransport&) = delete;
    CHttpTransport& operator=(const CHttpTransport&) = delete;

    // `path` starts with '/'; a non-empty token goes as "Authorization: Bearer".
    HttpReply request(const char* method, const std::string& path, const std::string& body, const std::string& token);

private:
    std::string m_base;
    struct Handle;
    std::unique_ptr<Handle> m_handle;
};
