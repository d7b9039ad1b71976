// The cloud client's reading of hexmoord's replies: every operation of the HTTP backend against a loopback
// server in the process that answers each request, in turn, with the next part of the input (cut at zero
// bytes: a status line, then the body). Whatever the replies hold, an operation ends with an answer or a
// message to the person, never with an exception or a crash.
#include "FuzzSupport.h"

#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/http/HttpBomCentre.h"
#include "platform/host/Prompts.h"

#include <httplib.h>

#include <chrono>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

namespace {

constexpr size_t kMostReplies = 24;

struct Reply {
    int status = 200;
    std::string body;
};

// The server that says what the input says.
class ScriptedServer {
public:
    ScriptedServer() {
        const auto answer = [this](const httplib::Request&, httplib::Response& response) {
            const Reply reply = next();
            response.status = reply.status;
            response.set_content(reply.body, "application/json");
        };
        m_server.Get(".*", answer);
        m_server.Post(".*", answer);
        m_server.Put(".*", answer);
        m_server.Delete(".*", answer);
        m_port = m_server.bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
        while (m_port > 0 && !m_server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ~ScriptedServer() {
        m_server.stop();
        m_thread.join();
    }
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    int port() const { return m_port; }
    void script(std::deque<Reply> replies) {
        const std::lock_guard lock(m_mutex);
        m_replies = std::move(replies);
    }

private:
    Reply next() {
        const std::lock_guard lock(m_mutex);
        if (m_replies.empty()) return {404, "{\"error\":\"no more replies\"}"};
        Reply reply = std::move(m_replies.front());
        m_replies.pop_front();
        return reply;
    }

    httplib::Server m_server;
    int m_port = 0;
    std::thread m_thread;
    std::mutex m_mutex;
    std::deque<Reply> m_replies;
};

// A person who picks the first project offered and gives no other answer.
class FirstChoice final : public IPromptService {
public:
    std::optional<CString> AskText(const CString&) override { return std::nullopt; }
    std::optional<CString> AskSecret(const CString&) override { return std::nullopt; }
    std::optional<bool> AskYesNo(const CString&) override { return false; }
    std::optional<int> AskChoice(const CString&, const CStringArray& options) override {
        return options.IsEmpty() ? std::nullopt : std::optional<int>(0);
    }
};

ScriptedServer& server() {
    static ScriptedServer instance;
    return instance;
}

std::deque<Reply> repliesOf(const uint8_t* data, size_t size) {
    std::deque<Reply> replies;
    for (const std::string_view part : fuzz::SplitSections(data, size, kMostReplies)) {
        Reply reply;
        const size_t lineEnd = part.find('\n');
        const std::string statusLine(part.substr(0, lineEnd));
        // A status the server can send: a status line that is no such number answers 200.
        const int status = std::atoi(statusLine.c_str());
        reply.status = status >= 200 && status <= 599 ? status : 200;
        reply.body = lineEnd == std::string_view::npos ? std::string() : std::string(part.substr(lineEnd + 1));
        replies.push_back(std::move(reply));
    }
    return replies;
}

// A project with one device and its rows, as the commands submit one.
std::unique_ptr<HMProjectTree_INFO> localProject() {
    auto root = std::make_unique<HMProjectTree_INFO>();
    root->m_strID = u"1";
    root->m_strName = u"工程";
    auto* device = new HMProjectTree_INFO;
    device->m_strID = u"2";
    device->m_strName = u"K01";
    device->m_strType = u"0";
    device->m_strCirNo = u"1";
    device->m_pRoot = root.get();
    device->m_pParent = root.get();
    BOM_INFO row{u"QF1", u"断路器", u"VS1", u"2", u"", u"0101"};
    device->m_arrSecondaryBom.Add(row);
    device->m_arrPrimaryBom.Add(row);
    root->m_arrChildren.Add(device);
    root->m_arrCabinets.Add(device);
    return root;
}

void runEveryOperation(const CString& endpoint) {
    CHexmoorInteFace person(std::make_unique<CHttpBomCentre>(endpoint));
    person.m_strEnterprise = u"e";
    person.m_strUser = u"u";
    person.m_strCredential = u"c";
    CHttpBomCentre centre(endpoint);
    if (centre.autoLogin(person) != 1) return;
    centre.UserInfoCollect(u"item", u"key", u"text");
    centre.getProjectName(u"1");
    std::unique_ptr<HMProjectTree_INFO>(centre.getProjectInfo(nullptr));
    const std::unique_ptr<HMProjectTree_INFO> local = localProject();
    std::unique_ptr<HMProjectTree_INFO>(centre.getProjectInfo(local.get()));
    std::unique_ptr<HMProjectTree_INFO>(centre.getOneCabProjectInfo());
    centre.submitItm(local.get());
    centre.submitBom(local.get(), true);
    centre.bomCmp(local.get());
    centre.submitOneCabCir2(local->m_arrChildren[0]);
    BomRows rows;
    centre.getDqBoms(rows);
    centre.getImportBoms(u"1", u"2", rows);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static FirstChoice person;
    SetHostPrompts(&person);
    server();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    server().script(repliesOf(data, size));
    runEveryOperation(CString(("http://127.0.0.1:" + std::to_string(server().port())).c_str()));
    return 0;
}
