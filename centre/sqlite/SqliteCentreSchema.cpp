// The schema of the BOM centre's SQLite store and its ordered migrations. A migration is never changed once
// released: a new schema is a new migration at the end.
#include "centre/sqlite/SqliteCentreSchema.h"

const std::vector<CentreMigration>& CentreMigrations() {
    static const std::vector<CentreMigration> migrations{
        // Version 1: accounts and usage files, the layout the first release made (without a version table;
        // a store holding "accounts" but no "schema_version" is of this version).
        {1, R"sql(
CREATE TABLE IF NOT EXISTS accounts (
    enterprise TEXT NOT NULL,
    user TEXT NOT NULL,
    credential_hash TEXT NOT NULL,
    created TEXT NOT NULL,
    PRIMARY KEY (enterprise, user));
CREATE TABLE IF NOT EXISTS usage_files (
    id INTEGER PRIMARY KEY,
    enterprise TEXT NOT NULL,
    user TEXT NOT NULL,
    item TEXT NOT NULL,
    key TEXT NOT NULL,
    text TEXT NOT NULL,
    received TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS projects (
    id TEXT PRIMARY KEY,
    enterprise TEXT NOT NULL,
    name TEXT NOT NULL);
)sql"},
        // Version 2: projects with their trees and the revisions of device rows; the version table. The first
        // release's projects table was never written, so it is replaced.
        {2, R"sql(
CREATE TABLE schema_version (version INTEGER NOT NULL);
DROP TABLE projects;
CREATE TABLE projects (
    id INTEGER PRIMARY KEY,
    enterprise TEXT NOT NULL,
    name TEXT NOT NULL,
    created TEXT NOT NULL);
CREATE INDEX projects_by_enterprise ON projects (enterprise);
CREATE TABLE nodes (
    id INTEGER PRIMARY KEY,
    project_id INTEGER NOT NULL REFERENCES projects (id),
    parent_id INTEGER REFERENCES nodes (id),
    position INTEGER NOT NULL,
    name TEXT NOT NULL,
    type TEXT NOT NULL,
    cir_no TEXT NOT NULL,
    cir_name TEXT NOT NULL,
    cir_type TEXT NOT NULL,
    cir_size TEXT NOT NULL);
CREATE INDEX nodes_by_project ON nodes (project_id);
CREATE TABLE revisions (
    id INTEGER PRIMARY KEY,
    node_id INTEGER NOT NULL REFERENCES nodes (id),
    number INTEGER NOT NULL,
    kind TEXT NOT NULL,
    enterprise TEXT NOT NULL,
    user TEXT NOT NULL,
    submitted TEXT NOT NULL,
    UNIQUE (node_id, number));
CREATE TABLE bom_rows (
    revision_id INTEGER NOT NULL REFERENCES revisions (id),
    position INTEGER NOT NULL,
    label TEXT NOT NULL,
    name TEXT NOT NULL,
    model TEXT NOT NULL,
    count TEXT NOT NULL,
    remark TEXT NOT NULL,
    code TEXT NOT NULL,
    secondary INTEGER NOT NULL,
    PRIMARY KEY (revision_id, position));
)sql"},
        // Version 3: accounts an administrator disables; the sessions of servers, by a hash of the token.
        {3, R"sql(
ALTER TABLE accounts ADD COLUMN disabled INTEGER NOT NULL DEFAULT 0;
CREATE TABLE sessions (
    token_hash TEXT PRIMARY KEY,
    enterprise TEXT NOT NULL,
    user TEXT NOT NULL,
    last_used INTEGER NOT NULL);
CREATE INDEX sessions_by_account ON sessions (enterprise, user);
)sql"},
        // Version 4: the client's key of the submit that made a revision, so that a submit sent again keeps
        // nothing twice. Revisions made before have none.
        {4, R"sql(
ALTER TABLE revisions ADD COLUMN submit_key TEXT;
CREATE UNIQUE INDEX revisions_by_submit ON revisions (node_id, submit_key);
)sql"},
    };
    return migrations;
}
