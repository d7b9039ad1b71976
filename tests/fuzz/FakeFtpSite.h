// An FTP site on the loopback inside the harness process, whose files the harness sets for each input:
// the journal "Server.xml", the lock files ("*.bak"), and one listing given for every folder near the
// top. Any other file exists with a short content until it is removed; uploads are kept for the input.
// It speaks what the repository's libcurl client asks (login, EPSV, TYPE, SIZE, RETR, STOR, APPE, MLSD,
// LIST and the quoted commands), one thread per control connection.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace fuzz {

struct FtpSiteContent {
    std::string journal;
    std::string listing;
    std::string lock;
    // Without MLSD the client falls back to a LIST listing.
    bool mlsd = true;
};

class FakeFtpSite {
public:
    FakeFtpSite();
    ~FakeFtpSite();
    FakeFtpSite(const FakeFtpSite&) = delete;
    FakeFtpSite& operator=(const FakeFtpSite&) = delete;

    int port() const { return m_port; }
    // The files of the next input; what the last input uploaded or removed is forgotten.
    void serve(FtpSiteContent content);

private:
    struct Session {
        std::thread thread;
        std::atomic<bool> done{false};
    };
    void acceptLoop();
    // Joins the sessions whose client has gone.
    void reapSessions();
    void converse(int control);
    // The content of a file, or false when the site has none at `path`.
    bool fileAt(const std::string& path, std::string& bytes);
    std::string listingOf(const std::string& path, bool mlsd, bool& refused);

    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_stopping{false};
    std::thread m_acceptor;
    std::mutex m_sessionsMutex;
    std::vector<std::unique_ptr<Session>> m_sessions;
    std::vector<int> m_openControls;

    std::mutex m_filesMutex;
    FtpSiteContent m_content;
    std::map<std::string, std::string> m_uploaded;
    std::set<std::string> m_removed;
};

} // namespace fuzz
