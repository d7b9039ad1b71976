// Makes a drawing the working database for the length of a scope, as the scan of a primary diagram does,
// for readers used outside that scan (views, fuzzing).
#pragma once

#include "platform/host/Documents.h"

class WorkingDatabaseScope {
public:
    explicit WorkingDatabaseScope(AcDbDatabase* database)
        : m_before(acdbHostApplicationServices()->workingDatabase()) {
        acdbHostApplicationServices()->setWorkingDatabase(database);
    }
    ~WorkingDatabaseScope() { acdbHostApplicationServices()->setWorkingDatabase(m_before); }
    WorkingDatabaseScope(const WorkingDatabaseScope&) = delete;
    WorkingDatabaseScope& operator=(const WorkingDatabaseScope&) = delete;

private:
    AcDbDatabase* m_before;
};
