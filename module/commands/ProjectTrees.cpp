// Reading a project's root from its document.
#include "module/commands/ProjectTrees.h"

#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"

LocalTree ReadProjectRoot(const CString& documentPath, CXmlDocument& document) {
    auto tree = std::make_unique<HMProjectTree_INFO>();
    HMXmlCreateDocument(document);
    HMXmlLoadFile(document, documentPath);
    HMXmlReadNode(document, tree.get());
    return tree;
}
