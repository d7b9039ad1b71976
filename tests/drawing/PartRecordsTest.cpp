// Part records of drawings: the groups of a label record and what they inherit, which rows count, the
// merge by location and label across drawings, components, and the drawing's location.
#include "AssemblyFixtures.h"
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

} // namespace

TEST(RecordGroupsTest, GroupsOpenAtEachLabelAndInheritWhatTheyDoNotState) {
    const RecordGroups groups(
        {u"序号:7", u"板号:B1", u"标号:1KA", u"其他:x", u"板号:B2", u"合并过的标号数组:A", u"标号:2KA", u"序号:8",
         u"合并过的标号数组:B"},
        LabelRecordKeys());
    ASSERT_EQ(groups.size(), 3u);
    // A first line other than a label: the label is empty when the next label closes the group.
    EXPECT_EQ(groups.value(0, kLabel), u"");
    EXPECT_EQ(groups.value(0, kSeqNo), u"7");
    EXPECT_EQ(groups.value(0, kBoardNo), u"B1");
    EXPECT_EQ(groups.value(1, kLabel), u"1KA");
    EXPECT_EQ(groups.value(1, kBoardNo), u"B2");
    EXPECT_EQ(groups.value(1, kMergedLabels), u"A");
    EXPECT_EQ(groups.value(2, kLabel), u"2KA");
    EXPECT_EQ(groups.value(2, kBoardNo), u"B2");
    EXPECT_EQ(groups.value(2, kSeqNo), u"8");
    EXPECT_EQ(groups.lastValue(kMergedLabels), u"B");

    EXPECT_TRUE(RecordGroups({}, LabelRecordKeys()).empty());
    // A label on the last line closes the group before it and then its own.
    const RecordGroups closing({u"标号:A", u"名称:n", u"标号:B"}, ComponentRecordKeys());
    ASSERT_EQ(closing.size(), 2u);
    EXPECT_EQ(closing.value(1, kComponentLabel), u"B");
    EXPECT_EQ(closing.value(1, kComponentName), u"n");
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

    const CPartBomDataBase& first = *read.parts[0];
    EXPECT_EQ(first.Location, u"+A1");
    EXPECT_EQ(first.Label, u"1KA");
    EXPECT_EQ(first.MergedLabels, u"1KA,2KA");
    EXPECT_EQ(first.SeqNo, u"3");
    EXPECT_EQ(first.ElementOrderNo, u"3");  // empty: the sequence number
    EXPECT_EQ(first.WireStampBlock, u"STAMP");
    ASSERT_EQ(first.PartBoms.GetSize(), 1);
    const COnePartBom& row = *first.PartBoms[0];
    EXPECT_EQ(row.No, u"12");
    EXPECT_EQ(row.Type, u"RX-1");
    EXPECT_EQ(row.Code, u"R1");
    EXPECT_EQ(row.Price, u"9.5");
    EXPECT_EQ(row.DeviceType, u"继电器类");
    EXPECT_EQ(row.Note, u"备注");
    EXPECT_EQ(row.Label, u"1KA");
    EXPECT_EQ(row.Handle, anchor.handle().text());
    EXPECT_EQ(row.Path, u"X:\\d.dwg");
    EXPECT_EQ(row.PathFlag, 1);
    EXPECT_EQ(row.DwgLocation, u"+A1");

    const CPartBomDataBase& second = *read.parts[1];
    EXPECT_EQ(second.Label, u"2KA");
    EXPECT_EQ(second.BoardNo, u"B1");  // inherited
    EXPECT_EQ(second.ElementOrderNo, u"9");
    EXPECT_EQ(second.PartBoms[0]->Label, u"2KA");
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
    // A type cell that does not link back gives no type text, but its code and price are read.
    wanted.location = u"+C3";
    wanted.code = u"R9";
    wanted.typeLinksBack = false;
    addRow(builder, wanted);
    PartsOf read;
    read.read(builder);
    ASSERT_EQ(read.parts.GetSize(), 3);
    const COnePartBom& unlinked = *read.parts[2]->PartBoms[0];
    EXPECT_EQ(unlinked.Type, u"");
    EXPECT_EQ(unlinked.Code, u"R9");
    EXPECT_EQ(unlinked.Price, u"9.5");
    EXPECT_EQ(unlinked.DeviceType, u"继电器类");
    ASSERT_EQ(read.parts[0]->PartBoms.GetSize(), 2);
    EXPECT_EQ(read.parts[0]->PartBoms[0]->Count, u"1");
    EXPECT_TRUE(read.parts[0]->PartBoms[0]->Code.IsEmpty());
    EXPECT_EQ(read.parts[0]->PartBoms[1]->Note, u"另");
    EXPECT_EQ(read.parts[1]->Location, u"+B2");
    EXPECT_EQ(read.parts[1]->PartBoms[0]->DwgLocation, u"+A1");
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
    ASSERT_EQ(read.parts.GetSize(), 1);
    ASSERT_EQ(read.parts[0]->PartBoms.GetSize(), 2);
    const auto& components = read.parts[0]->PartBoms[0]->Components;
    ASSERT_EQ(components.GetSize(), 2);  // the one of label 9XX is dropped
    EXPECT_EQ(components[0]->Name, u"线圈");
    EXPECT_EQ(components[0]->Type, u"T1");
    EXPECT_EQ(components[0]->Code, u"C1");
    EXPECT_EQ(components[0]->Count, u"2");
    EXPECT_EQ(components[1]->Name, u"触点");
    EXPECT_TRUE(components[1]->Type.IsEmpty());  // each cell's record starts afresh
    EXPECT_TRUE(read.parts[0]->PartBoms[1]->Components.IsEmpty());
}

TEST(DwgLocationTest, TheItemBehindTheCaption) {
    DrawingBuilder builder;
    CString location = u"stale";
    QxGetDwgLocation(&builder.database(), location);
    EXPECT_TRUE(location.IsEmpty());
    QxGetDwgLocation(nullptr, location);
    EXPECT_TRUE(location.IsEmpty());

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

    ASSERT_EQ(parts.GetSize(), 3);
    EXPECT_EQ(parts[0]->Label, u"1KA");
    EXPECT_EQ(parts[0]->Location, u"+A1");
    EXPECT_EQ(parts[1]->Label, u"2KA");
    EXPECT_EQ(parts[1]->WireStampBlock, u"STAMP");  // inherited from the 1KA group
    EXPECT_EQ(parts[2]->Label, u"4QF");
    EXPECT_EQ(parts[2]->Location, u"+B2");

    // The later drawing adds its row to the earlier drawing's device, and its component lands on the
    // earlier drawing's row.
    ASSERT_EQ(parts[0]->PartBoms.GetSize(), 2);
    const COnePartBom& early = *parts[0]->PartBoms[0];
    EXPECT_EQ(early.Path, folder + u"A.dwg");
    EXPECT_EQ(early.No, u"1");
    EXPECT_EQ(early.Price, u"12.5");
    EXPECT_EQ(parts[0]->PartBoms[1]->Path, folder + u"B.dwg");
    EXPECT_EQ(parts[0]->PartBoms[1]->Type, u"RX-2");
    ASSERT_EQ(early.Components.GetSize(), 2);
    EXPECT_EQ(early.Components[1]->Name, u"触点");
    EXPECT_EQ(early.Components[1]->Count, u"4");

    QxFreePartBoms(parts);
    EXPECT_TRUE(parts.IsEmpty());
}
