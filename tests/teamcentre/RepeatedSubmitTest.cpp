// A submit sent again under its key keeps nothing twice: on both stores (one of the earlier schema,
// brought up to date), and through hexmoord when the connection dies after the server committed, before
// the answer came, and the client's transport sends the request again.
#include "centre/operations/BomCentreOperations.h"
#include "centre/operations/CentreError.h"
#include "centre/postgres/PostgresCentreSchema.h"
#include "centre/sqlite/SqliteCentreSchema.h"
#include "common/CapturedOutput.h"
#include "platform/cloud/HexmoorClient.h"
#include "platform/cloud/http/CentreJson.h"
#include "teamcentre/HexmoordProcess.h"
#include "teamcentre/ServerTestSupport.h"
#include "teamcentre/TeamTrees.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>

using namespace team_test;

namespace {

// Relays connections to a server on the loopback. A request holding `cutAt` that comes on a connection
// already used once is passed on; the server's answer is not: both sides are closed as it arrives, once.
class CuttingRelay {
public:
    CuttingRelay(int serverPort, std::string cutAt) : m_serverPort(serverPort), m_cutAt(std::move(cutAt)) {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = loopback(0);
        socklen_t length = sizeof address;
        if (::bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || ::listen(m_listener, 16) != 0 ||
            ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
            throw std::runtime_error("the relay cannot listen");
        m_port = ntohs(address.sin_port);
        m_acceptor = std::thread([this] { accept(); });
    }
    ~CuttingRelay() {
        m_stop = true;
        m_acceptor.join();
        for (std::thread& connection : m_connections) connection.join();
        ::close(m_listener);
    }
    std::string endpoint() const { return "http://127.0.0.1:" + std::to_string(m_port); }
    int cuts() const { return m_cuts; }

private:
    static sockaddr_in loopback(int port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }
    void accept() {
        while (!m_stop) {
            pollfd waiting{m_listener, POLLIN, 0};
            if (::poll(&waiting, 1, 50) <= 0) continue;
            const int client = ::accept(m_listener, nullptr, nullptr);
            if (client >= 0) m_connections.emplace_back([this, client] { relay(client); });
        }
    }
    void relay(int client) {
        const int server = ::socket(AF_INET, SOCK_STREAM, 0);
        const sockaddr_in address = loopback(m_serverPort);
        bool open = ::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
        bool answered = false;  // the server has answered on this connection before
        bool cutting = false;
        while (open && !m_stop) {
            pollfd ends[2] = {{client, POLLIN, 0}, {server, POLLIN, 0}};
            if (::poll(ends, 2, 50) <= 0) continue;
            char buffer[65536];
            for (int from = 0; from < 2 && open; ++from) {
                if (!(ends[from].revents & (POLLIN | POLLHUP | POLLERR))) continue;
                const ssize_t n = ::recv(ends[from].fd, buffer, sizeof buffer, 0);
                open = n > 0;
                if (!open) break;
                if (from == 0 && answered && m_cuts == 0 && std::string(buffer, static_cast<size_t>(n)).find(m_cutAt) != std::string::npos)
                    cutting = true;
                if (from == 1 && cutting) {
                    ++m_cuts;
                    open = false;
                    break;
                }
                if (from == 1) answered = true;
                ::send(ends[1 - from].fd, buffer, static_cast<size_t>(n), MSG_NOSIGNAL);
            }
        }
        ::close(server);
        ::close(client);
    }

    int m_serverPort;
    std::string m_cutAt;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_stop = false;
    std::atomic<int> m_cuts = 0;
    std::thread m_acceptor;
    std::vector<std::thread> m_connections;  // one per connection, added by the acceptor alone
};

// Each revision of the device as "number model".
std::vector<std::string> keptRevisions(ICentreStore& store, long long nodeId) {
    std::vector<std::string> kept;
    for (const CentreRevision& revision : store.revisions(nodeId))
        kept.push_back(std::to_string(revision.number) + " " + store.rows(revision.id).at(0).model.ToUtf8());
    return kept;
}

class RepeatedSubmit : public ::testing::TestWithParam<StoreKind> {};

// A database of the schema before submit keys, holding one device's revision, is brought up to date; then
// submits with and without keys, one of them sent twice.
TEST_P(RepeatedSubmit, AKnownKeyAnswersTheRevisionKeptAndWritesNothing) {
    TempFolder folder;
    const auto database = FreshDatabase(GetParam(), folder);
    if (!database) GTEST_SKIP() << kNoPostgresServer;
    std::string earlier;
    if (GetParam() == StoreKind::Sqlite) {
        for (const CentreMigration& migration : CentreMigrations())
            if (migration.version <= 3) earlier += migration.sql;
        earlier += "INSERT INTO schema_version VALUES (3);";
    } else {
        for (const PostgresCentreMigration& migration : PostgresCentreMigrations())
            if (migration.version <= 3) earlier += migration.sql;
        earlier += "CREATE TABLE schema_version (version INTEGER NOT NULL); INSERT INTO schema_version VALUES (3);";
    }
    earlier += "INSERT INTO projects (enterprise, name, created) VALUES ('acme', 'old', 't');"
               "INSERT INTO nodes (project_id, parent_id, position, name, type, cir_no, cir_name, cir_type, cir_size) "
               "VALUES (1, NULL, 0, 'AH1', '0', '', '', '', '');"
               "INSERT INTO revisions (node_id, number, kind, enterprise, \"user\", submitted) VALUES (1, 1, 'itm', 'acme', 'ann', 't');"
               "INSERT INTO bom_rows VALUES (1, 0, '', 'breaker', 'before', '1', '', '', FALSE);";
    if (GetParam() == StoreKind::Sqlite) {
        FILE* shell = ::popen(("sqlite3 -bail '" + *database + "'").c_str(), "w");
        ASSERT_TRUE(shell);
        std::fputs(earlier.c_str(), shell);
        ASSERT_EQ(::pclose(shell), 0);
    } else {
        ASSERT_TRUE(SharedPostgresCluster()->runSql(*database, earlier));
    }

    const auto store = CentreStoreOpener(*database)();
    CBomCentreOperations centre(*store);
    const CentreUser ann{u"acme", u"ann"};
    const auto submit = [&](const CString& model, const CString& key) {
        auto tree = centre.ProjectTree(ann, u"1");
        tree->m_arrCabinets[0]->m_arrPrimaryBom.Add({CString(), u"breaker", model, u"1", CString(), CString()});
        const SubmitReport report = centre.SubmitBom(ann, *tree, key);
        EXPECT_EQ(report.accepted, 1);
        return tree->m_arrCabinets[0]->m_strBoms;
    };
    const CString key = u"0123456789abcdef0123456789abcdef";
    const CString first = submit(u"first", key);
    // Sent again (whatever it carries now): the first answer, nothing new kept.
    EXPECT_EQ(submit(u"again", key), first);
    EXPECT_NE(first.Find(u"Revision=\"2\""), -1);
    submit(u"other", u"another-key-of-16");
    submit(u"old client", CString());
    submit(u"old client", CString());
    EXPECT_EQ(keptRevisions(*store, 1), (std::vector<std::string>{"1 before", "2 first", "3 other", "4 old client", "5 old client"}));
    std::vector<int> found;
    for (const CString& sent : {key, CString(u"another-key-of-16"), CString(u"never-sent-key-00"), CString()})
        found.push_back(store->revisionOfSubmit(1, sent).value_or(CentreRevision{}).number);
    EXPECT_EQ(found, (std::vector<int>{2, 3, 0, 0}));
    // One revision per device and key, whoever asks.
    EXPECT_THROW(store->addSubmittedRevision({0, 1, 6, u"bom", u"acme", u"ann", u"t"}, {}, key), CCentreStoreError);
}

INSTANTIATE_TEST_SUITE_P(Stores, RepeatedSubmit, ::testing::Values(StoreKind::Sqlite, StoreKind::Postgres), StoreKindName);

// hexmoord commits, the connection dies before its answer reaches the client, libcurl sends the request
// again on a new connection: the client hears of one success and the device has one new revision. Keys
// that are no keys are refused before anything runs.
TEST(RepeatedSubmitOverHttp, AnAnswerLostAfterTheCommitCostsNoSecondRevision) {
    TempFolder folder;
    const std::string database = folder.native() + "/centre.db";
    AddAccounts(database, {{"acme", "ann"}});
    HexmoordProcess server(database);
    CuttingRelay relay(server.port(), "POST /api/submit-bom");
    CapturedOutput output;
    const auto client = ClientOf(relay.endpoint(), u"acme", u"ann");
    ASSERT_EQ(client->autoLogin(), 1) << output.printed.ToUtf8();
    auto tree = project(u"relayed", 1);
    ASSERT_TRUE(client->submitItm(tree.get())) << output.printed.ToUtf8();
    tree->m_arrCabinets[0]->m_arrPrimaryBom[0].m_strRowCount = u"7";
    EXPECT_TRUE(client->submitBom(tree.get(), true)) << output.printed.ToUtf8();
    EXPECT_EQ(relay.cuts(), 1) << "the answer was never cut";
    EXPECT_NE(tree->m_arrCabinets[0]->m_strBoms.Find(u"Revision=\"2\""), -1);

    CHttpTransport http(server.endpoint());
    const std::string token = LoginToken(http, "acme", "ann");
    const std::string revisions = "/api/projects/" + tree->m_strID.ToUtf8() + "/devices/" + tree->m_arrCabinets[0]->m_strID.ToUtf8() + "/revisions";
    const JsonReply kept = Request(http, "GET", revisions, nullptr, token);
    ASSERT_EQ(kept.body.size(), 2u) << kept.body.dump();
    EXPECT_EQ(kept.body[1]["rows"][0]["count"], "7");

    const nlohmann::json sent = TreeToJson(*tree);
    for (const nlohmann::json& key : {nlohmann::json("short"), nlohmann::json(std::string(65, 'a')), nlohmann::json("sixteen letters!"),
                                      nlohmann::json(12345678901234567)})
        EXPECT_EQ(Request(http, "POST", "/api/submit-bom", {{"tree", sent}, {"key", key}}, token).status, 400) << key.dump();
    EXPECT_EQ(Request(http, "GET", revisions, nullptr, token).body.size(), 2u);
}

} // namespace
