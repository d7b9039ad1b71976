// The BOM centre's operations, on every kind of store the centre runs on.
#include "CentreTestSupport.h"

#include "common/CapturedOutput.h"
#include "centre/operations/BomCentreOperations.h"
#include "centre/operations/CentreIds.h"

#include <gtest/gtest.h>

using namespace centre_test;

namespace {

class CentreOperations : public ::testing::TestWithParam<StoreMaker> {
protected:
    CentreOperations() : store(GetParam().open(folder)), centre(*store) {}

    int revisionCount(const HMProjectTree_INFO& device) {
        return static_cast<int>(store->revisions(*ParseCentreId(device.m_strID)).size());
    }

    TempFolder folder;
    CapturedOutput output;  // a box from the reader would show a document that does not read back
    std::unique_ptr<ICentreStore> store;
    CBomCentreOperations centre;
    const CentreUser ann{u"华东电气", u"ann"};
    const CentreUser other{u"西北电力", u"olga"};
};

const HMProjectTree_INFO& child(const HMProjectTree_INFO& node, int index) { return *node.m_arrChildren[index]; }

} // namespace

TEST_P(CentreOperations, ASubmittedProjectComesBackWithItsTreeAndRowsThroughTheModulesReader) {
    auto local = substation();
    centre.SubmitItm(ann, *local);

    // Every node got its ID and both blocks and is marked for writing back.
    EXPECT_TRUE(ParseCentreId(local->m_strID));
    EXPECT_TRUE(local->m_bChanged);
    for (const HMProjectTree_INFO* node : {&child(*local, 0), &child(*local, 1), &child(child(*local, 1), 0)}) {
        EXPECT_TRUE(ParseCentreId(node->m_strID)) << node->m_strName;
        EXPECT_TRUE(node->m_bChanged);
        EXPECT_TRUE(node->m_strDataSchema.StartsWith(u"<NewDataSet"));
    }
    EXPECT_TRUE(child(*local, 0).m_strBoms.StartsWith(u"<cabinet"));

    auto cloud = centre.ProjectTree(ann, local->m_strID);
    ASSERT_TRUE(cloud);
    EXPECT_EQ(cloud->m_strName, local->m_strName);
    EXPECT_TRUE(cloud->m_strType.IsEmpty());
    ASSERT_EQ(cloud->m_arrChildren.GetSize(), 2);
    const HMProjectTree_INFO& lines = child(*cloud, 1);
    EXPECT_EQ(lines.m_strType, u"100");
    EXPECT_EQ(lines.m_pParent, cloud.get());
    ASSERT_EQ(lines.m_arrChildren.GetSize(), 2);
    EXPECT_EQ(child(lines, 0).m_pParent, &lines);
    EXPECT_EQ(child(lines, 0).m_pRoot, cloud.get());
    // The devices at every depth, in walk order.
    ASSERT_EQ(cloud->m_arrCabinets.GetSize(), 3);
    EXPECT_EQ(cloud->m_arrCabinets[0]->m_strName, u"AH1 进线柜");
    EXPECT_EQ(cloud->m_arrCabinets[1]->m_strName, u"AH2");
    EXPECT_EQ(cloud->m_arrCabinets[2]->m_strName, u"AH4");
    // The rows are in the block only, so that unpacking them does not double them.
    EXPECT_TRUE(cloud->m_arrCabinets[0]->m_arrPrimaryBom.IsEmpty());

    // Root, sub-project and devices read back through the module's writer and reader.
    const auto root = throughHexmoorXml(*cloud);
    EXPECT_EQ(root->m_strID, local->m_strID);
    EXPECT_EQ(root->m_arrChildren.GetSize(), 2);
    EXPECT_EQ(throughHexmoorXml(lines)->m_arrChildren.GetSize(), 2);
    const HMProjectTree_INFO& localDevices = *local;
    for (int i = 0; i < 3; ++i) {
        const HMProjectTree_INFO& sent = i == 0 ? child(localDevices, 0) : child(child(localDevices, 1), i - 1);
        const auto read = throughHexmoorXml(*cloud->m_arrCabinets[i]);
        EXPECT_EQ(read->m_strID, sent.m_strID);
        EXPECT_EQ(read->m_strCirNo, sent.m_strCirNo);
        EXPECT_EQ(read->m_strCirSize, sent.m_strCirSize);
        EXPECT_EQ(read->m_arrPrimaryBom, withoutLabelAndCode(sent.m_arrPrimaryBom)) << sent.m_strName;
        EXPECT_EQ(read->m_arrSecondaryBom, withoutLabelAndCode(sent.m_arrSecondaryBom)) << sent.m_strName;
    }
    // What the submit left in the caller's tree reads back the same way.
    EXPECT_EQ(throughHexmoorXml(child(*local, 0))->m_arrSecondaryBom.GetSize(), 1);
    EXPECT_TRUE(output.boxes.empty());
}

