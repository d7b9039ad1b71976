// The BOM rows of a device's Hexmoor.xml: the product elements of its cabinet block.
#pragma once

#include "exchange/dom/XmlDocument.h"
#include "project/ProjectTree.h"

// Appends the document's rows to the node's m_arrPrimaryBom and m_arrSecondaryBom, without clearing them.
// Child rows are dropped; an attribute missing from a product reads as empty text. A document never created
// raises CXmlDomError: callers reach this only once a document stands.
QX_API void HMXmlReadProducts(const CXmlDocument& document, HMProjectTree_INFO* node);
