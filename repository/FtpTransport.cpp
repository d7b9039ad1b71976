// One FTP connection over libcurl.
#include "repository/FtpTransport.h"

#include "support/FileSystem.h"
#include "support/NativeFiles.h"

#include <algorithm>
#include <cstdlib>
#include <chrono>
#include <cstring>
#include <cstdio>
#include <curl/curl.h>
#include <mutex>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

void initialiseCurlOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

// What a listing may hold: a listing is far smaller than this, a site that streams without end is not.
constexpr size_t kListingLimit = 64 * 1024 * 1024;

size_t appendToString(char* data, size_t size, size_t count, void* target) {
    auto* text = static_cast<std::string*>(target);
    if (text->size() + size * count > kListingLimit) return 0;
    text->append(data, size * count);
    return size * count;
}

// A download may grow this much beyond the size the site announced (the file may change in between).
constexpr curl_off_t kAnnouncedSizeMargin = 1024 * 1024;

// Streams a download into a temporary file, refusing to go on past the bound.
struct DownloadSink {
    CURL* curl = nullptr;
    FILE* file = nullptr;
    curl_off_t written = 0;
    curl_off_t limit = -1;
    curl_off_t unannouncedLimit = 0;
};

size_t writeToSink(char* data, size_t size, size_t count, void* target) {
    auto* sink = static_cast<DownloadSink*>(target);
    const size_t n = size * count;
    if (sink->limit < 0) {
        curl_off_t announced = -1;
        curl_easy_getinfo(sink->curl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
        sink->limit = announced >= 0 ? announced + kAnnouncedSizeMargin : sink->unannouncedLimit;
    }
    if (sink->written + static_cast<curl_off_t>(n) > sink->limit) return 0;
    if (std::fwrite(data, 1, n, sink->file) != n) return 0;
    sink->written += static_cast<curl_off_t>(n);
    return n;
}

// libcurl's dialogue on standard error, with the password of the login hidden.
int printDialogue(CURL*, curl_infotype type, char* data, size_t size, void*) {
    if (type != CURLINFO_TEXT && type != CURLINFO_HEADER_IN && type != CURLINFO_HEADER_OUT) return 0;
    std::string text(data, size);
    if (type == CURLINFO_HEADER_OUT && text.compare(0, 5, "PASS ") == 0) text = "PASS ****\r\n";
    const char* mark = type == CURLINFO_TEXT ? "* " : type == CURLINFO_HEADER_IN ? "< " : "> ";
    std::fprintf(stderr, "%s%s", mark, text.c_str());
    return 0;
}

struct UploadSource {
    std::string_view bytes;
    size_t offset = 0;
};

size_t readFromSource(char* buffer, size_t size, size_t count, void* source) {
    auto* upload = static_cast<UploadSource*>(source);
    const size_t n = std::min(size * count, upload->bytes.size() - upload->offset);
    std::memcpy(buffer, upload->bytes.data() + upload->offset, n);
    upload->offset += n;
    return n;
}

std::vector<std::string> splitPath(const std::string& path) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(path);
    while (std::getline(in, part, '/')) {
        if (part.empty() || part == ".") continue;
        if (part == "..") {
            if (!parts.empty()) parts.pop_back();
            continue;
        }
        parts.push_back(part);
    }
    return parts;
}

bool hasControlCharacter(const std::string& text) {
    return std::any_of(text.begin(), text.end(), [](char ch) { return static_cast<unsigned char>(ch) < 0x20 || ch == 0x7f; });
}

// A listed name is joined to local folders: only one plain path element is taken from a site.
bool isPlainName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\") == std::string::npos &&
           !hasControlCharacter(name);
}

// A line of an MLSD listing: "type=dir;size=0; name".
std::optional<FtpListEntry> parseMlsdLine(const std::string& line) {
    const size_t blank = line.find(' ');
    if (blank == std::string::npos) return std::nullopt;
    std::string facts = line.substr(0, blank);
    std::transform(facts.begin(), facts.end(), facts.begin(), [](unsigned char ch) { return std::tolower(ch); });
    const std::string name = line.substr(blank + 1);
    if (!isPlainName(name) || facts.find("type=cdir") != std::string::npos || facts.find("type=pdir") != std::string::npos)
        return std::nullopt;
    return FtpListEntry{CString::FromUtf8(name), facts.find("type=dir") != std::string::npos};
}

