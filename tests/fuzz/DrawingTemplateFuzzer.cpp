// A template drawing whose texts the fuzzer writes: a title block with its cell table, head texts, a
// circuit block with its marker and BOM records, and a BOM table whose label cell carries part records,
// every key the readers look for in place and every string, MText body and xrecord line from the input.
// Then every reader above the model reads it as the extraction does. Raw drawing bytes rarely get this far.
#include "ReadEveryDrawingReader.h"
#include "FuzzSupport.h"

#include "drawing/bom/BlockKinds.h"
#include "drawing/bom/BomTableKeys.h"
#include "drawing/model/DrawingBuilder.h"
#include "drawing/parts/DwgLocation.h"
#include "drawing/primary/CircuitKeys.h"
#include "drawing/title/TitleBlock.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace {

class Filler {
public:
    Filler(const uint8_t* data, size_t size) : m_input(data, size) {}

    CString text() { return CString::FromUtf8(m_input.ConsumeRandomLengthString(512)); }
    // A text split into items at its line ends, as xrecords hold their lines.
    ResItems lines(short code) {
        ResItems items;
        const CString whole = text();
        int start = 0;
        for (int end = whole.Find(u'\n'); end >= 0; end = whole.Find(u'\n', start)) {
            items.push_back(ResItem::text(code, whole.Mid(start, end - start)));
            start = end + 1;
        }
        items.push_back(ResItem::text(code, whole.Mid(start)));
        return items;
    }
    AcGePoint3d point() {
        return {m_input.ConsumeFloatingPointInRange(-1e4, 1e4), m_input.ConsumeFloatingPointInRange(-1e4, 1e4), 0.0};
    }
    bool choice() { return m_input.ConsumeBool(); }
    int count(int most) { return m_input.ConsumeIntegralInRange(0, most); }

private:
    FuzzedDataProvider m_input;
};

void addTitleBlock(DrawingBuilder& builder, Filler& fill) {
    const AcDbObjectId block = builder.defineBlock(u"TITLE");
    builder.addLine({0, 0, 0}, {420, 297, 0}, block);
    const AcDbObjectId reference = builder.addInsert(block, fill.point());
    for (const char16_t* application : {u"X1", HORSIZE_OF_DRAWING, VERSIZE_OF_DRAWING, HORNUM_OF_TABLE, VERNUM_OF_TABLE})
        builder.setXDataStrings(reference, application, {fill.text()});
    builder.addXrecord(reference, CORVANE_TITLE, fill.lines(1));
    for (int i = fill.count(4); i > 0; --i) builder.addText(fill.text(), fill.point());
}

void addHead(DrawingBuilder& builder, Filler& fill) {
    for (int i = fill.count(4); i > 0; --i) {
        const AcDbObjectId text = fill.choice() ? builder.addText(fill.text(), fill.point())
                                                : builder.addMText(fill.text(), fill.point());
        builder.setXDataStrings(text, QX_SYS_HEAD_ITEMNAME, {fill.text()});
    }
}

void addCircuit(DrawingBuilder& builder, Filler& fill) {
    const AcDbObjectId block = builder.defineBlock(u"CIRCUIT");
    // The marker: a circle of diameter 1 drawn as a closed two-vertex polyline.
    const AcDbObjectId marker = builder.addPolyline({{0, 0, 1}, {1, 0, 1}}, true, block);
    builder.addXrecord(marker, QX_CIRCUI1_BOMRECORD, fill.lines(1));
    const AcDbObjectId symbol = builder.defineBlock(u"SYMBOL");
    builder.addLine({0, 0, 0}, {5, 5, 0}, symbol);
    const AcDbObjectId nested = builder.addInsert(symbol, {2, 2, 0}, block);
    for (const char16_t* key : {QX_SYMB1_LABEL, QX_SYMB1_TYPE, QX_SYMB1_CODE, QX_SYMB1_NAME})
        if (fill.choice()) builder.setXDataStrings(nested, key, {fill.text()});

    for (int i = 1 + fill.count(2); i > 0; --i) {
        const AcDbObjectId reference = builder.addInsert(block, fill.point());
        for (const char16_t* key : {QX_Circuit1_No, QX_Circuit1_Path, QX_Circuit1_GroupCode, QX_Circuit1_Use,
                                    QX_Circuit1_Type, QX_Circuit1_Cir1Voltage, QX_Circuit1_Cir2Voltage,
                                    QX_Circuit1_MuXianType, QX_Circuit1_TankCirNo})
            builder.setXDataStrings(reference, key, {fill.text()});
        builder.setXData(reference, QX_CIRCUIT1_EXATTRIBUTE, fill.lines(1000));
        if (fill.choice()) builder.addXrecord(reference, QX_CIRCUI1_BOMRECORD, fill.lines(1));
        if (fill.choice()) builder.addXrecord(reference, QX_CIRCUI1_NewAddInfo, fill.lines(1));
    }
}

