// The usage files that the cloud receives after an interactive login.
#include "module/UsageFiles.h"

#include "exchange/text/QxXmlTextDoc.h"
#include "platform/cloud/HexmoorClient.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/Locations.h"
#include "support/PathText.h"

namespace {
const char16_t* const kPrefix = u"QxCollect_";
}

CString UsageFileKey(const CString& fileName) {
    if (!fileName.StartsWith(kPrefix)) return CString();
    CString key = RemoveFileExtension(fileName);
    key.Replace(kPrefix, u"");
    return key;
}

void SendUsageFiles(CHexmoorInteFace& client, const CString& item1) {
    const CString install = GetLocalInstallDir();
    if (install.IsEmpty()) return;
    const CString folder = install + u"Part2lib\\StructuralDrawing\\";
    CStringArray paths;
    FindFilesInFolder(folder, u"xml", paths, true);
    for (const CString& path : paths) {
        const CString name = GetFileNameOfPath(path);
        if (!name.StartsWith(kPrefix)) continue;
        CQxXmlTextDoc document;
        document.Load(path);
        // A file whose bytes cannot be read stays for a later login; one that reads but does not parse
        // is sent as it stands.
        if (!document.FileWasRead()) continue;
        if (client.UserInfoCollect(item1, UsageFileKey(name), document.m_strDoc)) QxFs::DeleteFile(path);
    }
}