TEST_P(CentreOperations, AProjectNameIsTakenOncePerEnterpriseIgnoringCase) {
    auto first = substation(u"Station");
    centre.SubmitItm(ann, *first);
    auto second = substation(u"STATION");
    EXPECT_THROW(centre.SubmitItm(ann, *second), CCentreError);
    EXPECT_TRUE(second->m_strID.IsEmpty());
    EXPECT_FALSE(second->m_bChanged);
    EXPECT_EQ(centre.Projects(ann).size(), 1u);

    // Another enterprise has its own names, and sees nothing of the first one's projects.
    centre.SubmitItm(other, *second);
    EXPECT_EQ(centre.Projects(other).size(), 1u);
    EXPECT_FALSE(centre.ProjectTree(other, first->m_strID));
    EXPECT_TRUE(centre.ProjectName(other, first->m_strID).IsEmpty());
    EXPECT_EQ(centre.ProjectName(ann, first->m_strID), u"Station");
}

TEST_P(CentreOperations, TreesThatCannotBecomeFoldersAreRefusedWholly) {
    const std::vector<std::pair<const char*, std::function<void(HMProjectTree_INFO&)>>> breakages{
        {"siblings equal ignoring case", [](HMProjectTree_INFO& t) { addChild(*t.m_arrChildren[1], t, u"ah2", u"0"); }},
        {"a backslash", [](HMProjectTree_INFO& t) { t.m_arrCabinets[2]->m_strName = u"AH\\4"; }},
        {"a slash", [](HMProjectTree_INFO& t) { t.m_arrChildren[1]->m_strName = u"出/线"; }},
        {"an empty name", [](HMProjectTree_INFO& t) { t.m_arrCabinets[0]->m_strName = CString(); }},
        {"a parent folder", [](HMProjectTree_INFO& t) { t.m_arrCabinets[1]->m_strName = u".."; }},
        {"a device with children", [](HMProjectTree_INFO& t) { addChild(*t.m_arrCabinets[0], t, u"inner", u"0"); }},
        {"a node without a type", [](HMProjectTree_INFO& t) { t.m_arrChildren[1]->m_strType = CString(); }},
        {"a root that is a device", [](HMProjectTree_INFO& t) { t.m_strType = u"0"; }},
        {"a project name with a separator", [](HMProjectTree_INFO& t) { t.m_strName = u"a\\b"; }},
    };
    for (const auto& [what, breakTree] : breakages) {
        auto tree = substation();
        breakTree(*tree);
        EXPECT_THROW(centre.SubmitItm(ann, *tree), CCentreError) << what;
        EXPECT_TRUE(tree->m_strID.IsEmpty()) << what;
        EXPECT_TRUE(tree->m_arrCabinets[0]->m_strID.IsEmpty()) << what;
    }
    EXPECT_TRUE(centre.Projects(ann).empty());
}

