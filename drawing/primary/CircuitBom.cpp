// Reading the BOM of a circuit block.
#include "drawing/primary/CircuitBom.h"

#include "drawing/access/QxDwgObjects.h"
#include "drawing/bom/BlockKinds.h"
#include "drawing/primary/CircuitKeys.h"
#include "drawing/title/TitleBlock.h"
#include "drawing/walk/EntityWalk.h"
#include "support/TextHelpers.h"
#include "support/XDataHelpers.h"

#include <cmath>

namespace {

struct CircuitBomColumns {
    CStringArray& types;
    CStringArray& codes;
    CStringArray& names;
    CStringArray& counts;
    CStringArray& prices;
    CStringArray& newAddInfo;
};

void readXRecordStrings(AcDbObject* object, const char16_t* entry, CStringArray& strings) {
    resbuf* chain = nullptr;
    if (!QxGetXRecordChain(object, entry, chain)) return;
    const ResbufPtr owned(chain);
    QxChainToStrings(chain, strings);
}

// The two xrecords of a reference or a marker; true when either holds anything.
bool readBomRecord(AcDbObject* object, CircuitBomColumns& columns) {
    readXRecordStrings(object, QX_CIRCUI1_NewAddInfo, columns.newAddInfo);
    CStringArray pairs;
    readXRecordStrings(object, QX_CIRCUI1_BOMRECORD, pairs);
    QxParseCircuitBomPairs(pairs, columns.types, columns.codes, columns.names, columns.counts, columns.prices);
    return !columns.newAddInfo.IsEmpty() || !pairs.IsEmpty();
}

// One row from a first-class symbol, unless it has neither type nor code.
void addSymbolRow(AcDbEntity* symbol, CircuitBomColumns& columns) {
    const CString type = QxGetSymbType(symbol);
    const CString code = QxGetSymbCode(symbol);
    if (type.IsEmpty() && code.IsEmpty()) return;
    columns.types.Add(type);
    columns.codes.Add(code);
    columns.names.Add(QxGetSymbName(symbol));
    columns.counts.Add(u"1");
    columns.prices.Add(CString());
}

// A marker that a scan added and that nothing has written a record to since.
bool isEmptyAddedMarker(AcDbEntity& marker) {
    return HasXData(&marker, QX_CIRCUIT1_ADDEDMARKER) && !QxHasXRecord(&marker, QX_CIRCUI1_BOMRECORD) &&
           !QxHasXRecord(&marker, QX_CIRCUI1_NewAddInfo);
}

// The first marker's record when the definition has a marker, else a row per nested first-class symbol.
// An empty marker that a scan added is passed over: otherwise every later circuit of the block, in this
// scan and the next, would lose its nested parts.
void readBlockDefinition(AcDbObjectId block, CircuitBomColumns& columns) {
    bool markerFound = false;
    const bool opened = QxWalkBlockRecord(block, [&](AcDbEntity& entity) {
        AcGePoint3d centre;
        if (!QxIsCircuitMarker(&entity, centre) || isEmptyAddedMarker(entity)) return WalkStep::Continue;
        readBomRecord(&entity, columns);
        markerFound = true;
        return WalkStep::Stop;
    });
    if (!opened || markerFound) return;
    QxWalkBlockRecord(block, [&](AcDbEntity& entity) {
        if (QxAsBlockReference(&entity) != nullptr) addSymbolRow(&entity, columns);
        return WalkStep::Continue;
    });
}

bool carriesMarker(AcDbBlockReference* reference) {
    if (QxIsTitleBlock(reference)) return false;
    switch (QxClassifyBlock(reference)) {
    case kFirstClassSymbol:
    case kSecondClassSymbol:
    case kAnonymousMulti:
    case kAnonymousPart2Lib: return false;
    default: return true;
    }
}

} // namespace

void QxParseCircuitBomPairs(const CStringArray& pairs, CStringArray& types, CStringArray& codes,
                            CStringArray& names, CStringArray& counts, CStringArray& prices) {
    for (int i = 0; i + 1 < pairs.GetSize(); i += 2) {
        const CString& key = pairs[i];
        const CString& value = pairs[i + 1];
        if (key == u"型号") types.Add(value);
        else if (key == u"编码") codes.Add(value);
        else if (key == u"名称") names.Add(value);
        else if (key == u"单价") prices.Add(value);
        else if (key == u"数量") counts.Add(IsDigitString(value) ? value : CString(u"1"));
    }
}

bool QxGetCircuitBom(AcDbBlockReference* reference, CStringArray& types, CStringArray& codes,
                     CStringArray& names, CStringArray& counts, CStringArray& prices, CStringArray& newAddInfo) {
    types.RemoveAll();
    codes.RemoveAll();
    names.RemoveAll();
    counts.RemoveAll();
    newAddInfo.RemoveAll();
    if (reference == nullptr) return false;
    const bool result = carriesMarker(reference);
    CircuitBomColumns columns{types, codes, names, counts, prices, newAddInfo};

    // An empty record on the reference still counts: the definition is then not consulted.
    if (!readBomRecord(reference, columns) && !QxHasXRecord(reference, QX_CIRCUI1_BOMRECORD))
        readBlockDefinition(reference->blockTableRecord(), columns);
    if (types.IsEmpty()) addSymbolRow(reference, columns);

    for (CString& type : types) {
        CString replaced;
        ReplaceRootSign(type, replaced);
        type = replaced;
    }
    while (prices.GetSize() > types.GetSize()) prices.RemoveAt(prices.GetUpperBound());
    while (prices.GetSize() < types.GetSize()) prices.Add(CString());
    return result;
}

bool QxIsCircuitMarker(AcDbEntity* entity, AcGePoint3d& centre) {
    const AcDbPolyline* polyline = AcDbPolyline::cast(entity);
    if (polyline == nullptr || polyline->numVerts() != 2 || !polyline->isClosed()) return false;
    double bulge0 = 0.0;
    double bulge1 = 0.0;
    polyline->getBulgeAt(0, bulge0);
    polyline->getBulgeAt(1, bulge1);
    // One-sided on purpose: any bulge below 1.1 in magnitude passes.
    if (!(std::fabs(bulge0) - 1.0 < 0.1) && !(std::fabs(bulge1) - 1.0 < 0.1)) return false;
    AcGePoint2d p0;
    AcGePoint2d p1;
    polyline->getPointAt(0, p0);
    polyline->getPointAt(1, p1);
    centre = AcGePoint3d{(p0.x + p1.x) / 2.0, (p0.y + p1.y) / 2.0, 0.0};
    const double chord = std::hypot(p1.x - p0.x, p1.y - p0.y);
    return std::fabs(chord - 1.0) < 0.1;
}
