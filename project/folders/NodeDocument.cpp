// The three steps of saving a node: compose the document, take its text, let the client write the file.
#include "project/folders/NodeDocument.h"

#include "exchange/HexmoorWriter.h"
#include "platform/host/HostOutput.h"
#include "support/FileSystem.h"

void HMSaveNodeDocument(CHexmoorInteFace& client, const CString& folder, const HMProjectTree_INFO* node) {
    const CString path = folder + u"Hexmoor.xml";
    try {
        CXmlDocument document;
        HMXmlCreateDocument(document);
        if (!HMXmlWriteNode(document, node)) return;
        CString text;
        HMXmlDocumentText(document, text);
        client.saveXml(path, text);
    } catch (const CXmlDomError& error) {
        acutPrintf(u"\n%s未能写入：%s\n", QxFs::ToNativeText(path), error.ErrorMessage());
    }
}
