// The settings files of an install folder: awork.sys, the three kind lists and the two one-line files,
// each holding the input.
#include "FuzzSupport.h"

#include "settings/KindLists.h"
#include "settings/ReadAworkSys.h"
#include "settings/SettingsSession.h"

namespace {

constexpr const char* kSettingsFiles[] = {
    "LocalData/awork.sys", "Data/DZBDZLXFH.txt", "Data/DZBDXLXFH.txt",
    "Data/DZBHUILUFH.txt", "Data/DistLimit.txt", "Data/ErpOrCad.txt",
};

// Index i of every column is one line: columns of different lengths would mix lines up.
void readKinds(bool (*reader)(CKindColumns&)) {
    CKindColumns kinds;
    reader(kinds);
    const int size = kinds.GetSize();
    fuzz::Require(kinds.m_arrSymbol.GetSize() == size && kinds.m_arrWidth.GetSize() == size &&
                      kinds.m_arrRest.GetSize() == size,
                  "a kind list gives columns of one length");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::UseScratchAsInstallFolder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const char* file : kSettingsFiles) fuzz::WriteScratchFile(file, data, size);

    CSettingsSession session;
    CReadAworkSys settings;
    settings.Load(session);
    settings.GetValueByKeyAsIs(u"默认文字样式: ");
    session.GetDistLimit();
    session.GetErpOrCadMode();
    readKinds(ReadTerminalKinds);
    readKinds(ReadWireKinds);
    readKinds(ReadCircuitKinds);
    return 0;
}
