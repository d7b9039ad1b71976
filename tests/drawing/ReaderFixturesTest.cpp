// The three readers on DXF files written by ezdxf (tests/data/readers/make_fixtures.py), reached through
// their paths as the commands reach them.
#include "ReaderDrawings.h"
#include "RecordTexts.h"
#include "drawing/access/QxDwgObjects.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/bom/DwgBomRows.h"
#include "drawing/primary/CircuitBom.h"
#include "drawing/primary/PrimaryCircuits.h"
#include "drawing/primary/SysHead.h"
#include "drawing/title/TitleBlock.h"
#include "platform/host/Documents.h"
#include "support/FileSystem.h"

#include <gtest/gtest.h>

namespace {

CString ReaderFixture(const std::string& relative) {
    return QxFs::FromNative(std::string(QX_TEST_DATA_DIR) + "/readers/" + relative);
}

} // namespace

TEST(ReaderFixturesTest, BomTableOfASecondaryDrawing) {
    BomColumnsRead c;
    ASSERT_TRUE(QxGetDwgBomRows(ReaderFixture("K01/K01_secondary.dwg"), c.names, c.types, c.counts, c.codes, c.prices,
                                c.kinds, c.labels, c.notes, c.extras));
    // The second row's name cell has no back link.
    EXPECT_EQ(c.rows(), (std::vector<CString>{u"1QF|DZ47-60/2P|微型断路器|2||ZK-0601|12.5|Symb2|",
                                              u"1KA|JL-8GA||3|过流|JL-8GA||Symb2|",
                                              u"|{\\fArial;NSX100F}|塑壳断路器|1||SK-100||Symb1|"}));
}

TEST(ReaderFixturesTest, HeadCircuitsAndTheirBoms) {
    const CString path = ReaderFixture("primary_diagram.dxf");
    const QxDwgDatabase drawing(path, 1);
    ASSERT_TRUE(drawing);
    EXPECT_EQ(ReadHead(drawing.get()).text, u"1|111|10kV|TMY3x(80x8)|DC220V");

    CString number, name;
    EXPECT_TRUE(QxGetDwgTitle(drawing.get(), number, name));
    EXPECT_EQ(name, u"10kV一次接线图");

    CCir1AttrubuteArray circuits;
    acdbHostApplicationServices()->setWorkingDatabase(drawing.get());
    QxGetPrimaryCircuits(path, 1, circuits);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    // The secondary drawing moved with the project: found again below the primary drawing's folder.
    const CString secondary = ReaderFixture("K01/K01_secondary.dwg");
    const CString typeToBusbar = u"|KYN28A-12|10kV|DC220V|TMY|";
    EXPECT_EQ(RecordTexts(circuits),
              (std::vector<CString>{
                  u"K01|G1|进线" + typeToBusbar + u"0|1|1250A||||进线一||" + secondary + u"|" + path + u"|1|57",
                  u"K02(1)|G1|出线" + typeToBusbar + u"60|||C-02||||||" + path + u"," + path + u"|11|64,66",
                  u"K03|G1|计量" + typeToBusbar + u"180|||||||||" + path + u"|1|68",
                  u"||||||||||||||||" + path + u"|1|6A"}));
    ASSERT_EQ(circuits.GetSize(), 4);

    // The BOM of each circuit: the record on the reference, the nested symbol, the marker's record.
    const char16_t* firstTypes[] = {u"VS1-12/1250", u"VS1-12", u"JDZ10-10", u"VS1-12"};
    for (int i = 0; i < circuits.GetSize(); ++i) {
        AcDbObjectId id;
        ASSERT_TRUE(QxHandleToId(drawing.get(), circuits[i]->Handles[0], id));
        AcDbObjectPointer<AcDbBlockReference> reference(id, AcDb::kForRead);
        ASSERT_TRUE(reference);
        CStringArray types, codes, names, counts, prices, info;
        EXPECT_TRUE(QxGetCircuitBom(reference.get(), types, codes, names, counts, prices, info));
        ASSERT_FALSE(types.IsEmpty());
        EXPECT_EQ(types[0], firstTypes[i]);
        EXPECT_EQ(prices.GetSize(), types.GetSize());
    }
    QxFreeCircuits(circuits);
}
