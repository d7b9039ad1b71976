// LocalData\HistoryData.txt read by the history store, every value asked for, then rewritten by a setter.
#include "FuzzSupport.h"

#include "settings/HistoryDataOprt.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::UseScratchAsInstallFolder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::WriteScratchFile("LocalData/HistoryData.txt", data, size);
    CHistoryDataOprt history;
    CString value;
    for (int i = -1; i <= history.m_arrData.GetSize(); ++i) history.GetData(i, value);
    history.SetDoubleData(size % 300, 2.5);  // the destructor rewrites the file
    return 0;
}
