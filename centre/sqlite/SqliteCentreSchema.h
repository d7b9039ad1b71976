// The schema of the BOM centre's SQLite store and its ordered migrations.
#pragma once

#include "support/Export.h"

#include <vector>

struct CentreMigration {
    int version;      // the version the store has after it
    const char* sql;  // run inside the migrating transaction
};

// Oldest first; the last one's version is the version this build writes.
QX_API const std::vector<CentreMigration>& CentreMigrations();
