// One FTP connection over libcurl: what the repository needs of the platform's FTP connection (get, put,
// remove, rename, make and remove folders, the current folder, listings). Remote paths use the backslash or
// the slash; a path without a leading separator is taken from the current folder. Names travel as UTF-8
// and are percent-encoded in URLs, so "#.txt" is a file name and not a fragment.
#pragma once

#include "repository/FtpTimings.h"
#include "support/CString.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct FtpEndpoint {
    CString host;
    int port = 21;
    // Empty for an anonymous login.
    CString user;
    CString password;
    bool passive = true;
};

struct FtpListEntry {
    CString name;
    bool isFolder = false;
};

class QX_API CFtpTransport {
public:
    ~CFtpTransport();
    CFtpTransport(const CFtpTransport&) = delete;
    CFtpTransport& operator=(const CFtpTransport&) = delete;

    // Logs in, trying `connectAttempts` times; null with the reason in `error` when the site cannot be reached.
    static std::unique_ptr<CFtpTransport> Open(const FtpEndpoint& endpoint, const FtpTimings& timings, CString& error);

    // Streams into a temporary file beside local and renames it over local when whole. A download that goes
    // past the size the site announced, plus a margin, is broken off.
    bool GetFile(const CString& remote, const CString& local);
    // The size the site gives for a file; nullopt when it gives none.
    std::optional<long long> Size(const CString& remote);
    bool PutFile(const CString& local, const CString& remote);
    // Adds the local file's bytes at the end of the remote file, making it if need be.
    bool AppendFile(const CString& local, const CString& remote);
    bool Remove(const CString& remote);
    bool Rename(const CString& from, const CString& to);
    bool CreateDirectory(const CString& remote);
    bool RemoveDirectory(const CString& remote);
    // Checks that the folder exists on the site before it becomes the current one.
    bool SetCurrentDirectory(const CString& remote);
    // An absolute path with slashes, "/" at the site's top.
    CString GetCurrentDirectory() const;
    // One level of a folder, without "." and ".."; nullopt when the folder cannot be listed.
    std::optional<std::vector<FtpListEntry>> List(const CString& remoteFolder);

    // The reason of the last failed operation, as libcurl and the server give it.
    const CString& LastError() const { return m_lastError; }

private:
    struct Handle;
    CFtpTransport(std::unique_ptr<Handle> handle, std::string baseUrl, const FtpTimings& timings);

    // Nullopt for a path that holds control characters: they would break the FTP command line.
    std::optional<std::string> absolutePath(const CString& remote) const;
    std::string urlOf(const std::string& absolute, bool folder) const;
    void prepare(const std::string& url);
    bool upload(const CString& local, const CString& remote, bool append);
    bool runCommands(const std::vector<std::string>& commands);
    bool perform();

    std::unique_ptr<Handle> m_handle;
    std::string m_baseUrl;  // scheme, host and port
    std::string m_cwd = "/";
    FtpTimings m_timings;
    CString m_lastError;
};