// A line of a Unix-style LIST listing, for servers without MLSD: the name follows eight fields.
std::optional<FtpListEntry> parseListLine(const std::string& line) {
    std::istringstream in(line);
    std::string field;
    for (int i = 0; i < 8; ++i)
        if (!(in >> field)) return std::nullopt;
    std::string name;
    std::getline(in >> std::ws, name);
    if (!isPlainName(name)) return std::nullopt;
    return FtpListEntry{CString::FromUtf8(name), line[0] == 'd'};
}

std::vector<FtpListEntry> parseListing(const std::string& text, bool mlsd) {
    std::vector<FtpListEntry> entries;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const auto entry = mlsd ? parseMlsdLine(line) : parseListLine(line);
        if (entry) entries.push_back(*entry);
    }
    return entries;
}

bool worthAnotherAttempt(CURLcode code) { return code != CURLE_LOGIN_DENIED && code != CURLE_OK; }

} // namespace

// The easy handle runs inside its own multi handle, which keeps the connection between operations: the
// easy interface of this libcurl may sit a whole second in its poll before it opens a passive data
// connection, and a short poll of our own does not.
struct CFtpTransport::Handle {
    Handle() : curl(curl_easy_init()), multi(curl_multi_init()) {}
    ~Handle() {
        if (multi) curl_multi_cleanup(multi);
        if (curl) curl_easy_cleanup(curl);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    CURLcode perform() {
        if (curl_multi_add_handle(multi, curl) != CURLM_OK) return CURLE_FAILED_INIT;
        int running = 1;
        while (running) {
            if (curl_multi_perform(multi, &running) != CURLM_OK) break;
            if (running) curl_multi_poll(multi, nullptr, 0, 10, nullptr);
        }
        CURLcode result = CURLE_FAILED_INIT;
        int left = 0;
        while (CURLMsg* message = curl_multi_info_read(multi, &left))
            if (message->msg == CURLMSG_DONE && message->easy_handle == curl) result = message->data.result;
        curl_multi_remove_handle(multi, curl);
        return result;
    }

    CURL* curl;
    CURLM* multi;
    curl_slist* commands = nullptr;
    char errorText[CURL_ERROR_SIZE] = {};
};

CFtpTransport::CFtpTransport(std::unique_ptr<Handle> handle, std::string baseUrl, const FtpTimings& timings)
    : m_handle(std::move(handle)), m_baseUrl(std::move(baseUrl)), m_timings(timings) {}

CFtpTransport::~CFtpTransport() {
    if (m_handle && m_handle->commands) curl_slist_free_all(m_handle->commands);
}

std::unique_ptr<CFtpTransport> CFtpTransport::Open(const FtpEndpoint& endpoint, const FtpTimings& timings, CString& error) {
    initialiseCurlOnce();
    std::string host = endpoint.host.ToUtf8();
    if (host.empty() || hasControlCharacter(host) || host.find_first_of("/@?#") != std::string::npos) {
        error = u"no valid host name";
        return nullptr;
    }
    if (host.find(':') != std::string::npos && host.front() != '[') host = "[" + host + "]";
    const std::string baseUrl = "ftp://" + host + ":" + std::to_string(endpoint.port);

    const int attempts = std::max(1, timings.connectAttempts);
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        auto handle = std::make_unique<Handle>();
        if (!handle->curl || !handle->multi) {
            error = u"libcurl cannot make a connection handle";
            return nullptr;
        }
        CURL* curl = handle->curl;
        curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, handle->errorText);
        curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
        if (std::getenv("QX_FTP_VERBOSE")) {
            curl_easy_setopt(curl, CURLOPT_DEBUGFUNCTION, printDialogue);
            curl_easy_setopt(curl, CURLOPT_VERBOSE, 1L);
        }
        curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "ftp");
        curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timings.connectTimeoutMs));
        // A transfer that moves less than one byte a second for the stall time is given up.
        const long stallSeconds = std::max(1L, static_cast<long>(timings.stallTimeoutMs / 1000));
        curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, stallSeconds);
        curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, stallSeconds);
        curl_easy_setopt(curl, CURLOPT_ACCEPTTIMEOUT_MS, static_cast<long>(timings.stallTimeoutMs));
        // Every path is absolute, so no CWD round trips are needed and a failed one cannot leave us elsewhere.
        curl_easy_setopt(curl, CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
        if (!endpoint.passive) curl_easy_setopt(curl, CURLOPT_FTPPORT, "-");
        if (!endpoint.user.IsEmpty()) {
            curl_easy_setopt(curl, CURLOPT_USERNAME, endpoint.user.ToUtf8().c_str());
            curl_easy_setopt(curl, CURLOPT_PASSWORD, endpoint.password.ToUtf8().c_str());
        }

        std::unique_ptr<CFtpTransport> transport(new CFtpTransport(std::move(handle), baseUrl, timings));
        transport->prepare(baseUrl + "/");
        curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
        const CURLcode code = transport->m_handle->perform();
        if (code == CURLE_OK) {
            const char* entry = nullptr;
            if (curl_easy_getinfo(curl, CURLINFO_FTP_ENTRY_PATH, &entry) == CURLE_OK && entry && *entry == '/')
                transport->m_cwd = entry;
            return transport;
        }
        error = CString::FromUtf8(*transport->m_handle->errorText ? transport->m_handle->errorText : curl_easy_strerror(code));
        if (!worthAnotherAttempt(code) || attempt == attempts) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(timings.connectPauseMs));
    }
    return nullptr;
}

