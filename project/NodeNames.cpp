// Refusing node names that would reach outside their folder or that cannot become this node's files.
#include "project/NodeNames.h"

#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"
#include "support/PrintableText.h"

namespace {

// The longest file name and path the file system takes, in bytes of the names as stored (UTF-8).
constexpr size_t kLongestFileName = 255;
constexpr size_t kLongestPath = 4095;
// A node's longest file: its .itm or .prj ("Hexmoor.xml" and "图纸.DWG" are shorter still).
constexpr size_t kExtensionBytes = 4;

bool isReservedCharacter(char16_t ch) {
    return CString(u"\\/:*?\"<>|").Find(ch) >= 0;
}

} // namespace

bool HMIsSafeNodeName(const CString& name) {
    if (name.IsEmpty() || name == u"." || name == u".." || QxHasControlCharacter(name)) return false;
    for (const char16_t ch : name.str())
        if (isReservedCharacter(ch)) return false;
    return true;
}

CString HMNodeNameProblem(const CString& parentFolder, const CString& name) {
    if (!HMIsSafeNodeName(name)) return u"名称不能为空、“.”或“..”，不能含控制字符及 \\ / : * ? \" < > |";
    const size_t nameBytes = name.ToUtf8().size();
    if (nameBytes + kExtensionBytes > kLongestFileName)
        return QxFormat(u"名称有%d字节，加上扩展名后超过文件名%d字节的上限", static_cast<int>(nameBytes),
                        static_cast<int>(kLongestFileName));
    // The node's .itm or .prj inside its own folder.
    const size_t pathBytes = parentFolder.ToUtf8().size() + 2 * nameBytes + 1 + kExtensionBytes;
    if (pathBytes > kLongestPath)
        return QxFormat(u"其文件的路径有%d字节，超过%d字节的上限", static_cast<int>(pathBytes), static_cast<int>(kLongestPath));
    return CString();
}

CString HMPrintableNodeName(const CString& name) { return QxPrintable(name); }

bool HMRefuseUnsafeNodeName(const CString& parentFolder, const CString& name) {
    const CString problem = HMNodeNameProblem(parentFolder, name);
    if (problem.IsEmpty()) return false;
    const CString message = QxFormat(u"名称“%s”不能用作%s中的文件夹名（%s），已跳过该节点及其下级！",
                                     HMPrintableNodeName(name), QxFs::ToNativeText(parentFolder), problem);
    acutPrintf(u"\n%s\n", message);
    return true;
}