TEST_P(CentreOperations, EachBomSubmitIsANewRevisionAndTheBlockHoldsTheAcceptedRows) {
    auto tree = substation();
    centre.SubmitItm(ann, *tree);
    HMProjectTree_INFO& feeder = *tree->m_arrCabinets[1];
    for (HMProjectTree_INFO* device : tree->m_arrCabinets) device->m_bChanged = false;
    feeder.m_arrPrimaryBom[0].m_strRowCount = u"4";
    feeder.m_arrSecondaryBom.Add(row(u"电度表", u"DTSD341", u"1"));

    const SubmitReport report = centre.SubmitBom(ann, *tree);
    EXPECT_EQ(report.accepted, 3);
    EXPECT_TRUE(report.skipped.empty());
    EXPECT_EQ(revisionCount(feeder), 2);
    EXPECT_TRUE(feeder.m_bChanged);
    EXPECT_NE(feeder.m_strBoms.Find(u"Revision=\"2\""), -1);
    const auto read = throughHexmoorXml(feeder);
    ASSERT_EQ(read->m_arrPrimaryBom.GetSize(), 1);
    EXPECT_EQ(read->m_arrPrimaryBom[0].m_strRowCount, u"4");
    EXPECT_EQ(read->m_arrSecondaryBom.GetSize(), 1);

    // The centre's tree and its import give the newest revision; the older one is kept.
    BomRows imported;
    ASSERT_TRUE(centre.ImportRows(ann, tree->m_strID, feeder.m_strID, imported));
    ASSERT_EQ(imported.GetSize(), 2);
    EXPECT_EQ(imported[0].m_strRowCount, u"4");
    EXPECT_EQ(imported[1].m_strRowName, u"电度表");
    const auto history = store->revisions(*ParseCentreId(feeder.m_strID));
    EXPECT_EQ(store->rows(history[0].id).front().count, u"2");
}

TEST_P(CentreOperations, DevicesTheCentreDoesNotKnowAreSkippedAndTheOthersTaken) {
    auto tree = substation();
    centre.SubmitItm(ann, *tree);
    auto elsewhere = substation(u"其他");
    centre.SubmitItm(ann, *elsewhere);

    tree->m_arrCabinets[0]->m_strID = u"999999";               // no such node
    tree->m_arrCabinets[2]->m_strID = elsewhere->m_arrCabinets[2]->m_strID;  // another project's device
    for (HMProjectTree_INFO* device : tree->m_arrCabinets) device->m_bChanged = false;
    const SubmitReport report = centre.SubmitBom(ann, *tree);
    EXPECT_EQ(report.accepted, 1);
    EXPECT_EQ(report.skipped.size(), 2u);
    EXPECT_FALSE(tree->m_arrCabinets[0]->m_bChanged);
    EXPECT_TRUE(tree->m_arrCabinets[1]->m_bChanged);
    EXPECT_EQ(revisionCount(*elsewhere->m_arrCabinets[2]), 1);

    // A project the centre does not know, or another enterprise's, takes nothing at all.
    tree->m_strID = u"0123";
    EXPECT_THROW(centre.SubmitBom(ann, *tree), CCentreError);
    EXPECT_THROW(centre.SubmitBom(other, *elsewhere), CCentreError);
    EXPECT_EQ(revisionCount(*tree->m_arrCabinets[1]), 2);
}

TEST_P(CentreOperations, ASecondarySubmitKeepsThePrimaryRowsOfTheCurrentRevision) {
    auto tree = substation();
    centre.SubmitItm(ann, *tree);
    auto cabinet = centre.OneCabinetTree(ann);
    ASSERT_TRUE(cabinet);
    EXPECT_EQ(cabinet->m_strName, u"AH1 进线柜");
    cabinet->m_arrPrimaryBom.Add(row(u"ignored", u"x", u"9"));
    cabinet->m_arrSecondaryBom.Add(row(u"端子", u"UK5N", u"40"));

    EXPECT_TRUE(centre.SubmitSecondary(ann, *cabinet).skipped.empty());
    BomRows rows;
    ASSERT_TRUE(centre.ImportRows(ann, tree->m_strID, cabinet->m_strID, rows));
    ASSERT_EQ(rows.GetSize(), 3);
    EXPECT_EQ(rows[0].m_strRowName, u"断路器");
    EXPECT_EQ(rows[1].m_strRowName, u"电流互感器");
    EXPECT_EQ(rows[2].m_strRowName, u"端子");
    EXPECT_TRUE(cabinet->m_bChanged);
}

