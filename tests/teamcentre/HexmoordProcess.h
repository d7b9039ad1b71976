// hexmoord run as its own process for a test, on 127.0.0.1 at a free port; stopped with SIGTERM (or killed)
// when the test is done. Its request log is kept for the test to read.
#pragma once

#include <string>
#include <vector>

class HexmoordProcess {
public:
    // Starts hexmoord on the database and waits for its first line; throws std::runtime_error when it does
    // not come up.
    explicit HexmoordProcess(const std::string& database, const std::vector<std::string>& extraArguments = {});
    ~HexmoordProcess();
    HexmoordProcess(const HexmoordProcess&) = delete;
    HexmoordProcess& operator=(const HexmoordProcess&) = delete;

    int port() const { return m_port; }
    // The server's own process (it is started directly, with no shell between), 0 once it has exited.
    int pid() const { return m_pid; }
    std::string endpoint() const { return "http://127.0.0.1:" + std::to_string(m_port); }
    // SIGTERM; returns the exit status (-1 when it did not exit normally).
    int stop();
    // SIGKILL, as a crash.
    void kill();
    // Everything it printed on standard output so far (stops it first, if still running).
    std::string output();

private:
    int waitForExit();
    int m_pid = 0;
    int m_port = 0;
    std::string m_logPath;
};

std::string HexmoordBinary();