std::optional<std::string> CFtpTransport::absolutePath(const CString& remote) const {
    std::string path = remote.ToUtf8();
    if (hasControlCharacter(path)) return std::nullopt;
    std::replace(path.begin(), path.end(), '\\', '/');
    if (path.empty() || path.front() != '/') path = m_cwd + "/" + path;
    std::string absolute;
    for (const std::string& part : splitPath(path)) absolute += "/" + part;
    return absolute.empty() ? "/" : absolute;
}

std::string CFtpTransport::urlOf(const std::string& absolute, bool folder) const {
    // "%2F" makes the path absolute on the site rather than relative to the login folder.
    std::string url = m_baseUrl + "/%2F";
    const std::vector<std::string> parts = splitPath(absolute);
    for (size_t i = 0; i < parts.size(); ++i) {
        char* escaped = curl_easy_escape(m_handle->curl, parts[i].c_str(), static_cast<int>(parts[i].size()));
        if (i > 0) url += "/";
        url += escaped ? escaped : "";
        curl_free(escaped);
    }
    if (folder && !parts.empty()) url += "/";
    return url;
}

void CFtpTransport::prepare(const std::string& url) {
    CURL* curl = m_handle->curl;
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_NOBODY, 0L);
    curl_easy_setopt(curl, CURLOPT_UPLOAD, 0L);
    curl_easy_setopt(curl, CURLOPT_QUOTE, nullptr);
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, nullptr);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, nullptr);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, nullptr);
    curl_easy_setopt(curl, CURLOPT_READFUNCTION, nullptr);
    curl_easy_setopt(curl, CURLOPT_READDATA, nullptr);
    curl_easy_setopt(curl, CURLOPT_APPEND, 0L);
    curl_easy_setopt(curl, CURLOPT_RESUME_FROM_LARGE, curl_off_t(0));
    if (m_handle->commands) {
        curl_slist_free_all(m_handle->commands);
        m_handle->commands = nullptr;
    }
    m_handle->errorText[0] = '\0';
}

bool CFtpTransport::perform() {
    const CURLcode code = m_handle->perform();
    if (code == CURLE_OK) {
        m_lastError.Empty();
        return true;
    }
    m_lastError = CString::FromUtf8(*m_handle->errorText ? m_handle->errorText : curl_easy_strerror(code));
    return false;
}

bool CFtpTransport::runCommands(const std::vector<std::string>& commands) {
    prepare(m_baseUrl + "/");
    for (const std::string& command : commands) m_handle->commands = curl_slist_append(m_handle->commands, command.c_str());
    curl_easy_setopt(m_handle->curl, CURLOPT_QUOTE, m_handle->commands);
    curl_easy_setopt(m_handle->curl, CURLOPT_NOBODY, 1L);
    return perform();
}

