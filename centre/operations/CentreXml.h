// The XML blocks the centre hands out with its nodes: a device's rows as a cabinet element with one product
// element per row, and the NewDataSet element that describes the product fields. Built here with pugixml,
// read by the module's Hexmoor.xml reader.
#pragma once

#include "centre/operations/CentreStore.h"

// <cabinet ID=".." Name=".." Revision=".."> with primary rows first, then secondary ones, each in its order.
QX_API CString MakeCabinetXml(const CString& nodeId, const CString& name, int revision, const std::vector<CentreRow>& rows);
QX_API CString MakeDataSchemaXml();
