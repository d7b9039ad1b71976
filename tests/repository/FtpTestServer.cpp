// A real FTP server for one test.
#include "FtpTestServer.h"

#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

FtpTestServer::FtpTestServer(std::string root, std::vector<std::string> options)
    : m_root(std::move(root)), m_options(std::move(options)) {
    start(0);
}

FtpTestServer::~FtpTestServer() { stop(); }

void FtpTestServer::start(int port) {
    int fds[2];
    if (::pipe(fds) != 0) throw std::runtime_error("pipe failed");
    const std::string script = std::string(QX_TEST_DATA_DIR) + "/repository/ftp_server.py";
    std::vector<std::string> args = {"/usr/bin/python3", script, m_root, "--port", std::to_string(port)};
    args.insert(args.end(), m_options.begin(), m_options.end());

    m_pid = ::fork();
    if (m_pid < 0) throw std::runtime_error("fork failed");
    if (m_pid == 0) {
        ::dup2(fds[1], STDOUT_FILENO);
        ::close(fds[0]);
        ::close(fds[1]);
        std::vector<char*> argv;
        for (std::string& arg : args) argv.push_back(arg.data());
        argv.push_back(nullptr);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(fds[1]);
    // The server prints its port once it listens.
    std::string line;
    char ch;
    while (::read(fds[0], &ch, 1) == 1 && ch != '\n') line += ch;
    ::close(fds[0]);
    if (line.empty()) {
        stop();
        throw std::runtime_error("the FTP test server did not start");
    }
    m_port = std::stoi(line);
}

void FtpTestServer::stop() {
    if (m_pid <= 0) return;
    ::kill(m_pid, SIGKILL);
    ::waitpid(m_pid, nullptr, 0);
    m_pid = -1;
}

void FtpTestServer::restart() {
    const int port = m_port;
    stop();
    // The port may linger for a moment after the kill; a few tries are enough on loopback.
    for (int attempt = 0; attempt < 50; ++attempt) {
        try {
            start(port);
            return;
        } catch (const std::runtime_error&) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    }
    throw std::runtime_error("the FTP test server did not restart");
}
