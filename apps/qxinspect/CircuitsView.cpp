// qxinspect circuits FILE: the circuits of a primary diagram as CCir1Attrubute records, each with what
// QxGetCircuitBom gives for each of its handles (null for a handle that is no block reference).
#include "ReaderViewSupport.h"
#include "Views.h"
#include "drawing/access/QxDwgObjects.h"
#include "drawing/access/WorkingDatabaseScope.h"
#include "drawing/primary/CircuitBom.h"
#include "drawing/primary/PrimaryCircuits.h"
#include "platform/host/Documents.h"

namespace {

// Frees the records however the view ends.
struct CircuitsHolder {
    CCir1AttrubuteArray circuits;
    ~CircuitsHolder() { QxFreeCircuits(circuits); }
};

ReaderJson circuitBomJson(AcDbDatabase* database, const CString& handle) {
    AcDbObjectId id;
    if (!QxHandleToId(database, handle, id)) return nullptr;
    AcDbObjectPointer<AcDbBlockReference> reference(id, AcDb::kForRead);
    if (!reference) return nullptr;
    CStringArray types, codes, names, counts, prices, newAddInfo;
    const bool result = QxGetCircuitBom(reference.get(), types, codes, names, counts, prices, newAddInfo);
    return {{"result", result},
            {"types", StringsJson(types)},
            {"codes", StringsJson(codes)},
            {"names", StringsJson(names)},
            {"counts", StringsJson(counts)},
            {"prices", StringsJson(prices)},
            {"newAddInfo", StringsJson(newAddInfo)}};
}

ReaderJson circuitJson(AcDbDatabase* database, const CCir1Attrubute& circuit) {
    ReaderJson paths = ReaderJson::array();
    for (const CString& path : circuit.DwgPaths) paths.push_back(NativePathText(path));
    ReaderJson flags = ReaderJson::array();
    for (const int flag : circuit.DwgFlags) flags.push_back(flag);
    ReaderJson boms = ReaderJson::array();
    for (const CString& handle : circuit.Handles) boms.push_back(circuitBomJson(database, handle));
    return {{"No", circuit.No.ToUtf8()},
            {"GroupCode", circuit.GroupCode.ToUtf8()},
            {"Use", circuit.Use.ToUtf8()},
            {"Type", circuit.Type.ToUtf8()},
            {"Cir1Voltage", circuit.Cir1Voltage.ToUtf8()},
            {"Cir2Voltage", circuit.Cir2Voltage.ToUtf8()},
            {"MuXianType", circuit.MuXianType.ToUtf8()},
            {"TankCirNo", circuit.TankCirNo.ToUtf8()},
            {"CabinetOrder", circuit.CabinetOrder.ToUtf8()},
            {"RatedCurrent", circuit.RatedCurrent.ToUtf8()},
            {"CarAssembly1", circuit.CarAssembly1.ToUtf8()},
            {"CarAssembly2", circuit.CarAssembly2.ToUtf8()},
            {"CabinetAssembly", circuit.CabinetAssembly.ToUtf8()},
            {"CircuitName", circuit.CircuitName.ToUtf8()},
            {"CircuitPower", circuit.CircuitPower.ToUtf8()},
            {"SecondaryDrawings", NativePathListText(circuit.SecondaryDrawings)},
            {"DwgPaths", paths},
            {"DwgFlags", flags},
            {"Handles", StringsJson(circuit.Handles)},
            {"bom", boms}};
}

int showCircuits(const std::string& file) {
    const CString path = DrawingArgumentPath(file);
    const QxDwgDatabase drawing(path, 1);
    if (!drawing) return ComplainUnreadable(file);
    CircuitsHolder held;
    ReaderJson circuits = ReaderJson::array();
    {
        const WorkingDatabaseScope working(drawing.get());
        QxGetPrimaryCircuits(path, 1, held.circuits);
        for (const CCir1Attrubute* circuit : held.circuits) circuits.push_back(circuitJson(drawing.get(), *circuit));
    }
    return PrintReaderJson({{"file", NativePathText(path)}, {"circuits", circuits}});
}

const bool registered = RegisterInspectView({
    "circuits",
    "The circuits of a primary diagram (QxGetPrimaryCircuits) with the BOM of each block (QxGetCircuitBom)",
    DrawingViewSetup(showCircuits),
});

} // namespace
