// Saving the text of a Hexmoor.xml for the cloud client.
#include "platform/cloud/HexmoorXmlFile.h"

#include "support/FileSystem.h"

bool SaveHexmoorXml(const CString& path, const CString& text) {
    const int slash = path.ReverseFind(u'\\');
    if (slash < 0 || slash + 1 == path.GetLength()) return false;
    if (!QxFs::IsFolder(path.Left(slash + 1))) return false;
    return QxFs::WriteAtomic(path, text.ToUtf8());
}
