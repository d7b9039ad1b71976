// Refusing node names that would reach outside their folder or that no file system of the application takes.
#include "project/NodeNames.h"

#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"

namespace {

bool isControlCharacter(char16_t ch) { return ch < 0x20 || (ch >= 0x7F && ch <= 0x9F); }

bool isReservedCharacter(char16_t ch) {
    return CString(u"\\/:*?\"<>|").Find(ch) >= 0;
}

} // namespace

bool HMIsSafeNodeName(const CString& name) {
    if (name.IsEmpty() || name == u"." || name == u"..") return false;
    for (const char16_t ch : name.str())
        if (isControlCharacter(ch) || isReservedCharacter(ch)) return false;
    return true;
}

CString HMPrintableNodeName(const CString& name) {
    static constexpr char16_t kHex[] = u"0123456789ABCDEF";
    CString shown;
    for (const char16_t ch : name.str()) {
        if (!isControlCharacter(ch)) {
            shown += ch;
            continue;
        }
        shown += u"\\x";
        shown += kHex[(ch >> 4) & 0xF];
        shown += kHex[ch & 0xF];
    }
    return shown;
}

bool HMRefuseUnsafeNodeName(const CString& parentFolder, const CString& name) {
    if (HMIsSafeNodeName(name)) return false;
    const CString message = QxFormat(
        u"名称“%s”不能用作%s中的文件夹名（名称不能为空、“.”或“..”，不能含控制字符及 \\ / : * ? \" < > |），"
        u"已跳过该节点及其下级！",
        HMPrintableNodeName(name), QxFs::ToNativeText(parentFolder));
    acutPrintf(u"\n%s\n", message);
    return true;
}
