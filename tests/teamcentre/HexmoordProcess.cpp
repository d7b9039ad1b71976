#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <thread>

std::string HexmoordBinary() { return std::string(QX_BINARY_DIR) + "/bin/hexmoord"; }

HexmoordProcess::HexmoordProcess(const std::string& database, const std::vector<std::string>& extraArguments) {
    char pattern[] = "/tmp/qx-hexmoord-XXXXXX";
    const int logFd = ::mkstemp(pattern);
    if (logFd < 0) throw std::runtime_error("cannot make hexmoord's log file");
    m_logPath = pattern;
    std::vector<std::string> arguments{HexmoordBinary(), "--listen", "127.0.0.1:0", "--db", database};
    arguments.insert(arguments.end(), extraArguments.begin(), extraArguments.end());
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    m_pid = ::fork();
    if (m_pid == 0) {
        ::dup2(logFd, STDOUT_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(logFd);
    // The first line names the port; a server that cannot start exits instead. Waiting is bounded.
    for (int tries = 0; tries < 600 && m_port == 0; ++tries) {
        const std::string text = team_test::ReadTextFile(m_logPath);
        const std::string serving = "://127.0.0.1:";
        const size_t at = text.find(serving);
        if (at != std::string::npos && text.find('\n', at) != std::string::npos) {
            m_port = std::stoi(text.substr(at + serving.size()));
            break;
        }
        int status = 0;
        if (::waitpid(m_pid, &status, WNOHANG) == m_pid) {
            m_pid = 0;
            ::unlink(m_logPath.c_str());
            throw std::runtime_error("hexmoord exited at start: " + text);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (m_port == 0) {
        kill();
        ::unlink(m_logPath.c_str());
        throw std::runtime_error("hexmoord did not start within 30 s");
    }
}

HexmoordProcess::~HexmoordProcess() {
    if (m_pid) kill();
    ::unlink(m_logPath.c_str());
}

int HexmoordProcess::waitForExit() {
    int status = 0;
    ::waitpid(m_pid, &status, 0);
    m_pid = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int HexmoordProcess::stop() {
    if (!m_pid) return -1;
    ::kill(m_pid, SIGTERM);
    return waitForExit();
}

void HexmoordProcess::kill() {
    if (!m_pid) return;
    ::kill(m_pid, SIGKILL);
    waitForExit();
}

std::string HexmoordProcess::output() {
    if (m_pid) stop();
    return team_test::ReadTextFile(m_logPath);
}
