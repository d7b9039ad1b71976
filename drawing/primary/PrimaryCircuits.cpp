// Reading the circuits of a primary diagram.
#include "drawing/primary/PrimaryCircuits.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/bom/BlockKinds.h"
#include "drawing/primary/CircuitKeys.h"
#include "drawing/primary/CircuitValues.h"
#include "drawing/primary/SecondaryDrawingList.h"
#include "drawing/walk/EntityWalk.h"
#include "platform/host/Documents.h"
#include "support/FileUtils.h"
#include "support/XDataHelpers.h"

#include <memory>
#include <unordered_map>

namespace {

CString readAttribute(const AcDbEntity& entity, const char16_t* application) {
    CString value;
    GetXDataValue(&entity, application, 1000, value);
    return value;
}

void addReference(CCir1Attrubute& circuit, const CString& handle, const CString& path, int flag) {
    circuit.DwgPaths.Add(path);
    circuit.DwgFlags.Add(flag);
    circuit.Handles.Add(handle);
}

// The identity of a circuit: number and group code exactly, use, type, voltages and busbar ignoring case.
// Each part is prefixed with its length so that no two identities share a key.
CString identityOf(const CCir1Attrubute& circuit) {
    CString key;
    auto add = [&key](CString part, bool ignoringCase) {
        if (ignoringCase) part.MakeUpper();
        key += CString(std::to_string(part.GetLength())) + u":" + part;
    };
    add(circuit.No, false);
    add(circuit.GroupCode, false);
    add(circuit.Use, true);
    add(circuit.Type, true);
    add(circuit.Cir1Voltage, true);
    add(circuit.Cir2Voltage, true);
    add(circuit.MuXianType, true);
    return key;
}

// Fills the fields that come from the row texts; returns the candidate for the secondary drawings.
void readRows(const AcDbEntity& entity, CCir1Attrubute& circuit, CString& secondary) {
    const ResbufPtr chain(entity.xData(QX_CIRCUIT1_EXATTRIBUTE));
    for (const resbuf* item = chain.get(); item != nullptr; item = item->rbnext) {
        if (item->restype != 1000 || item->resval.rstring == nullptr) continue;
        CircuitRow row;
        if (!QxParseCircuitRow(item->resval.rstring, row)) continue;
        const CString& name = row.name;
        if (name.Contains(u"柜排列")) circuit.CabinetOrder = row.value;
        else if (name.Contains(u"额定电流")) circuit.RatedCurrent = row.value;
        else if (name.Contains(u"回路名称")) circuit.CircuitName = row.value;
        else if (name.Contains(u"回路功率")) circuit.CircuitPower = row.value;
        else if (name.EqualsNoCase(u"车总装") || name.EqualsNoCase(u"车总装号")) circuit.CarAssembly1 = row.value;
        else if (name.EqualsNoCase(u"车总装号1") || name.EqualsNoCase(u"车总装1")) circuit.CarAssembly1 = row.value;
        else if (name.EqualsNoCase(u"车总装号2") || name.EqualsNoCase(u"车总装2")) circuit.CarAssembly2 = row.value;
        else if (name.Contains(u"柜总装")) circuit.CabinetAssembly = row.value;
        else if (secondary.IsEmpty() && name.Contains(u"二次原理图")) secondary = row.annotationOrValue;
    }
}

class CircuitReader {
public:
    CircuitReader(CString path, int flag, CCir1AttrubuteArray& circuits)
        : m_path(std::move(path)), m_flag(flag), m_circuits(circuits), m_secondary(m_path) {
        // Records already in the array take part in the search, the first of an identity winning.
        for (int i = 0; i < circuits.GetSize(); ++i)
            if (circuits[i] != nullptr) m_firstOfIdentity.emplace(identityOf(*circuits[i]), i);
    }

    void read(const AcDbEntity& entity) {
        const CString handle = entity.objectHandle().text();
        auto circuit = std::make_unique<CCir1Attrubute>();
        circuit->No = QxCircuitNumber(readAttribute(entity, QX_Circuit1_No));
        if (circuit->No.IsEmpty()) {
            readUnnumbered(entity, handle, std::move(circuit));
            return;
        }
        circuit->GroupCode = QxCircuitValue(readAttribute(entity, QX_Circuit1_GroupCode));
        circuit->Use = QxCircuitValue(readAttribute(entity, QX_Circuit1_Use));
        circuit->Type = QxCircuitValue(readAttribute(entity, QX_Circuit1_Type));
        circuit->Cir1Voltage = QxCircuitValue(readAttribute(entity, QX_Circuit1_Cir1Voltage));
        const CString cir2Voltage = readAttribute(entity, QX_Circuit1_Cir2Voltage);
        circuit->Cir2Voltage = QxCircuitValue(cir2Voltage);
        circuit->MuXianType = QxCircuitValue(readAttribute(entity, QX_Circuit1_MuXianType));
        circuit->TankCirNo = QxCircuitValue(readAttribute(entity, QX_Circuit1_TankCirNo));
        CString secondary = QxCircuitAnnotation(cir2Voltage);
        readRows(entity, *circuit, secondary);

        // The first entity of a circuit decides its rows and its secondary drawings.
        const CString identity = identityOf(*circuit);
        if (const auto found = m_firstOfIdentity.find(identity); found != m_firstOfIdentity.end()) {
            addReference(*m_circuits[found->second], handle, m_path, m_flag);
            return;
        }
        if (!secondary.IsEmpty() && !m_secondary.Exists(secondary)) secondary = m_secondary.Resolve(secondary);
        circuit->SecondaryDrawings = secondary;
        addReference(*circuit, handle, m_path, m_flag);
        m_firstOfIdentity.emplace(identity, m_circuits.Add(circuit.release()));
    }

private:
    void readUnnumbered(const AcDbEntity& entity, const CString& handle, std::unique_ptr<CCir1Attrubute> circuit) {
        if (readAttribute(entity, QX_Circuit1_Path).IsEmpty()) return;
        if (AcDbBlockReference::cast(&entity) == nullptr || HasXData(&entity, QX_SYMB1_LABEL)) return;
        addReference(*circuit, handle, m_path, m_flag);
        m_circuits.Add(circuit.release());
    }

    const CString m_path;
    const int m_flag;
    CCir1AttrubuteArray& m_circuits;
    SecondaryDrawingFinder m_secondary;
    std::unordered_map<CString, int> m_firstOfIdentity;
};

} // namespace

void QxGetPrimaryCircuits(CString path, int flag, CCir1AttrubuteArray& circuits) {
    CircuitReader reader(std::move(path), flag, circuits);
    QxWalkModelSpace(acdbHostApplicationServices()->workingDatabase(), [&reader](AcDbEntity& entity) {
        reader.read(entity);
        return WalkStep::Continue;
    });
}
