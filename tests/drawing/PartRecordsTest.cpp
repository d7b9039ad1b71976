// Part records of drawings: the groups of a label record and what they inherit, which rows count, the
// merge by location and label across drawings, components, and the drawing's location.
#include "AssemblyFixtures.h"
#include "RecordTexts.h"
#include "drawing/bom/BomTableKeys.h"
#include "drawing/model/DrawingBuilder.h"
#include "drawing/parts/DwgLocation.h"
#include "drawing/parts/GetPartInfo.h"
#include "drawing/parts/RecordGroups.h"

#include <optional>

namespace {

struct RowSpec {
    CString label = u"1KA";
    std::optional<CString> number = CString(u"1");
    CString type = u"RX-1";
    std::optional<CString> code = CString(u"R1");
    CString name = u"继电器";
    CString count = u"1";
    CString note = u" ";
    std::optional<CString> location;
    std::optional<CStringArray> labelLines = CStringArray{u"标号:1KA"};
    std::optional<CStringArray> componentLines;
    bool typeLinksBack = true;
};

// A table row anchored in its label cell, every link with its back link.
AcDbObjectId addRow(DrawingBuilder& builder, const RowSpec& wanted) {
    const AcDbObjectId anchor = builder.addMText(wanted.label, {0, 0, 0});
    builder.setXDataStrings(anchor, QXBOM_LABEL, {wanted.label});
    auto link = [&](const CString& text, const char16_t* forward, const char16_t* back, bool linksBack = true) {
        const AcDbObjectId cell = builder.addMText(text, {0, 0, 0});
        builder.setXDataLinks(anchor, forward, {cell});
        if (linksBack) builder.setXDataLinks(cell, back, {anchor});
        return cell;
    };
    if (wanted.number) link(*wanted.number, QXBOM_LABEL_NOHANDLE, QXBOM_NO_LABELHANDLE);
    const AcDbObjectId type = link(wanted.type, QXBOM_LABEL_TYPEHANDLE, QXBOM_TYPE_LABELHANDLE, wanted.typeLinksBack);
    if (wanted.code) builder.setXDataStrings(type, QXBOM_CODE, {*wanted.code});
    builder.setXDataStrings(type, QXBOM_PRICE, {u"9.5"});
    builder.setXDataStrings(type, QXBOM_DEVICETYPE, {u"继电器类"});
    link(wanted.name, QXBOM_LABEL_NAMEHANDLE, QXBOM_NAME_LABELHANDLE);
    link(wanted.count, QXBOM_LABEL_COUNTHANDLE, QXBOM_COUNT_LABELHANDLE);
    link(wanted.note, QXBOM_LABEL_NOTEHANDLE, QXBOM_NOTE_LABELHANDLE);
    if (wanted.location) link(*wanted.location, QXBOM_LABEL_LOCATIONHANDLE, QXBOM_LOCATION_LABELHANDLE);
    auto textRecord = [&](const char16_t* name, const CStringArray& lines) {
        ResItems items;
        for (const CString& line : lines) items.push_back(ResItem::text(1, line));
        builder.addXrecord(anchor, name, items);
    };
    if (wanted.labelLines) textRecord(u"QXBOM_LABEL", *wanted.labelLines);
    if (wanted.componentLines) textRecord(u"QXBOM_COMPONENT", *wanted.componentLines);
    return anchor;
}

struct PartsOf {
    CPartBomDataBaseArray parts;
    ~PartsOf() { QxFreePartBoms(parts); }
    bool read(DrawingBuilder& builder, const CString& path = u"X:\\d.dwg", const CString& location = u"+A1") {
        return CGetPartInfo().GetPartsOfDatabase(&builder.database(), path, 1, location, parts);
    }
};

// Each group's values of every key, then the values after the last line.
std::vector<CString> groupTexts(const RecordGroups& groups, int keyCount) {
    std::vector<CString> texts;
    for (size_t group = 0; group <= groups.size(); ++group) {
        texts.emplace_back();
        for (int key = 0; key < keyCount; ++key) texts.back() += (key ? u"|" : u"") + groups.value(group, key);
    }
    return texts;
}

// Each device record followed by its rows.
std::vector<CString> partsText(const CPartBomDataBaseArray& parts) {
    std::vector<CString> texts;
    for (const CPartBomDataBase* part : parts) {
        texts.push_back(RecordText(*part));
        for (const COnePartBom* row : part->PartBoms) texts.push_back(RecordText(*row));
    }
    return texts;
}

} // namespace

TEST(RecordGroupsTest, GroupsOpenAtEachLabelAndInheritWhatTheyDoNotState) {
    const RecordGroups groups(
        {u"序号:7", u"板号:B1", u"标号:1KA", u"其他:x", u"板号:B2", u"合并过的标号数组:A", u"标号:2KA", u"序号:8",
         u"合并过的标号数组:B"},
        LabelRecordKeys());
    // A first line other than a label: the label is empty when the next label closes the group.
    EXPECT_EQ(groupTexts(groups, kLabelRecordKeyCount),
              (std::vector<CString>{u"|7|B1||||||||||||||", u"1KA|7|B2|||||A|||||||||", u"2KA|8|B2|||||B|||||||||",
                                    u"2KA|8|B2|||||B|||||||||"}));
}

