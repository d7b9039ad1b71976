// A Hexmoor.xml read as the commands read it: load, the node with its child stubs, and a device's rows.
#include "FuzzSupport.h"

#include "exchange/HexmoorProducts.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const CString path = fuzz::WriteScratchFile("Hexmoor.xml", data, size);
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlLoadFile(document, path);
    HMProjectTree_INFO node;
    HMXmlReadNode(document, &node);
    if (HMIsDeviceType(node.m_strType)) HMXmlReadProducts(document, &node);
    return 0;
}