// A cell linked both ways with its anchor.
void linkCell(DrawingBuilder& builder, Filler& fill, AcDbObjectId anchor, const char16_t* forward, const char16_t* back) {
    const AcDbObjectId cell = builder.addMText(fill.text(), fill.point());
    builder.setXDataLinks(anchor, forward, {cell});
    if (fill.choice()) builder.setXDataLinks(cell, back, {anchor});
}

void addBomTable(DrawingBuilder& builder, Filler& fill) {
    for (int i = 1 + fill.count(2); i > 0; --i) {
        const AcDbObjectId label = builder.addMText(fill.text(), fill.point());
        const AcDbObjectId type = builder.addMText(fill.text(), fill.point());
        builder.setXDataStrings(label, QXBOM_LABEL, {fill.text()});
        builder.setXDataStrings(type, QXBOM_TYPE, {fill.text()});
        builder.setXDataLinks(label, QXBOM_LABEL_TYPEHANDLE, {type});
        builder.setXDataLinks(type, QXBOM_TYPE_LABELHANDLE, {label});
        for (const char16_t* key : {QXBOM_CODE, QXBOM_PRICE, QXBOM_DEVICETYPE})
            builder.setXDataStrings(type, key, {fill.text()});
        linkCell(builder, fill, label, QXBOM_LABEL_NOHANDLE, QXBOM_NO_LABELHANDLE);
        linkCell(builder, fill, label, QXBOM_LABEL_NAMEHANDLE, QXBOM_NAME_LABELHANDLE);
        linkCell(builder, fill, label, QXBOM_LABEL_COUNTHANDLE, QXBOM_COUNT_LABELHANDLE);
        linkCell(builder, fill, label, QXBOM_LABEL_NOTEHANDLE, QXBOM_NOTE_LABELHANDLE);
        linkCell(builder, fill, label, QXBOM_LABEL_LOCATIONHANDLE, QXBOM_LOCATION_LABELHANDLE);
        linkCell(builder, fill, type, QXBOM_TYPE_NAMEHANDLE, QXBOM_NAME_TYPEHANDLE);
        linkCell(builder, fill, type, QXBOM_TYPE_COUNTHANDLE, QXBOM_COUNT_TYPEHANDLE);
        // The part records of the label cell.
        builder.addXrecord(label, QXBOM_LABEL, fill.lines(1));
        builder.addXrecord(label, u"QXBOM_COMPONENT", fill.lines(1));
    }
}

void addLocation(DrawingBuilder& builder, Filler& fill) {
    const AcDbObjectId dictionary = builder.namedDictionary(QX_DWG_DICITIONARY);
    builder.addXrecordTo(dictionary, QX_LOCATION_XRECORD, fill.lines(1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Filler fill(data, size);
    DrawingBuilder builder;
    addTitleBlock(builder, fill);
    addHead(builder, fill);
    addCircuit(builder, fill);
    addBomTable(builder, fill);
    addLocation(builder, fill);
    fuzz::ReadAsTheExtractionDoes(&builder.database(), fuzz::ScratchLogicFolder() + u"template.dwg");
    return 0;
}
