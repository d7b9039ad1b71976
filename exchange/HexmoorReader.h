// The reader of Hexmoor.xml: one level of a project tree, the node's own fields and a stub per child.
// Calling order: HMXmlCreateDocument, HMXmlLoadFile, HMXmlReadNode, for a device HMXmlReadProducts,
// then the release of the document.
#pragma once

#include "exchange/dom/XmlDocument.h"
#include "project/ProjectTree.h"

// Loads the file into the document, replacing its content. False when the file cannot be read or parsed;
// callers need not look, since such a document reads as a failed read below.
QX_API bool HMXmlLoadFile(CXmlDocument& document, const CString& path);

// Fills the node from the document. Failures (no Node, no NewDataSet, an attribute missing from an element
// that was found, a document never created) show a message box with the error's text and leave the node
// as far as it was filled. Always false: success shows only in the node's fields. Its children are not
// cleared first, so a node is read once.
QX_API bool HMXmlReadNode(const CXmlDocument& document, HMProjectTree_INFO* node);

// The same read, telling whether it went through: false where HMXmlReadNode shows its box.
QX_API bool HMXmlReadNodeWhole(const CXmlDocument& document, HMProjectTree_INFO* node);
