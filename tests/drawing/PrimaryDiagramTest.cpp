// Primary diagrams: the head table, the value and number rules, circuit records and their identity,
// the row texts, and the secondary drawings resolved in a moved project folder.
#include "ReaderDrawings.h"
#include "RecordTexts.h"
#include "common/TempFolder.h"
#include "drawing/bom/BlockKinds.h"
#include "drawing/primary/CircuitKeys.h"
#include "drawing/primary/CircuitValues.h"
#include "drawing/primary/PrimaryCircuits.h"
#include "drawing/primary/SecondaryDrawingList.h"
#include "drawing/primary/SysHead.h"
#include "platform/host/Documents.h"
#include "support/TextHelpers.h"

#include <gtest/gtest.h>

namespace {

const CString kPrimaryPath = u"\\projects\\站\\一次系统图.dwg";

struct CircuitAttributes {
    CString no = u"K01", group = u"＠G1", use = u"＠进线", type = u"＠KYN28", v1 = u"＠10kV", v2 = u"＠DC220V",
            busbar = u"＠TMY", tank = u"＠1";
};

class PrimaryDiagramTest : public testing::Test {
protected:
    void SetUp() override {
        m_block = DefineSquareBlock(b, u"PANEL");
        acdbHostApplicationServices()->setWorkingDatabase(&b.database());
    }
    void TearDown() override {
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
        QxFreeCircuits(circuits);
    }

    AcDbObjectId addCircuit(const CircuitAttributes& a, std::initializer_list<CString> rows = {}) {
        const AcDbObjectId panel = b.addInsert(m_block, {0, 0, 0});
        setAttributes(panel, a);
        if (rows.size() > 0) b.setXDataStrings(panel, QX_CIRCUIT1_EXATTRIBUTE, rows);
        return panel;
    }
    void setAttributes(AcDbObjectId entity, const CircuitAttributes& a) {
        for (const auto& [application, value] :
             {std::pair{QX_Circuit1_No, a.no}, {QX_Circuit1_GroupCode, a.group}, {QX_Circuit1_Use, a.use},
              {QX_Circuit1_Type, a.type}, {QX_Circuit1_Cir1Voltage, a.v1}, {QX_Circuit1_Cir2Voltage, a.v2},
              {QX_Circuit1_MuXianType, a.busbar}, {QX_Circuit1_TankCirNo, a.tank}})
            b.setXDataStrings(entity, application, {value});
    }
    void read(const CString& path = kPrimaryPath) { QxGetPrimaryCircuits(path, 1, circuits); }
    static CString handleOf(AcDbObjectId id) { return id.handle().text(); }

    DrawingBuilder b;
    AcDbObjectId m_block;
    CCir1AttrubuteArray circuits;
};

} // namespace

// The number, value and annotation rules are read whole through the circuit records below and the
// readers' fixtures; here, what those do not reach.
TEST(CircuitValuesTest, NumberWithoutDrawerAndRowTexts) {
    EXPECT_EQ(QxCircuitNumber(u"＠K03"), u"K03");
    CircuitRow row;
    ASSERT_TRUE(QxParseCircuitRow(u"p＠额定电流|||||1250A『note』|", row));
    EXPECT_EQ(row.value, u"1250A");
    EXPECT_FALSE(QxParseCircuitRow(u"＠|||值", row));
    EXPECT_FALSE(QxParseCircuitRow(u"名称||值", row));
}

TEST_F(PrimaryDiagramTest, HeadTextsByTheirLabels) {
    const AcDbObjectId primary = b.addText(u"一次额定电压: 10kV", {0, 0, 0});
    const AcDbObjectId busbar = b.addText(u"母线规格:TMY 3x(80x8)", {0, 0, 0});
    const AcDbObjectId secondaryOld = b.addText(u"二次额定电压:AC220V", {0, 0, 0});
    const AcDbObjectId secondary = b.addText(u"二次 额定电压 ：DC 110V", {0, 0, 0});
    b.addText(u"一次额定电压:35kV", {0, 0, 0});  // no head key
    const AcDbObjectId mtext = b.addMText(u"母线规格:X", {0, 0, 0});
    for (AcDbObjectId id : {primary, busbar, secondaryOld, secondary, mtext})
        b.setXDataStrings(id, QX_SYS_HEAD_ITEMNAME, {u""});

    // The last text of an item wins; a full-width colon is no ":".
    const HeadRead read = ReadHead(&b.database());
    EXPECT_EQ(read.text, u"1|111|10kV|TMY3x(80x8)|：DC110V");
    const HeadRead none = ReadHead(nullptr);
    EXPECT_EQ(none.text, u"0|000|||");
}

