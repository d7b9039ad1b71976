// Shared pieces of the BOM centre's tests: the stores the operations are tested on, a store that breaks on
// purpose, trees to submit, and the module's own write-and-read of a node's Hexmoor.xml.
#pragma once

#include "common/PostgresCluster.h"
#include "common/TempFolder.h"
#include "exchange/HexmoorProducts.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "platform/cloud/HexmoorXmlFile.h"
#include "centre/operations/CentreError.h"
#include "centre/operations/CentreStore.h"
#include "centre/sqlite/SqliteCentreStore.h"
#include "centre/postgres/PostgresCentreStore.h"
#include "teamcentre/TeamTrees.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace centre_test {

// One kind of store the operations' suite runs on. Another storage joins the suite by adding its maker here.
struct StoreMaker {
    std::string name;
    // A fresh, empty store; `folder` lives as long as the test.
    std::function<std::unique_ptr<ICentreStore>(const TempFolder& folder)> open;
};

inline void PrintTo(const StoreMaker& maker, std::ostream* out) { *out << maker.name; }

// Every store the operations run on. PostgreSQL joins where a server is installed; its throwaway cluster
// starts at the first case that needs it, not when the tests are listed.
inline std::vector<StoreMaker> StoreMakers() {
    std::vector<StoreMaker> makers{{"Sqlite", [](const TempFolder& folder) -> std::unique_ptr<ICentreStore> {
                                         return std::make_unique<CSqliteCentreStore>(folder.native() + "/centre.db");
                                     }}};
    if (!PostgresCluster::ServerBinDir().empty())
        makers.push_back({"Postgres", [](const TempFolder&) -> std::unique_ptr<ICentreStore> {
                              PostgresCluster* cluster = SharedPostgresCluster();
                              if (!cluster) throw std::runtime_error("the PostgreSQL cluster did not start");
                              return std::make_unique<CPostgresCentreStore>(cluster->freshDatabase());
                          }});
    return makers;
}

// Forwards to a real store and, when the chosen write comes, runs `onWrite` instead of it (which throws, or
// kills the process): the shape of a submit interrupted halfway.
class BreakingStore final : public ICentreStore {
public:
    BreakingStore(ICentreStore& inner, int writesBeforeBreak, std::function<void()> onWrite)
        : m_inner(inner), m_left(writesBeforeBreak), m_onWrite(std::move(onWrite)) {}

    void beginWrite() override { m_inner.beginWrite(); }
    void beginRead() override { m_inner.beginRead(); }
    void commit() override { m_inner.commit(); }
    void rollback() noexcept override { m_inner.rollback(); }
    std::optional<CentreAccount> account(const CString& e, const CString& u) override { return m_inner.account(e, u); }
    void addAccount(const CentreAccount& a) override { write(), m_inner.addAccount(a); }
    void updateAccount(const CentreAccount& a) override { write(), m_inner.updateAccount(a); }
    std::vector<CentreAccount> accounts() override { return m_inner.accounts(); }
    void addSession(const CentreSession& s) override { write(), m_inner.addSession(s); }
    std::optional<CentreSession> session(const CString& h) override { return m_inner.session(h); }
    void touchSession(const CString& h, long long t) override { write(), m_inner.touchSession(h, t); }
    void removeSession(const CString& h) override { write(), m_inner.removeSession(h); }
    void removeSessionsUnusedSince(long long t) override { write(), m_inner.removeSessionsUnusedSince(t); }
    void removeSessionsOf(const CString& e, const CString& u) override { write(), m_inner.removeSessionsOf(e, u); }
    void addUsageFile(const CentreUsageFile& f) override { write(), m_inner.addUsageFile(f); }
    std::vector<CentreUsageFile> usageFiles() override { return m_inner.usageFiles(); }
    long long addProject(const CentreProject& p) override { return write(), m_inner.addProject(p); }
    std::optional<CentreProject> project(long long id) override { return m_inner.project(id); }
    std::vector<CentreProject> projects(const CString& e) override { return m_inner.projects(e); }
    std::vector<CentreProject> allProjects() override { return m_inner.allProjects(); }
    long long addNode(const CentreNode& n) override { return write(), m_inner.addNode(n); }
    std::optional<CentreNode> node(long long id) override { return m_inner.node(id); }
    std::vector<CentreNode> nodes(long long projectId) override { return m_inner.nodes(projectId); }
    long long addRevision(const CentreRevision& r, const std::vector<CentreRow>& rows) override {
        return write(), m_inner.addRevision(r, rows);
    }
    std::optional<CentreRevision> currentRevision(long long nodeId) override { return m_inner.currentRevision(nodeId); }
    std::vector<CentreRevision> revisions(long long nodeId) override { return m_inner.revisions(nodeId); }
    std::vector<CentreRow> rows(long long revisionId) override { return m_inner.rows(revisionId); }

private:
    void write() {
        if (m_left-- == 0) m_onWrite();
    }
    ICentreStore& m_inner;
    int m_left;
    std::function<void()> m_onWrite;
};

