// A usage file read by the plain-text XML class, as the login reads every QxCollect_*.xml.
#include "FuzzSupport.h"

#include "exchange/text/QxXmlTextDoc.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const CString path = fuzz::WriteScratchFile("QxCollect_fuzz.xml", data, size);
    CQxXmlTextDoc document;
    document.Load(path);
    CQxXmlTextDoc::UnescapeText(document.m_strDoc.c_str(), document.m_strDoc.GetLength());
    return 0;
}
