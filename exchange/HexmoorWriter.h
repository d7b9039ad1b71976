// The writer of Hexmoor.xml: one node of a project tree becomes a DOM document whose text is the file.
// Calling order: HMXmlCreateDocument, HMXmlWriteNode, HMXmlDocumentText, saving the text, releasing the document.
#pragma once

#include "exchange/dom/XmlDocument.h"
#include "project/ProjectTree.h"

// Replaces the document by a new one holding the declaration and an empty Hexmoor element. On failure a
// message box says so and the document is left empty.
QX_API void HMXmlCreateDocument(CXmlDocument& document);

// Appends the node's Node element to the Hexmoor element of a document fresh from HMXmlCreateDocument.
// False, with the document untouched, for a null node; else true. DOM failures pass out as CXmlDomError.
QX_API bool HMXmlWriteNode(const CXmlDocument& document, const HMProjectTree_INFO* node);

// The whole document serialised as one string. An empty document raises CXmlDomError.
QX_API void HMXmlDocumentText(const CXmlDocument& document, CString& text);
