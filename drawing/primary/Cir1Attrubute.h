// CCir1Attrubute: one circuit of a primary diagram, read from the xdata of its block references.
#pragma once

#include "support/CArray.h"

class QX_API CCir1Attrubute {
public:
    // The cabinet and drawer position: "number(prefix)" when the stored value has a prefix.
    CString No;
    CString GroupCode;
    CString Use;
    CString Type;
    CString Cir1Voltage;
    CString Cir2Voltage;
    // Busbar type.
    CString MuXianType;
    CString TankCirNo;
    // From the row texts.
    CString CabinetOrder;
    CString RatedCurrent;
    CString CarAssembly1;
    CString CarAssembly2;
    CString CabinetAssembly;
    CString CircuitName;
    CString CircuitPower;
    // Paths of the circuit's secondary schematics joined by "|".
    CString SecondaryDrawings;
    // One entry per block reference of the circuit, the same index in each: the primary drawing's path,
    // the path-match mode given to the read, and the reference's handle.
    CStringArray DwgPaths;
    CArray<int> DwgFlags;
    CStringArray Handles;
};

// The array owns its records.
using CCir1AttrubuteArray = CArray<CCir1Attrubute*, CCir1Attrubute*>;

// Deletes every record and leaves the array empty with its storage released.
QX_API void QxFreeCircuits(CCir1AttrubuteArray& circuits);