// The download streams into a temporary file beside the target, renamed over it once whole: memory stays
// small whatever the site sends, and a failed download leaves the target as it was.
bool CFtpTransport::GetFile(const CString& remote, const CString& local) {
    const auto path = absolutePath(remote);
    const auto target = QxFs::NativeTarget(local);
    if (!path || !target) return false;
    const size_t slash = target->rfind('/');
    const std::string folder = slash == std::string::npos ? std::string(".") : target->substr(0, slash);
    std::string temporary =
        QxFs::Native::Join(folder, std::string(QxFs::Native::kTemporaryPrefix) + std::to_string(::getpid()) + "-XXXXXX");
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) return false;
    FILE* file = ::fdopen(fd, "wb");
    if (!file) {
        ::close(fd);
        ::unlink(temporary.c_str());
        return false;
    }
    DownloadSink sink{m_handle->curl, file};
    sink.unannouncedLimit = static_cast<curl_off_t>(m_timings.unannouncedDownloadLimit);
    prepare(urlOf(*path, false));
    curl_easy_setopt(m_handle->curl, CURLOPT_WRITEFUNCTION, writeToSink);
    curl_easy_setopt(m_handle->curl, CURLOPT_WRITEDATA, &sink);
    bool ok = perform();
    ok = std::fflush(file) == 0 && ::fsync(::fileno(file)) == 0 && ok;
    ok = std::fclose(file) == 0 && ok;
    if (ok) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        ok = ::chmod(temporary.c_str(), 0666 & ~mask) == 0 && ::rename(temporary.c_str(), target->c_str()) == 0;
    }
    if (!ok) ::unlink(temporary.c_str());
    return ok;
}

std::optional<long long> CFtpTransport::Size(const CString& remote) {
    const auto path = absolutePath(remote);
    if (!path) return std::nullopt;
    // libcurl gives what it learns of the file as header text to the write function: it is passed over.
    std::string headers;
    prepare(urlOf(*path, false));
    curl_easy_setopt(m_handle->curl, CURLOPT_NOBODY, 1L);
    curl_easy_setopt(m_handle->curl, CURLOPT_WRITEFUNCTION, appendToString);
    curl_easy_setopt(m_handle->curl, CURLOPT_WRITEDATA, &headers);
    if (!perform()) return std::nullopt;
    curl_off_t size = -1;
    if (curl_easy_getinfo(m_handle->curl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &size) != CURLE_OK || size < 0)
        return std::nullopt;
    return static_cast<long long>(size);
}

bool CFtpTransport::PutFile(const CString& local, const CString& remote) { return upload(local, remote, false); }

bool CFtpTransport::AppendFile(const CString& local, const CString& remote) { return upload(local, remote, true); }

bool CFtpTransport::upload(const CString& local, const CString& remote, bool append) {
    const auto path = absolutePath(remote);
    std::string bytes;
    if (!path || !QxFs::ReadBytes(local, bytes)) return false;
    UploadSource source{bytes};
    prepare(urlOf(*path, false));
    curl_easy_setopt(m_handle->curl, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(m_handle->curl, CURLOPT_READFUNCTION, readFromSource);
    curl_easy_setopt(m_handle->curl, CURLOPT_READDATA, &source);
    curl_easy_setopt(m_handle->curl, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(bytes.size()));
    curl_easy_setopt(m_handle->curl, CURLOPT_APPEND, append ? 1L : 0L);
    return perform();
}

bool CFtpTransport::Remove(const CString& remote) {
    const auto path = absolutePath(remote);
    return path && runCommands({"DELE " + *path});
}

bool CFtpTransport::Rename(const CString& from, const CString& to) {
    const auto source = absolutePath(from);
    const auto target = absolutePath(to);
    return source && target && runCommands({"RNFR " + *source, "RNTO " + *target});
}

bool CFtpTransport::CreateDirectory(const CString& remote) {
    const auto path = absolutePath(remote);
    return path && runCommands({"MKD " + *path});
}

bool CFtpTransport::RemoveDirectory(const CString& remote) {
    const auto path = absolutePath(remote);
    return path && runCommands({"RMD " + *path});
}

bool CFtpTransport::SetCurrentDirectory(const CString& remote) {
    const auto path = absolutePath(remote);
    if (!path || !runCommands({"CWD " + *path})) return false;
    m_cwd = *path;
    return true;
}

CString CFtpTransport::GetCurrentDirectory() const { return CString::FromUtf8(m_cwd); }

std::optional<std::vector<FtpListEntry>> CFtpTransport::List(const CString& remoteFolder) {
    const auto path = absolutePath(remoteFolder);
    if (!path) return std::nullopt;
    for (const bool mlsd : {true, false}) {
        std::string text;
        prepare(urlOf(*path, true));
        if (mlsd) curl_easy_setopt(m_handle->curl, CURLOPT_CUSTOMREQUEST, "MLSD");
        curl_easy_setopt(m_handle->curl, CURLOPT_WRITEFUNCTION, appendToString);
        curl_easy_setopt(m_handle->curl, CURLOPT_WRITEDATA, &text);
        if (perform()) return parseListing(text, mlsd);
    }
    return std::nullopt;
}