inline BOM_INFO row(const CString& name, const CString& model, const CString& count, const CString& remark = CString(),
                    const CString& code = CString()) {
    return {CString(), name, model, count, remark, code};
}

using team_test::addNode;
using team_test::shape;

// A substation as HMItmSubmit builds it from folders: a device at the top, a sub-project with two devices.
inline std::unique_ptr<HMProjectTree_INFO> substation(const CString& name = u"华东变电站") {
    auto root = std::make_unique<HMProjectTree_INFO>();
    root->m_strName = name;
    HMProjectTree_INFO* incoming = addNode(*root, *root, u"AH1 进线柜", u"0");
    incoming->m_strCirNo = u"AH1";
    incoming->m_strCirName = u"进线柜";
    incoming->m_strCirType = u"KYN28";
    incoming->m_strCirSize = u"800*1500*2300";
    incoming->m_arrPrimaryBom.Add(row(u"断路器", u"VS1-12/1250", u"1", u"带 <手车> & \"底座\"", u"QF-01"));
    incoming->m_arrPrimaryBom.Add(row(u"电流互感器", u"LZZBJ9-10", u"3"));
    incoming->m_arrSecondaryBom.Add(row(u"综保装置", u"PCS-9611", u"1", u"", u"KP"));
    HMProjectTree_INFO* lines = addNode(*root, *root, u"出线", u"100");
    lines->m_strCirNo = u"出线";
    HMProjectTree_INFO* feeder1 = addNode(*lines, *root, u"AH2", u"0");
    feeder1->m_strCirNo = u"AH2,AH3";
    feeder1->m_arrPrimaryBom.Add(row(u"断路器", u"VS1-12/630", u"2"));
    HMProjectTree_INFO* feeder2 = addNode(*lines, *root, u"AH4", u"0");
    feeder2->m_strCirNo = u"AH4";
    return root;
}

// What the module's Hexmoor.xml writer and reader make of the node: its document is written, saved as the
// client saves it, loaded and read, with the products of a device.
inline std::unique_ptr<HMProjectTree_INFO> throughHexmoorXml(const HMProjectTree_INFO& node) {
    TempFolder folder;
    CXmlDocument written;
    HMXmlCreateDocument(written);
    EXPECT_TRUE(HMXmlWriteNode(written, &node));
    CString text;
    HMXmlDocumentText(written, text);
    const CString path = folder.logic() + u"Hexmoor.xml";
    EXPECT_TRUE(SaveHexmoorXml(path, text));
    CXmlDocument document;
    HMXmlCreateDocument(document);
    EXPECT_TRUE(HMXmlLoadFile(document, path));
    auto read = std::make_unique<HMProjectTree_INFO>();
    HMXmlReadNode(document, read.get());
    if (HMIsDeviceType(read->m_strType)) HMXmlReadProducts(document, read.get());
    return read;
}

// Rows as "name|model|count|remark|code", so that a whole list is compared at once.
inline std::vector<std::string> rowTexts(const BomRows& rows) {
    std::vector<std::string> texts;
    for (const BOM_INFO& r : rows)
        texts.push_back((r.m_strRowName + "|" + r.m_strRowModel + "|" + r.m_strRowCount + "|" + r.m_strRowRemark + "|" + r.m_strRowCode).ToUtf8());
    return texts;
}

// The rows as they come back from a document: label and code are not part of what the reader gives.
inline BomRows withoutLabelAndCode(const BomRows& rows) {
    BomRows out;
    for (const BOM_INFO& r : rows) out.Add({CString(), r.m_strRowName, r.m_strRowModel, r.m_strRowCount, r.m_strRowRemark, CString()});
    return out;
}

} // namespace centre_test