TEST(PartRecordsTest, LabelGroupsBecomeRecordsWithTheRowsFields) {
    DrawingBuilder builder;
    RowSpec wanted;
    wanted.number = u"ZZ12";
    wanted.note = u"备注";
    wanted.labelLines = CStringArray{u"标号:1KA", u"序号:3", u"板号:B1", u"接线图章组件:STAMP::", u"合并过的标号数组:1KA,2KA",
                       u"标号:2KA", u"元件顺序号:9", u"标号: "};
    const AcDbObjectId anchor = addRow(builder, wanted);
    PartsOf read;
    ASSERT_TRUE(read.read(builder));
    ASSERT_EQ(read.parts.GetSize(), 2);  // the label " " is passed over

    // An empty element order number takes the sequence number; the second label inherits the board.
    EXPECT_EQ(partsText(read.parts),
              (std::vector<CString>{u"1KA|+A1|1KA,2KA|3|B1|3|STAMP|rows 1",
                                    u"12|RX-1|R1|继电器|1|9.5|继电器类|备注|1KA|X:\\d.dwg|1|+A1",
                                    u"2KA|+A1|1KA,2KA|3|B1|9|STAMP|rows 1",
                                    u"12|RX-1|R1|继电器|1|9.5|继电器类|备注|2KA|X:\\d.dwg|1|+A1"}));
    EXPECT_EQ(read.parts[0]->PartBoms[0]->Handle, anchor.handle().text());
}

// Each key of a label record fills its own field of the record, whatever its place in the group.
TEST(PartRecordsTest, EveryLabelKeyFillsItsOwnField) {
    DrawingBuilder builder;
    RowSpec wanted;
    wanted.labelLines = CStringArray{u"标号:1KA", u"空开图组件:17", u"屏柜图组件:16", u"元件类名:15", u"元件标注距离:14",
                                     u"元件顺序号:13", u"元件描述:12", u"布置比例:11", u"接线图章旋转角度:10",
                                     u"接线图章组件:9", u"合并过的标号数组:1KA", u"接线路径号:7", u"分行:6",
                                     u"板前板后:5", u"板名:4", u"板号:3", u"序号:2"};
    addRow(builder, wanted);
    PartsOf read;
    ASSERT_TRUE(read.read(builder));
    ASSERT_EQ(read.parts.GetSize(), 1);
    const CPartBomDataBase& p = *read.parts[0];
    const std::vector<CString> fields{p.Label,          p.SeqNo,          p.BoardNo,        p.BoardName,
                                      p.BoardSide,      p.RowSplit,       p.WirePathNo,     p.MergedLabels.get(),
                                      p.WireStampBlock, p.WireStampAngle, p.LayoutScale,    p.ElementDesc,
                                      p.ElementOrderNo, p.ElementLabelDistance, p.ElementClass,
                                      p.CabinetDrawingBlock, p.BreakerDrawingBlock};
    EXPECT_EQ(fields, (std::vector<CString>{u"1KA", u"2", u"3", u"4", u"5", u"6", u"7", u"1KA", u"9", u"10", u"11",
                                            u"12", u"13", u"14", u"15", u"16", u"17"}));
}

TEST(PartRecordsTest, RowsCountOnlyWithALinkedNumberOfDigits) {
    DrawingBuilder builder;
    RowSpec wanted;
    for (const char16_t* number : {u"A12", u"", u"Z", u"1.5", u"12Z"}) {  // only a leading Z is trimmed
        wanted.number = CString(number);
        addRow(builder, wanted);
    }
    wanted.number.reset();  // no number link at all
    addRow(builder, wanted);
    PartsOf read;
    read.read(builder);
    EXPECT_TRUE(read.parts.IsEmpty());

    // A row that counts but has no label record gives no record either.
    wanted.number = u"5";
    wanted.labelLines.reset();
    addRow(builder, wanted);
    read.read(builder);
    EXPECT_TRUE(read.parts.IsEmpty());
}