TEST_P(CentreOperations, ImportGivesOneDeviceOrTheWholeProjectAndNothingForUnknownIDs) {
    auto tree = substation();
    centre.SubmitItm(ann, *tree);
    BomRows rows;
    ASSERT_TRUE(centre.ImportRows(ann, tree->m_strID, CString(), rows));
    ASSERT_EQ(rows.GetSize(), 4);
    EXPECT_EQ(rows[0].m_strRowCode, u"QF-01");
    EXPECT_EQ(rows[2].m_strRowName, u"综保装置");  // the first device's secondary rows follow its primary ones
    EXPECT_EQ(rows[3].m_strRowModel, u"VS1-12/630");

    for (const auto& [project, cabinet] : std::vector<std::pair<CString, CString>>{
             {CString(), CString()}, {u"77", CString()}, {tree->m_strID, u"77"}, {tree->m_strID, tree->m_arrChildren[1]->m_strID}}) {
        rows.Add(row(u"stale", u"x", u"1"));
        EXPECT_FALSE(centre.ImportRows(ann, project, cabinet, rows));
        EXPECT_TRUE(rows.IsEmpty());
    }
    EXPECT_FALSE(centre.ImportRows(other, tree->m_strID, CString(), rows));
}

TEST_P(CentreOperations, ThePartsCatalogueAddsUpEqualPartsOverTheEnterprise) {
    auto tree = substation();
    tree->m_arrCabinets[2]->m_arrPrimaryBom.Add(row(u"断路器", u"VS1-12/630", u"3台"));
    tree->m_arrCabinets[2]->m_arrPrimaryBom.Add(row(u"断路器", u"VS1-12/630", u"1", u"", u"other code"));
    centre.SubmitItm(ann, *tree);
    auto foreign = substation(u"foreign");
    centre.SubmitItm(other, *foreign);

    const BomRows catalogue = centre.PartsCatalogue(ann);
    ASSERT_EQ(catalogue.GetSize(), 5);
    EXPECT_EQ(catalogue[3].m_strRowModel, u"VS1-12/630");
    EXPECT_EQ(catalogue[3].m_strRowCount, u"5");  // 2 + the leading digits of "3台"
    EXPECT_EQ(catalogue[4].m_strRowCode, u"other code");
    EXPECT_EQ(catalogue[4].m_strRowCount, u"1");
}

TEST_P(CentreOperations, AnErrorHalfwayLeavesTheStoreAndTheTreeAsTheyWere) {
    auto tree = substation();
    centre.SubmitItm(ann, *tree);
    const CString boms = tree->m_arrCabinets[2]->m_strBoms;
    for (HMProjectTree_INFO* device : tree->m_arrCabinets) device->m_bChanged = false;

    // Breaks at the third revision of a submit, then at the fourth node of a new project.
    BreakingStore breaking(*store, 2, [] { throw CCentreStoreError(u"the disk is full"); });
    CBomCentreOperations failing(breaking);
    tree->m_arrCabinets[0]->m_arrPrimaryBom.RemoveAll();
    EXPECT_THROW(failing.SubmitBom(ann, *tree), CCentreStoreError);
    for (HMProjectTree_INFO* device : tree->m_arrCabinets) {
        EXPECT_EQ(revisionCount(*device), 1);
        EXPECT_FALSE(device->m_bChanged);
    }
    EXPECT_EQ(tree->m_arrCabinets[2]->m_strBoms, boms);

    BreakingStore breakingAgain(*store, 4, [] { throw CCentreStoreError(u"the disk is full"); });
    CBomCentreOperations failingAgain(breakingAgain);
    auto another = substation(u"another");
    EXPECT_THROW(failingAgain.SubmitItm(ann, *another), CCentreStoreError);
    EXPECT_TRUE(another->m_strID.IsEmpty());
    EXPECT_EQ(centre.Projects(ann).size(), 1u);
    // The name was not taken by the half-made project.
    centre.SubmitItm(ann, *another);
}