TEST_F(PrimaryDiagramTest, CircuitFieldsFromAttributesAndRows) {
    CircuitAttributes a;
    a.no = u"2＠K03『x』";
    a.group = u"G＠Group『g』";
    a.tank = u"＠7";
    const AcDbObjectId panel = addCircuit(
        a, {u"＠柜排列|||3", u"＠额定电流(A)|||1250", u"＠回路名称|||进线", u"＠回路功率|||500kW", u"＠车总装号|||C1",
            u"＠车总装2|||C2", u"＠柜总装|||G1", u"＠车总装号3|||dropped", u"no bars", u"＠|||empty name",
            u"＠回路名称|||later wins"});
    read();
    const CString fields = u"K03(2)|Group|进线|KYN28|10kV|DC220V|TMY|7|3|1250|C1|C2|G1|later wins|500kW||";
    EXPECT_EQ(RecordTexts(circuits), (std::vector<CString>{fields + kPrimaryPath + u"|1|" + handleOf(panel)}));

    // Records already in the array take part in the search of the next drawing.
    read(u"\\other\\copy.dwg");
    EXPECT_EQ(RecordTexts(circuits),
              (std::vector<CString>{fields + kPrimaryPath + u",\\other\\copy.dwg|11|" + handleOf(panel) + u"," + handleOf(panel)}));
}

TEST_F(PrimaryDiagramTest, IdentityIgnoresCaseOfTypeButNotOfNumberAndTheFirstEntityDecides) {
    CircuitAttributes a;
    const AcDbObjectId first = addCircuit(a, {u"＠回路名称|||first"});
    CircuitAttributes upper = a;
    upper.type = u"＠kyn28";
    upper.tank = u"＠9";
    const AcDbObjectId second = addCircuit(upper, {u"＠回路名称|||second"});
    CircuitAttributes otherNumber = a;
    otherNumber.no = u"k01";
    const AcDbObjectId third = addCircuit(otherNumber);
    CircuitAttributes otherGroup = a;
    otherGroup.group = u"＠g1";
    const AcDbObjectId fourth = addCircuit(otherGroup);
    read();
    const CString tail = u"|||||||||" + kPrimaryPath + u"|1|";
    EXPECT_EQ(RecordTexts(circuits),
              (std::vector<CString>{
                  u"K01|G1|进线|KYN28|10kV|DC220V|TMY|1||||||first|||" + kPrimaryPath + u"," + kPrimaryPath + u"|11|" +
                      handleOf(first) + u"," + handleOf(second),
                  u"k01|G1|进线|KYN28|10kV|DC220V|TMY|1" + tail + handleOf(third),
                  u"K01|g1|进线|KYN28|10kV|DC220V|TMY|1" + tail + handleOf(fourth)}));
}

TEST_F(PrimaryDiagramTest, UnnumberedBlocksWithAPathAndANumberedText) {
    const AcDbObjectId plain = b.addInsert(m_block, {0, 0, 0});
    b.setXDataStrings(plain, QX_Circuit1_Path, {u"C:\\x.dwg"});
    b.setXDataStrings(plain, QX_Circuit1_Use, {u"＠ignored"});
    const AcDbObjectId same = b.addInsert(m_block, {0, 0, 0});
    b.setXDataStrings(same, QX_Circuit1_Path, {u"C:\\x.dwg"});
    const AcDbObjectId symbol = b.addInsert(m_block, {0, 0, 0});
    b.setXDataStrings(symbol, QX_Circuit1_Path, {u"C:\\x.dwg"});
    b.setXDataStrings(symbol, QX_SYMB1_LABEL, {u"QF1"});
    const AcDbObjectId text = b.addText(u"path only", {0, 0, 0});
    b.setXDataStrings(text, QX_Circuit1_Path, {u"C:\\x.dwg"});
    const AcDbObjectId noPath = b.addInsert(m_block, {0, 0, 0});
    b.setXDataStrings(noPath, QX_Circuit1_No, {u"『only a note』"});
    b.setXDataStrings(noPath, QX_Circuit1_Path, {u""});
    // A numbered text is a circuit too.
    const AcDbObjectId numbered = b.addText(u"K09", {0, 0, 0});
    b.setXDataStrings(numbered, QX_Circuit1_No, {u"K09"});
    read();
    // Each such block gets its own record with empty strings.
    const CString empty = u"||||||||||||||||" + kPrimaryPath + u"|1|";
    EXPECT_EQ(RecordTexts(circuits), (std::vector<CString>{empty + handleOf(plain), empty + handleOf(same),
                                                           u"K09" + empty + handleOf(numbered)}));
}

