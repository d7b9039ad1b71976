// A real FTP server for one test: pyftpdlib on 127.0.0.1 with a free port and the given root folder,
// started in the constructor and stopped (killed and reaped) in the destructor.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class FtpTestServer {
public:
    // `options` are extra arguments of tests/data/repository/ftp_server.py (--drop-retr NAME, --refuse-rename).
    explicit FtpTestServer(std::string root, std::vector<std::string> options = {});
    ~FtpTestServer();
    FtpTestServer(const FtpTestServer&) = delete;
    FtpTestServer& operator=(const FtpTestServer&) = delete;

    int port() const { return m_port; }
    void stop();
    // Stops the server and starts it again on the same port, as a site that was restarted.
    void restart();

private:
    void start(int port);

    std::string m_root;
    std::vector<std::string> m_options;
    pid_t m_pid = -1;
    int m_port = 0;
};
