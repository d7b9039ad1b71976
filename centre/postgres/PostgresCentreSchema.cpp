// A migration is never changed once released: a new schema is a new migration at the end. "user" is a
// reserved word in PostgreSQL, so that column is always quoted.
#include "centre/postgres/PostgresCentreSchema.h"

const std::vector<PostgresCentreMigration>& PostgresCentreMigrations() {
    static const std::vector<PostgresCentreMigration> migrations{
        // Version 1: accounts and usage files.
        {1, R"sql(
CREATE TABLE accounts (
    enterprise TEXT NOT NULL,
    "user" TEXT NOT NULL,
    credential_hash TEXT NOT NULL,
    created TEXT NOT NULL,
    PRIMARY KEY (enterprise, "user"));
CREATE TABLE usage_files (
    id BIGSERIAL PRIMARY KEY,
    enterprise TEXT NOT NULL,
    "user" TEXT NOT NULL,
    item TEXT NOT NULL,
    key TEXT NOT NULL,
    text TEXT NOT NULL,
    received TEXT NOT NULL);
)sql"},
        // Version 2: projects with their trees and the revisions of device rows.
        {2, R"sql(
CREATE TABLE projects (
    id BIGSERIAL PRIMARY KEY,
    enterprise TEXT NOT NULL,
    name TEXT NOT NULL,
    created TEXT NOT NULL);
CREATE INDEX projects_by_enterprise ON projects (enterprise);
CREATE TABLE nodes (
    id BIGSERIAL PRIMARY KEY,
    project_id BIGINT NOT NULL REFERENCES projects (id),
    parent_id BIGINT REFERENCES nodes (id),
    position INTEGER NOT NULL,
    name TEXT NOT NULL,
    type TEXT NOT NULL,
    cir_no TEXT NOT NULL,
    cir_name TEXT NOT NULL,
    cir_type TEXT NOT NULL,
    cir_size TEXT NOT NULL);
CREATE INDEX nodes_by_project ON nodes (project_id);
CREATE TABLE revisions (
    id BIGSERIAL PRIMARY KEY,
    node_id BIGINT NOT NULL REFERENCES nodes (id),
    number INTEGER NOT NULL,
    kind TEXT NOT NULL,
    enterprise TEXT NOT NULL,
    "user" TEXT NOT NULL,
    submitted TEXT NOT NULL,
    UNIQUE (node_id, number));
CREATE TABLE bom_rows (
    revision_id BIGINT NOT NULL REFERENCES revisions (id),
    position INTEGER NOT NULL,
    label TEXT NOT NULL,
    name TEXT NOT NULL,
    model TEXT NOT NULL,
    count TEXT NOT NULL,
    remark TEXT NOT NULL,
    code TEXT NOT NULL,
    secondary BOOLEAN NOT NULL,
    PRIMARY KEY (revision_id, position));
)sql"},
        // Version 3: accounts an administrator disables; the sessions of servers, by a hash of the token.
        {3, R"sql(
ALTER TABLE accounts ADD COLUMN disabled BOOLEAN NOT NULL DEFAULT FALSE;
CREATE TABLE sessions (
    token_hash TEXT PRIMARY KEY,
    enterprise TEXT NOT NULL,
    "user" TEXT NOT NULL,
    last_used BIGINT NOT NULL);
CREATE INDEX sessions_by_account ON sessions (enterprise, "user");
CREATE INDEX sessions_by_use ON sessions (last_used);
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
