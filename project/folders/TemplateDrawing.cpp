// Composing the template drawing as DXF: tables, the title block's definition, model space, and the objects
// that hold the title block's cell table.
#include "project/folders/TemplateDrawing.h"

#include "support/FileSystem.h"

#include <cstdio>
#include <initializer_list>
#include <utility>
#include <vector>

namespace {

// The applications whose xdata marks a block reference as a title block.
constexpr const char* kTitleApps[] = {"HORSIZE_OF_DRAWING", "VERSIZE_OF_DRAWING", "HORNUM_OF_TABLE",
                                      "VERNUM_OF_TABLE", "HORBEGIN_OF_TABLE"};
constexpr const char* kTitleBlock = "QX_TITLE_A3";

// The title block is 180 by 40 units, inserted at the lower right of the A3 frame.
constexpr double kTitleX = 235.0;
constexpr double kTitleY = 5.0;

// Text for a DXF of code page ANSI_936 before R2007: ASCII as it is, every other character as \U+XXXX.
std::string dxfText(const CString& text) {
    std::string out;
    for (const char16_t ch : text.str()) {
        if (ch < 0x80) {
            out += static_cast<char>(ch);
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\U+%04X", static_cast<unsigned>(ch));
        out += escape;
    }
    return out;
}

class DxfWriter {
public:
    void tag(int code, const std::string& value) {
        char codeText[16];
        std::snprintf(codeText, sizeof codeText, "%3d", code);
        m_text += codeText;
        m_text += "\r\n";
        m_text += value;
        m_text += "\r\n";
    }
    void tag(int code, const char* value) { tag(code, std::string(value)); }
    void tag(int code, const CString& value) { tag(code, dxfText(value)); }
    void tag(int code, int value) { tag(code, std::to_string(value)); }
    void real(int code, double value) {
        char text[32];
        std::snprintf(text, sizeof text, "%.4f", value);
        tag(code, std::string(text));
    }
    void point(int code, double x, double y) {
        real(code, x);
        real(code + 10, y);
        real(code + 20, 0.0);
    }
    // Handles are upper-case hexadecimal, handed out in order.
    std::string newHandle() {
        char text[16];
        std::snprintf(text, sizeof text, "%X", m_nextHandle++);
        return text;
    }
    unsigned nextHandle() const { return m_nextHandle; }
    std::string text() && { return std::move(m_text); }

private:
    std::string m_text;
    unsigned m_nextHandle = 0x20;
};

// Handles fixed up front, since tables, blocks and objects point at one another.
struct Handles {
    std::string rootDictionary, groupDictionary, layoutDictionary, modelLayout, paperLayout;
    std::string modelRecord, paperRecord, titleRecord, titleReference, titleDictionary, titleXrecord;
};

void beginSection(DxfWriter& dxf, const char* name) {
    dxf.tag(0, "SECTION");
    dxf.tag(2, name);
}

void endSection(DxfWriter& dxf) { dxf.tag(0, "ENDSEC"); }

void beginTable(DxfWriter& dxf, const char* name, int count) {
    dxf.tag(0, "TABLE");
    dxf.tag(2, name);
    dxf.tag(5, dxf.newHandle());
    dxf.tag(330, "0");
    dxf.tag(100, "AcDbSymbolTable");
    dxf.tag(70, count);
}

void tableRecord(DxfWriter& dxf, const char* type, const char* subclass, const char* name) {
    dxf.tag(0, type);
    dxf.tag(5, dxf.newHandle());
    dxf.tag(100, "AcDbSymbolTableRecord");
    dxf.tag(100, subclass);
    dxf.tag(2, name);
    dxf.tag(70, 0);
}

void writeHeader(DxfWriter& dxf, unsigned handleSeed) {
    beginSection(dxf, "HEADER");
    dxf.tag(9, "$ACADVER");
    dxf.tag(1, "AC1015");
    dxf.tag(9, "$DWGCODEPAGE");
    dxf.tag(3, "ANSI_936");
    dxf.tag(9, "$INSUNITS");
    dxf.tag(70, 4);
    dxf.tag(9, "$EXTMIN");
    dxf.point(10, 0.0, 0.0);
    dxf.tag(9, "$EXTMAX");
    dxf.point(10, 420.0, 297.0);
    dxf.tag(9, "$HANDSEED");
    char seed[16];
    std::snprintf(seed, sizeof seed, "%X", handleSeed);
    dxf.tag(5, seed);
    endSection(dxf);
    beginSection(dxf, "CLASSES");
    endSection(dxf);
}

void writeTables(DxfWriter& dxf, const Handles& handles) {
    beginSection(dxf, "TABLES");
    beginTable(dxf, "VPORT", 0);
    dxf.tag(0, "ENDTAB");

    beginTable(dxf, "LTYPE", 3);
    for (const char* name : {"ByBlock", "ByLayer", "Continuous"}) {
        tableRecord(dxf, "LTYPE", "AcDbLinetypeTableRecord", name);
        dxf.tag(3, name[0] == 'C' ? "Solid line" : "");
        dxf.tag(72, 65);
        dxf.tag(73, 0);
        dxf.real(40, 0.0);
    }
    dxf.tag(0, "ENDTAB");

    beginTable(dxf, "LAYER", 1);
    tableRecord(dxf, "LAYER", "AcDbLayerTableRecord", "0");
    dxf.tag(62, 7);
    dxf.tag(6, "Continuous");
    dxf.tag(0, "ENDTAB");

    beginTable(dxf, "STYLE", 1);
    tableRecord(dxf, "STYLE", "AcDbTextStyleTableRecord", "Standard");
    dxf.real(40, 0.0);
    dxf.real(41, 1.0);
    dxf.real(50, 0.0);
    dxf.tag(71, 0);
    dxf.real(42, 2.5);
    dxf.tag(3, "txt");
    dxf.tag(4, "");
    dxf.tag(0, "ENDTAB");

    beginTable(dxf, "VIEW", 0);
    dxf.tag(0, "ENDTAB");
    beginTable(dxf, "UCS", 0);
    dxf.tag(0, "ENDTAB");

    beginTable(dxf, "APPID", 1 + static_cast<int>(std::size(kTitleApps)));
    tableRecord(dxf, "APPID", "AcDbRegAppTableRecord", "ACAD");
    for (const char* app : kTitleApps) tableRecord(dxf, "APPID", "AcDbRegAppTableRecord", app);
    dxf.tag(0, "ENDTAB");

    beginTable(dxf, "DIMSTYLE", 1);
    dxf.tag(100, "AcDbDimStyleTable");
    dxf.tag(0, "DIMSTYLE");
    dxf.tag(105, dxf.newHandle());
    dxf.tag(100, "AcDbSymbolTableRecord");
    dxf.tag(100, "AcDbDimStyleTableRecord");
    dxf.tag(2, "Standard");
    dxf.tag(70, 0);
    dxf.tag(0, "ENDTAB");

    beginTable(dxf, "BLOCK_RECORD", 3);
    const std::pair<const std::string*, const char*> records[] = {
        {&handles.modelRecord, "*Model_Space"}, {&handles.paperRecord, "*Paper_Space"}, {&handles.titleRecord, kTitleBlock}};
    for (const auto& [handle, name] : records) {
        dxf.tag(0, "BLOCK_RECORD");
        dxf.tag(5, *handle);
        dxf.tag(100, "AcDbSymbolTableRecord");
        dxf.tag(100, "AcDbBlockTableRecord");
        dxf.tag(2, name);
        if (handle == &handles.modelRecord) dxf.tag(340, handles.modelLayout);
        if (handle == &handles.paperRecord) dxf.tag(340, handles.paperLayout);
    }
    dxf.tag(0, "ENDTAB");
    endSection(dxf);
}

void entityStart(DxfWriter& dxf, const char* type, const std::string& owner, bool paperSpace = false) {
    dxf.tag(0, type);
    dxf.tag(5, dxf.newHandle());
    dxf.tag(330, owner);
    dxf.tag(100, "AcDbEntity");
    if (paperSpace) dxf.tag(67, 1);
    dxf.tag(8, "0");
}

void line(DxfWriter& dxf, const std::string& owner, double x1, double y1, double x2, double y2) {
    entityStart(dxf, "LINE", owner);
    dxf.tag(100, "AcDbLine");
    dxf.point(10, x1, y1);
    dxf.point(11, x2, y2);
}

void rectangle(DxfWriter& dxf, const std::string& owner, double x1, double y1, double x2, double y2) {
    entityStart(dxf, "LWPOLYLINE", owner);
    dxf.tag(100, "AcDbPolyline");
    dxf.tag(90, 4);
    dxf.tag(70, 1);
    for (const auto& [x, y] : {std::pair{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}}) {
        dxf.real(10, x);
        dxf.real(20, y);
    }
}

void text(DxfWriter& dxf, const std::string& owner, double x, double y, double height, const CString& value) {
    entityStart(dxf, "TEXT", owner);
    dxf.tag(100, "AcDbText");
    dxf.point(10, x, y);
    dxf.real(40, height);
    dxf.tag(1, value);
    dxf.tag(7, "Standard");
    dxf.tag(100, "AcDbText");
}

void blockFrame(DxfWriter& dxf, const std::string& record, const char* name, bool paperSpace) {
    entityStart(dxf, "BLOCK", record, paperSpace);
    dxf.tag(100, "AcDbBlockBegin");
    dxf.tag(2, name);
    dxf.tag(70, 0);
    dxf.point(10, 0.0, 0.0);
    dxf.tag(3, name);
    dxf.tag(1, "");
}

void blockEnd(DxfWriter& dxf, const std::string& record, bool paperSpace) {
    entityStart(dxf, "ENDBLK", record, paperSpace);
    dxf.tag(100, "AcDbBlockEnd");
}

// The title block's lines and captions. Its cells: rows of 10 units, captions in the first 20 units, values
// from 20 to 90; the right part carries the application's name.
void writeBlocks(DxfWriter& dxf, const Handles& handles) {
    beginSection(dxf, "BLOCKS");
    blockFrame(dxf, handles.modelRecord, "*Model_Space", false);
    blockEnd(dxf, handles.modelRecord, false);
    blockFrame(dxf, handles.paperRecord, "*Paper_Space", true);
    blockEnd(dxf, handles.paperRecord, true);

    blockFrame(dxf, handles.titleRecord, kTitleBlock, false);
    const std::string& owner = handles.titleRecord;
    rectangle(dxf, owner, 0.0, 0.0, 180.0, 40.0);
    for (const double y : {10.0, 20.0, 30.0}) line(dxf, owner, 0.0, y, 90.0, y);
    line(dxf, owner, 20.0, 0.0, 20.0, 40.0);
    line(dxf, owner, 90.0, 0.0, 90.0, 40.0);
    const char16_t* captions[] = {u"日期", u"设计", u"图名", u"图号"};
    for (int row = 0; row < 4; ++row) text(dxf, owner, 3.0, row * 10.0 + 3.0, 3.5, captions[row]);
    text(dxf, owner, 110.0, 17.0, 5.0, u"Corvane");
    blockEnd(dxf, handles.titleRecord, false);
    endSection(dxf);
}

void writeEntities(DxfWriter& dxf, const Handles& handles) {
    beginSection(dxf, "ENTITIES");
    const std::string& model = handles.modelRecord;
    rectangle(dxf, model, 0.0, 0.0, 420.0, 297.0);
    rectangle(dxf, model, 25.0, 5.0, 415.0, 292.0);

    dxf.tag(0, "INSERT");
    dxf.tag(5, handles.titleReference);
    dxf.tag(102, "{ACAD_XDICTIONARY");
    dxf.tag(360, handles.titleDictionary);
    dxf.tag(102, "}");
    dxf.tag(330, model);
    dxf.tag(100, "AcDbEntity");
    dxf.tag(8, "0");
    dxf.tag(100, "AcDbBlockReference");
    dxf.tag(2, kTitleBlock);
    dxf.point(10, kTitleX, kTitleY);
    const std::pair<const char*, const char*> sizes[] = {{"HORSIZE_OF_DRAWING", "420"}, {"VERSIZE_OF_DRAWING", "297"},
                                                        {"HORNUM_OF_TABLE", "4"},     {"VERNUM_OF_TABLE", "2"},
                                                        {"HORBEGIN_OF_TABLE", "0"}};
    for (const auto& [app, value] : sizes) {
        dxf.tag(1001, app);
        dxf.tag(1000, value);
    }

    // The value of the name cell; the number cell stays empty for the person to fill in.
    text(dxf, model, kTitleX + 25.0, kTitleY + 23.0, 3.5, HM_TEMPLATE_DRAWING_NAME);
    endSection(dxf);
}

void dictionaryStart(DxfWriter& dxf, const std::string& handle, const std::string& owner) {
    dxf.tag(0, "DICTIONARY");
    dxf.tag(5, handle);
    dxf.tag(330, owner);
    dxf.tag(100, "AcDbDictionary");
    dxf.tag(281, 1);
}

void layout(DxfWriter& dxf, const std::string& handle, const std::string& owner, const char* name, int order,
            const std::string& record) {
    dxf.tag(0, "LAYOUT");
    dxf.tag(5, handle);
    dxf.tag(330, owner);
    dxf.tag(100, "AcDbPlotSettings");
    dxf.tag(1, "");
    dxf.tag(4, "A3");
    dxf.tag(6, "");
    dxf.tag(100, "AcDbLayout");
    dxf.tag(1, name);
    dxf.tag(70, 1);
    dxf.tag(71, order);
    dxf.point(10, 0.0, 0.0);
    dxf.point(11, 420.0, 297.0);
    dxf.point(12, 0.0, 0.0);
    dxf.point(14, 0.0, 0.0);
    dxf.point(15, 420.0, 297.0);
    dxf.real(146, 0.0);
    dxf.point(13, 0.0, 0.0);
    dxf.point(16, 1.0, 0.0);
    dxf.point(17, 0.0, 1.0);
    dxf.tag(76, 0);
    dxf.tag(330, record);
}

void writeObjects(DxfWriter& dxf, const Handles& handles) {
    beginSection(dxf, "OBJECTS");
    dictionaryStart(dxf, handles.rootDictionary, "0");
    dxf.tag(3, "ACAD_GROUP");
    dxf.tag(350, handles.groupDictionary);
    dxf.tag(3, "ACAD_LAYOUT");
    dxf.tag(350, handles.layoutDictionary);
    dictionaryStart(dxf, handles.groupDictionary, handles.rootDictionary);
    dictionaryStart(dxf, handles.layoutDictionary, handles.rootDictionary);
    dxf.tag(3, "Model");
    dxf.tag(350, handles.modelLayout);
    dxf.tag(3, "Layout1");
    dxf.tag(350, handles.paperLayout);
    layout(dxf, handles.modelLayout, handles.layoutDictionary, "Model", 0, handles.modelRecord);
    layout(dxf, handles.paperLayout, handles.layoutDictionary, "Layout1", 1, handles.paperRecord);

    // The title block's extension dictionary and its cell table: "name|X1|Y1|X2|Y2|param|param|value", the
    // rectangle relative to the insertion point, top edge before bottom edge.
    dictionaryStart(dxf, handles.titleDictionary, handles.titleReference);
    dxf.tag(3, "CORVANE_TITLE");
    dxf.tag(360, handles.titleXrecord);
    dxf.tag(0, "XRECORD");
    dxf.tag(5, handles.titleXrecord);
    dxf.tag(102, "{ACAD_REACTORS");
    dxf.tag(330, handles.titleDictionary);
    dxf.tag(102, "}");
    dxf.tag(330, handles.titleDictionary);
    dxf.tag(100, "AcDbXrecord");
    dxf.tag(280, 1);
    for (const char16_t* item : {u"$BEGINETITLE", u"A3", u"图号|20|40|90|30|0|0|", u"图名|20|30|90|20|0|0|",
                                 u"设计|20|20|90|10|0|0|", u"日期|20|10|90|0|0|0|", u"$ENDTITLE"})
        dxf.tag(1, CString(item));
    endSection(dxf);
}

} // namespace

std::string TemplateDrawingDxf() {
    DxfWriter body;
    Handles handles;
    for (std::string* handle : {&handles.rootDictionary, &handles.groupDictionary, &handles.layoutDictionary,
                                &handles.modelLayout, &handles.paperLayout, &handles.modelRecord, &handles.paperRecord,
                                &handles.titleRecord, &handles.titleReference, &handles.titleDictionary,
                                &handles.titleXrecord})
        *handle = body.newHandle();

    // The header names the next free handle, known only once the rest is written.
    writeTables(body, handles);
    writeBlocks(body, handles);
    writeEntities(body, handles);
    writeObjects(body, handles);
    body.tag(0, "EOF");

    DxfWriter header;
    writeHeader(header, body.nextHandle());
    return std::move(header).text() + std::move(body).text();
}

bool LayOutTemplateDrawing(const CString& installDir) {
    if (installDir.IsEmpty()) return false;
    const CString folder = installDir + u"Support\\TEMPLATE";
    const CString path = folder + u"\\图纸.DWG";
    if (QxFs::Exists(path)) return true;
    if (!QxFs::MakeFolders(folder)) return false;
    return QxFs::WriteAtomic(path, TemplateDrawingDxf());
}
