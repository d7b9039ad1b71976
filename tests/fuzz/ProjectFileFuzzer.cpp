// A device's .prj read, then rewritten by the two operations that edit notes: the cabinet notes brought
// in line with a node, and notes put under the first line. Each edit starts from the input as given.
#include "FuzzSupport.h"

#include "project/ProjectFiles.h"

namespace {

constexpr const char* kPrjFile = "K01.prj";

void makeDevice(HMProjectTree_INFO& node) {
    node.m_strName = u"K01";
    node.m_strType = u"0";
    node.m_strPath = fuzz::ScratchLogicFolder();
    node.m_strCirNo = u"1";
    node.m_strCirName = u"进线柜";
    node.m_strCirType = u"KYN28";
    node.m_strCirSize = u"800*1500*2300";
}

PrjNoteList someNotes() {
    PrjNoteList notes;
    notes.Add(STRUCT_PRJ_NOTE{u"工程名称", u"变电站"});
    notes.Add(STRUCT_PRJ_NOTE{u"备注", u""});
    return notes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const CString path = fuzz::WriteScratchFile(kPrjFile, data, size);
    STRUCT_PRJ_FILE file;
    ReadProjectFile(path, file);

    HMProjectTree_INFO device;
    makeDevice(device);
    UpdateDeviceNotes(&device);
    ReadProjectFile(path, file);

    fuzz::WriteScratchFile(kPrjFile, data, size);
    InsertNotes(path, someNotes());
    ReadProjectFile(path, file);
    return 0;
}