TEST_F(PrimaryDiagramTest, SecondaryDrawingsFromTheVoltageAnnotationOrTheRowAndReadWhole) {
    CircuitAttributes a;
    a.v2 = u"＠DC220V『D:\\old\\K01.dwg』";
    addCircuit(a, {u"＠二次原理图|||D:\\old\\row.dwg"});
    CircuitAttributes b2 = a;
    b2.no = u"K02";
    b2.v2 = u"＠DC220V";
    addCircuit(b2, {u"＠二次原理图|||D:\\old\\row.dwg", u"＠二次原理图|||D:\\old\\second.dwg"});
    CircuitAttributes c3 = b2;
    c3.no = u"K03";
    addCircuit(c3, {u"x＠二次原理图『D:\\a.dwg』|||『ignored』"});
    // Many marks and a huge list.
    CircuitAttributes many;
    many.no = u"1＠2＠3＠K01『a『b』』";
    CString list;
    for (int i = 0; i < 400; ++i) list += CString(u"|D:\\old\\piece") + CString(std::to_string(i)) + u".dwg";
    many.v2 = u"＠DC『" + list.Mid(1) + u"』";
    addCircuit(many, {u"＠＠＠柜排列|||『『x"});
    read();
    std::vector<CString> found;
    for (const CCir1Attrubute* c : circuits) found.push_back(c->No + u"|" + c->CabinetOrder + u"|" + c->SecondaryDrawings);
    // The annotation wins over the row; the annotation of the whole row text wins over its value.
    EXPECT_EQ(found, (std::vector<CString>{u"K01||D:\\old\\K01.dwg", u"K02||D:\\old\\row.dwg",
                                           u"K03||D:\\a.dwg|||『ignored", u"2＠3＠K01(1)||" + list.Mid(1)}));
}

TEST(SecondaryDrawingListTest, MovedProjectFolderIsSearched) {
    TempFolder folder;
    folder.writeFile("一次系统图.dwg", "x");
    folder.writeFile("beside.dwg", "x");
    folder.writeFile("A/K01/K01二次原理图.DWG", "x");
    folder.writeFile("B/K01/k01二次原理图.dwg", "x");
    folder.writeFile("A/notes.txt", "x");
    SecondaryDrawingFinder finder(folder.logic() + u"一次系统图.dwg");
    const CString resolved = finder.Resolve(
        u"\\old\\proj\\K01\\K01二次原理图.dwg|\\old\\proj\\BESIDE.dwg|nobackslash.dwg|\\old\\missing.dwg|"
        u"\\old\\notes.txt|");
    // Below the folder the first in listing order wins, its name matched ignoring case. Beside the primary
    // drawing the file system's own matching finds the file. Only drawings are looked for below the folder.
    EXPECT_EQ(resolved, folder.logic() + u"A\\K01\\K01二次原理图.DWG|" + folder.logic() +
                            u"BESIDE.dwg|nobackslash.dwg|\\old\\missing.dwg|\\old\\notes.txt|");
}

TEST_F(PrimaryDiagramTest, SecondaryDrawingsFollowTheProjectFolder) {
    TempFolder folder;
    folder.writeFile("K01/K01二次原理图.dwg", "x");
    folder.writeFile("K02/K02二次原理图.dwg", "x");
    // Written in other case: it passes FileExists, so it stays as written.
    const CString existing = folder.logic() + u"k02\\k02二次原理图.DWG";
    CircuitAttributes a;
    a.v2 = u"＠DC220V『D:\\old\\站\\K01\\K01二次原理图.dwg』";
    addCircuit(a);
    CircuitAttributes k02 = a;
    k02.no = u"K02";
    k02.v2 = u"＠DC220V『" + existing + u"』";
    addCircuit(k02);
    read(folder.logic() + u"一次系统图.dwg");
    std::vector<CString> drawings;
    for (const CCir1Attrubute* c : circuits) drawings.push_back(c->SecondaryDrawings);
    EXPECT_EQ(drawings, (std::vector<CString>{folder.logic() + u"K01\\K01二次原理图.dwg", existing}));
}
