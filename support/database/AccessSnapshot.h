// An Access database read whole: every table with its fields and rows, as libmdb reads them.
#pragma once

#include "support/database/DatabaseEngine.h"

#include <string>
#include <vector>

struct AccessColumn {
    CString name;
    int kind = 0;  // numbered as QX_KIND_*
};

struct AccessTable {
    CString name;
    bool system = false;    // system tables are listed but their rows are not read
    bool readable = false;  // false when libmdb could not read the table's definition
    std::vector<AccessColumn> columns;
    std::vector<std::vector<DbValue>> rows;
};

struct AccessSnapshot {
    std::vector<AccessTable> tables;
};

// Reads the bytes of an Access file. libmdb trusts the file's page links, so a truncated or damaged file
// can make it crash, loop or allocate without end: the reading runs in a child process that may spend 10 s
// of processor or wall-clock time and hold 512 MB of resident memory, and only a complete answer is taken. Jet 3 text is read in the legacy code page, Jet 4 and later text as the
// Unicode it is stored in. False for a file that libmdb cannot read.
bool ReadAccessSnapshot(const std::string& bytes, AccessSnapshot& snapshot);