TEST_P(CentreOperations, TheComparisonNamesAddedRemovedAndChangedParts) {
    auto tree = substation();
    centre.SubmitItm(ann, *tree);
    HMProjectTree_INFO& incoming = *tree->m_arrCabinets[0];
    incoming.m_arrPrimaryBom[1].m_strRowCount = u"2";                    // changed
    incoming.m_arrPrimaryBom.RemoveAt(0);                               // removed
    incoming.m_arrSecondaryBom.Add(row(u"电流互感器", u"LZZBJ9-10", u"1"));  // same part, other system: added
    tree->m_arrCabinets[2]->m_strID = CString();

    const auto devices = centre.Compare(ann, *tree);
    ASSERT_EQ(devices.size(), 3u);
    ASSERT_TRUE(devices[0].known);
    EXPECT_EQ(devices[0].revision, 1);
    ASSERT_EQ(devices[0].differences.size(), 3u);
    EXPECT_EQ(devices[0].differences[0].change, RowChange::CountChanged);
    EXPECT_EQ(devices[0].differences[0].centreCount, 3);
    EXPECT_EQ(devices[0].differences[0].localCount, 2);
    EXPECT_EQ(devices[0].differences[1].change, RowChange::Added);
    EXPECT_TRUE(devices[0].differences[1].secondary);
    EXPECT_EQ(devices[0].differences[2].change, RowChange::Removed);
    EXPECT_EQ(devices[0].differences[2].name, u"断路器");
    EXPECT_TRUE(devices[1].known);
    EXPECT_TRUE(devices[1].differences.empty());
    EXPECT_FALSE(devices[2].known);
}

TEST_P(CentreOperations, TheLatestSubmittedProjectGivesTheOneCabinetTree) {
    EXPECT_FALSE(centre.OneCabinetTree(ann));
    auto older = substation(u"older");
    centre.SubmitItm(ann, *older);
    auto newer = substation(u"newer");
    centre.SubmitItm(ann, *newer);
    centre.SubmitBom(ann, *older);
    auto cabinet = centre.OneCabinetTree(ann);
    ASSERT_TRUE(cabinet);
    EXPECT_EQ(cabinet->m_strID, older->m_arrCabinets[0]->m_strID);
    EXPECT_TRUE(cabinet->m_arrChildren.IsEmpty());
    EXPECT_EQ(throughHexmoorXml(*cabinet)->m_arrPrimaryBom.GetSize(), 2);
}

TEST_P(CentreOperations, AccountsAndUsageFilesAreKept) {
    EXPECT_EQ(centre.CheckAccount(u"e", u"u", u"pw"), 1);
    EXPECT_EQ(centre.CheckAccount(u"e", u"u", u"pw"), 1);
    EXPECT_EQ(centre.CheckAccount(u"e", u"u", u"PW"), -1);
    EXPECT_EQ(centre.CheckAccount(u"e", u"v", u"PW"), 1);
    centre.KeepUsageFile(ann, u"item", u"7", u"<用量/>");
    const auto files = store->usageFiles();
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].key, u"7");
    EXPECT_EQ(files[0].text, u"<用量/>");
    EXPECT_EQ(files[0].enterprise, ann.enterprise);
}

INSTANTIATE_TEST_SUITE_P(Stores, CentreOperations, ::testing::ValuesIn(StoreMakers()),
                         [](const ::testing::TestParamInfo<StoreMaker>& info) { return info.param.name; });
