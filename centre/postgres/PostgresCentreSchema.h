// The schema of the BOM centre in PostgreSQL and its ordered migrations: the same tables and versions as the
// SQLite store, in PostgreSQL's words.
#pragma once

#include "support/Export.h"

#include <vector>

struct PostgresCentreMigration {
    int version;
    const char* sql;
};

QX_API const std::vector<PostgresCentreMigration>& PostgresCentreMigrations();
