// The description words of Data\word.mdb.
#include "support/database/WordList.h"

#include "platform/InstallPath.h"
#include "support/FileSystem.h"
#include "support/PathText.h"
#include "support/database/OperateMdb.h"

void GetWordList(const CString& key, CStringArray& words) {
    words.RemoveAll();
    const CString source = JoinPath(CString(GetCorvaneCommonResInstallPath()), u"Data\\word.mdb");
    const CString local = JoinPath(CString(GetCorvaneLocalInstallPath()), u"Data\\word.mdb");
    if (!source.EqualsNoCase(local)) QxFs::CopyFile(source, local, true);

    COperateMdb database(local);
    if (!database.IsOpen()) return;
    CStringArray tables;
    database.GetTableNames(tables);
    for (const CString& table : tables) {
        // A name that begins with the key is not taken: the key must stand behind something.
        if (table.Find(key) <= 0) continue;
        database.GetFieldValues(table, u"WORD", words, QX_KIND_CHAR, false);
        break;
    }
    database.CloseDatabase();
}