TEST(PartRecordsTest, SameRowOnceAndTheLocationCellMovesTheDevice) {
    DrawingBuilder builder;
    RowSpec wanted;
    wanted.code.reset();  // no code: the part record does not take the type instead
    addRow(builder, wanted);
    wanted.count = u"7";  // only count differs: the same row, the first stays
    addRow(builder, wanted);
    wanted.type = u"rx-1";
    addRow(builder, wanted);  // type differs only in case: the same row
    wanted.note = u"另";
    addRow(builder, wanted);  // another note: another row
    wanted.location = u"+B2";
    addRow(builder, wanted);
    wanted.location = u"+C3";
    wanted.code = u"R9";
    wanted.typeLinksBack = false;
    addRow(builder, wanted);
    PartsOf read;
    read.read(builder);
    // A type cell that does not link back gives no type text, but its code and price are read.
    EXPECT_EQ(partsText(read.parts), (std::vector<CString>{u"1KA|+A1||||||rows 2",
                                                           u"1|RX-1||继电器|1|9.5|继电器类||1KA|X:\\d.dwg|1|+A1",
                                                           u"1|rx-1||继电器|7|9.5|继电器类|另|1KA|X:\\d.dwg|1|+A1",
                                                           u"1KA|+B2||||||rows 1",
                                                           u"1|rx-1||继电器|7|9.5|继电器类|另|1KA|X:\\d.dwg|1|+A1",
                                                           u"1KA|+C3||||||rows 1",
                                                           u"1||R9|继电器|7|9.5|继电器类|另|1KA|X:\\d.dwg|1|+A1"}));
}

TEST(PartRecordsTest, ComponentsLandOnTheFirstRowOfTheirLabel) {
    DrawingBuilder builder;
    RowSpec wanted;
    wanted.componentLines = CStringArray{u"标号:1KA", u"名称:线圈", u"编码:C1", u"型号:T1", u"数量:2", u"标号:9XX", u"名称:无主"};
    addRow(builder, wanted);
    wanted.type = u"RX-2";
    wanted.componentLines = CStringArray{u"标号:1KA", u"名称:触点"};
    addRow(builder, wanted);
    PartsOf read;
    read.read(builder);
    // The one of label 9XX is dropped; each cell's record starts afresh.
    EXPECT_EQ(partsText(read.parts),
              (std::vector<CString>{u"1KA|+A1||||||rows 2",
                                    u"1|RX-1|R1|继电器|1|9.5|继电器类||1KA|X:\\d.dwg|1|+A1|线圈/T1/C1/2|触点///",
                                    u"1|RX-2|R1|继电器|1|9.5|继电器类||1KA|X:\\d.dwg|1|+A1"}));
}

TEST(DwgLocationTest, TheItemBehindTheCaption) {
    DrawingBuilder builder;
    CString location = u"stale";
    const AcDbObjectId own = builder.namedDictionary(QX_DWG_DICITIONARY);
    const AcDbObjectId record =
        builder.addXrecordTo(own, QX_LOCATION_XRECORD, DrawingBuilder::TextItems(1, {u"x", u"安装 位 置", u"+A1", u"位置", u"+B"}));
    QxGetDwgLocation(&builder.database(), location);
    EXPECT_EQ(location, u"+A1");

    AcDbObjectPointer<AcDbXrecord> changed(record, AcDb::kForWrite);
    changed->setItems(DrawingBuilder::TextItems(1, {u"x", u"位置"}));  // the caption ends the record
    QxGetDwgLocation(&builder.database(), location);
    EXPECT_TRUE(location.IsEmpty());
}

TEST_F(AssemblyTest, PartsOfSeveralDrawingsMergeByLocationAndLabel) {
    m_folder.writeFile("d/A.dwg", AssemblyFixture("device_a.dxf"));
    m_folder.writeFile("d/B.dwg", AssemblyFixture("device_b.dxf"));
    m_folder.writeFile("d/broken.dwg", "not a drawing");
    const CString folder = m_folder.logic() + u"d\\";
    CPartBomDataBaseArray parts;
    EXPECT_FALSE(CGetPartInfo().GetPartsOfDwgs({}, parts));
    ASSERT_TRUE(CGetPartInfo().GetPartsOfDwgs({folder + u"A.dwg", folder + u"broken.dwg", folder + u"B.dwg"}, parts));

    // The later drawing adds its row to the earlier drawing's device, and its component lands on the
    // earlier drawing's row; 2KA inherits the stamp of the 1KA group.
    const CString a = u"|继电器类||1KA|" + folder + u"A.dwg|1|+A1";
    EXPECT_EQ(partsText(parts),
              (std::vector<CString>{u"1KA|+A1|1KA,2KA|1|B1|1|STAMP|rows 2",
                                    u"1|RX-1|R1|继电器|2|12.5" + a + u"|线圈/T1/C1/1|触点/T2/C2/4",
                                    u"4|RX-2|R2|继电器|1|12.5|继电器类||1KA|" + folder + u"B.dwg|1|+A1",
                                    u"2KA|+A1|1KA,2KA|2|B1|2|STAMP|rows 1",
                                    u"1|RX-1|R1|继电器|2|12.5|继电器类||2KA|" + folder + u"A.dwg|1|+A1",
                                    u"4QF|+B2||||||rows 1",
                                    u"3|NSX100|C100|断路器|1|12.5|继电器类||4QF|" + folder + u"A.dwg|1|+A1"}));
    QxFreePartBoms(parts);
    EXPECT_TRUE(parts.IsEmpty());
}
