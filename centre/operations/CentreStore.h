// The storage seam of the BOM centre: the few things the centre's operations need from a store, with
// transactions. The operations hold every rule; a store only keeps and finds records, so that the same
// operations run on the embedded SQLite file and on a server's database.
#pragma once

#include "support/CString.h"

#include <optional>
#include <string>
#include <vector>

struct CentreAccount {
    CString enterprise;
    CString user;
    CString credentialHash;
    CString created;
    bool disabled = false;  // a disabled account logs in no more; its projects stay
};

// A logged-in session of a server. Only a hash of its token is kept, so that what the store holds does not
// open a session.
struct CentreSession {
    CString tokenHash;
    CString enterprise;
    CString user;
    long long lastUsed = 0;  // seconds since the epoch
};

struct CentreUsageFile {
    long long id = 0;
    CString enterprise;
    CString user;
    CString item;
    CString key;
    CString text;
    CString received;
};

struct CentreProject {
    long long id = 0;
    CString enterprise;
    CString name;
    CString created;
    // The newest revision of any of its devices (revision ids only grow), 0 when none; filled on reads.
    long long lastRevisionId = 0;
};

// One node below a project's root: a sub-project (type "100") or a device. The root is the project itself.
struct CentreNode {
    long long id = 0;
    long long projectId = 0;
    long long parentId = 0;  // 0: a direct child of the project's root
    int position = 0;        // order among its siblings
    CString name;
    CString type;
    CString cirNo;
    CString cirName;
    CString cirType;
    CString cirSize;
};

// One submit of one device's rows. Numbers count from 1 per device; the highest is the current one.
struct CentreRevision {
    long long id = 0;
    long long nodeId = 0;
    int number = 0;
    CString kind;  // "itm", "bom" or "secondary": the operation that made it
    CString enterprise;
    CString user;
    CString submitted;
};

struct CentreRow {
    CString label;
    CString name;
    CString model;
    CString count;
    CString remark;
    CString code;
    bool secondary = false;

    friend bool operator==(const CentreRow&, const CentreRow&) = default;
};

// Failures throw CCentreStoreError; a text holding a NUL character is refused with CCentreError, the same
// on every store. Reads and writes outside a transaction each stand alone.
class QX_API ICentreStore {
public:
    virtual ~ICentreStore();

    // A write transaction excludes other writers of what it locks, so that what it read stays true. A store
    // that locks all of itself at the start ignores the finer locks.
    virtual void beginWrite() = 0;
    // Within a write transaction: holds one project (its nodes and revisions), or the enterprise's project
    // names, until the transaction ends.
    virtual void lockProject(long long /*projectId*/) {}
    virtual void lockEnterprise(const CString& /*enterprise*/) {}
    // Whether the store still reaches its data (a server checks before lending it; a dead connection is
    // replaced). Not during a transaction.
    virtual bool usable() noexcept { return true; }
    // A read transaction sees one state of the store throughout.
    virtual void beginRead() = 0;
    virtual void commit() = 0;
    virtual void rollback() noexcept = 0;

    virtual std::optional<CentreAccount> account(const CString& enterprise, const CString& user) = 0;
    virtual void addAccount(const CentreAccount& account) = 0;
    // Keeps the credential hash and the disabled mark of an existing account.
    virtual void updateAccount(const CentreAccount& account) = 0;
    // Every account, by enterprise and user.
    virtual std::vector<CentreAccount> accounts() = 0;

    virtual void addSession(const CentreSession& session) = 0;
    virtual std::optional<CentreSession> session(const CString& tokenHash) = 0;
    virtual void touchSession(const CString& tokenHash, long long lastUsed) = 0;
    virtual void removeSession(const CString& tokenHash) = 0;
    // Sessions last used before the time, and every session of one account.
    virtual void removeSessionsUnusedSince(long long time) = 0;
    virtual void removeSessionsOf(const CString& enterprise, const CString& user) = 0;

    virtual void addUsageFile(const CentreUsageFile& file) = 0;
    virtual std::vector<CentreUsageFile> usageFiles() = 0;

    // Returns the new project's id.
    virtual long long addProject(const CentreProject& project) = 0;
    virtual std::optional<CentreProject> project(long long id) = 0;
    // The enterprise's projects in the order they were made; an empty enterprise has none.
    virtual std::vector<CentreProject> projects(const CString& enterprise) = 0;
    // Every enterprise's projects, for the store's own inspection.
    virtual std::vector<CentreProject> allProjects() = 0;

    // Returns the new node's id.
    virtual long long addNode(const CentreNode& node) = 0;
    virtual std::optional<CentreNode> node(long long id) = 0;
    // The project's nodes ordered by parent, then position.
    virtual std::vector<CentreNode> nodes(long long projectId) = 0;

    // Returns the new revision's id; the rows keep their order.
    virtual long long addRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows) = 0;
    // The same, kept with the client's key of the submit that made it, so that the submit sent again finds
    // it; a device keeps one revision per key. A store that keeps no keys refuses a key.
    virtual long long addSubmittedRevision(const CentreRevision& revision, const std::vector<CentreRow>& rows,
                                           const CString& submitKey);
    virtual std::optional<CentreRevision> currentRevision(long long nodeId) = 0;
    // The device's revision made by the submit of this key, if any; none for an empty key.
    virtual std::optional<CentreRevision> revisionOfSubmit(long long nodeId, const CString& submitKey);
    // The node's revisions, oldest first.
    virtual std::vector<CentreRevision> revisions(long long nodeId) = 0;
    virtual std::vector<CentreRow> rows(long long revisionId) = 0;
};

// A text as a store keeps it (UTF-8); one holding a NUL character is refused with CCentreError, since some
// stores would cut it there.
QX_API std::string StoreText(const CString& text);

// Begins a transaction and rolls it back unless it was committed: an error thrown halfway leaves the
// store as it was.
class QX_API CentreTransaction {
public:
    enum class Mode { Read, Write };
    CentreTransaction(ICentreStore& store, Mode mode);
    ~CentreTransaction();
    CentreTransaction(const CentreTransaction&) = delete;
    CentreTransaction& operator=(const CentreTransaction&) = delete;

    void commit();

private:
    ICentreStore& m_store;
    bool m_open = true;
};
