// The BOM centre's operations, on every kind of store the centre runs on.
#include "CentreTestSupport.h"

#include "common/CapturedOutput.h"
#include "centre/operations/BomCentreOperations.h"
#include "centre/operations/BomComparison.h"
#include "centre/operations/CentreIds.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace centre_test;

namespace {

class CentreOperations : public ::testing::TestWithParam<StoreMaker> {
protected:
    CentreOperations() : store(GetParam().open(folder)), centre(*store) {}

    int revisionCount(const HMProjectTree_INFO& device) {
        return static_cast<int>(store->revisions(*ParseCentreId(device.m_strID)).size());
    }

    // A substation submitted by ann, its devices no longer marked, as after the module wrote them back.
    std::unique_ptr<HMProjectTree_INFO> submitted(const CString& name = u"华东变电站") {
        auto tree = substation(name);
        centre.SubmitItm(ann, *tree);
        for (HMProjectTree_INFO* device : tree->m_arrCabinets) device->m_bChanged = false;
        return tree;
    }

    // The rows an import gives, or "refused"; a refusal must also empty the list it was given.
    std::vector<std::string> imported(const CString& project, const CString& cabinet, const CentreUser& who) {
        BomRows rows;
        rows.Add(row(u"stale", u"x", u"1"));
        if (centre.ImportRows(who, project, cabinet, rows)) return rowTexts(rows);
        return {rows.IsEmpty() ? "refused" : "refused, keeping stale rows"};
    }

    TempFolder folder;
    CapturedOutput output;  // a box from the reader would show a document that does not read back
    std::unique_ptr<ICentreStore> store;
    CBomCentreOperations centre;
    const CentreUser ann{u"华东电气", u"ann"};
    const CentreUser other{u"西北电力", u"olga"};
};

const HMProjectTree_INFO& child(const HMProjectTree_INFO& node, int index) { return *node.m_arrChildren[index]; }

const std::string kBreaker = "断路器|VS1-12/1250|1|带 <手车> & \"底座\"|QF-01";
const std::string kTransformers = "电流互感器|LZZBJ9-10|3||";
const std::string kProtection = "综保装置|PCS-9611|1||KP";

} // namespace

TEST_P(CentreOperations, ASubmittedProjectComesBackWithItsTreeAndRowsThroughTheModulesReader) {
    auto local = substation();
    centre.SubmitItm(ann, *local);

    // Every node got its ID and both blocks and is marked for writing back.
    EXPECT_TRUE(ParseCentreId(local->m_strID) && local->m_bChanged);
    for (const HMProjectTree_INFO* node : {&child(*local, 0), &child(*local, 1), &child(child(*local, 1), 0)})
        EXPECT_TRUE(ParseCentreId(node->m_strID) && node->m_bChanged && node->m_strDataSchema.StartsWith(u"<NewDataSet"))
            << node->m_strName;
    EXPECT_TRUE(child(*local, 0).m_strBoms.StartsWith(u"<cabinet"));

    auto cloud = centre.ProjectTree(ann, local->m_strID);
    ASSERT_TRUE(cloud);
    // The devices at every depth, in walk order.
    EXPECT_EQ(shape(*cloud), "华东变电站: { AH1 进线柜:0 出线:100 { AH2:0 AH4:0 } } devices: AH1 进线柜 AH2 AH4");
    // The rows are in the block only, so that unpacking them does not double them.
    EXPECT_TRUE(cloud->m_arrCabinets[0]->m_arrPrimaryBom.IsEmpty());

    // Root, sub-project and devices read back through the module's writer and reader.
    const auto root = throughHexmoorXml(*cloud);
    EXPECT_EQ(root->m_strID, local->m_strID);
    EXPECT_EQ(root->m_arrChildren.GetSize(), 2);
    EXPECT_EQ(throughHexmoorXml(child(*cloud, 1))->m_arrChildren.GetSize(), 2);
    for (int i = 0; i < 3; ++i) {
        const HMProjectTree_INFO& sent = *local->m_arrCabinets[i];
        const auto read = throughHexmoorXml(*cloud->m_arrCabinets[i]);
        EXPECT_EQ(std::tie(read->m_strID, read->m_strCirNo, read->m_strCirSize), std::tie(sent.m_strID, sent.m_strCirNo, sent.m_strCirSize));
        EXPECT_EQ(read->m_arrPrimaryBom, withoutLabelAndCode(sent.m_arrPrimaryBom)) << sent.m_strName;
        EXPECT_EQ(read->m_arrSecondaryBom, withoutLabelAndCode(sent.m_arrSecondaryBom)) << sent.m_strName;
    }
    // What the submit left in the caller's tree reads back the same way.
    EXPECT_EQ(throughHexmoorXml(child(*local, 0))->m_arrSecondaryBom.GetSize(), 1);
    EXPECT_TRUE(output.boxes.empty());
}

TEST_P(CentreOperations, TreesThatCannotBecomeFoldersOrRepeatAProjectNameAreRefusedWholly) {
    auto first = submitted(u"Station");
    const std::vector<std::pair<const char*, std::function<void(HMProjectTree_INFO&)>>> breakages{
        {"a project name the enterprise has, in other case", [](HMProjectTree_INFO& t) { t.m_strName = u"STATION"; }},
        {"siblings equal ignoring case", [](HMProjectTree_INFO& t) { addNode(*t.m_arrChildren[1], t, u"ah2", u"0"); }},
        {"a backslash", [](HMProjectTree_INFO& t) { t.m_arrCabinets[2]->m_strName = u"AH\\4"; }},
        {"a slash", [](HMProjectTree_INFO& t) { t.m_arrChildren[1]->m_strName = u"出/线"; }},
        {"an empty name", [](HMProjectTree_INFO& t) { t.m_arrCabinets[0]->m_strName = CString(); }},
        {"a parent folder", [](HMProjectTree_INFO& t) { t.m_arrCabinets[1]->m_strName = u".."; }},
        {"a device with children", [](HMProjectTree_INFO& t) { addNode(*t.m_arrCabinets[0], t, u"inner", u"0"); }},
        {"a node without a type", [](HMProjectTree_INFO& t) { t.m_arrChildren[1]->m_strType = CString(); }},
        {"a root that is a device", [](HMProjectTree_INFO& t) { t.m_strType = u"0"; }},
        {"a project name with a separator", [](HMProjectTree_INFO& t) { t.m_strName = u"a\\b"; }},
    };
    for (const auto& [what, breakTree] : breakages) {
        auto tree = substation();
        breakTree(*tree);
        EXPECT_THROW(centre.SubmitItm(ann, *tree), CCentreError) << what;
        EXPECT_TRUE(tree->m_strID.IsEmpty() && tree->m_arrCabinets[0]->m_strID.IsEmpty() && !tree->m_bChanged) << what;
    }
    EXPECT_EQ(centre.Projects(ann).size(), 1u);

    // Another enterprise has its own names, and sees nothing of the first one's projects.
    auto second = substation(u"STATION");
    centre.SubmitItm(other, *second);
    EXPECT_EQ(centre.Projects(other).size(), 1u);
    EXPECT_FALSE(centre.ProjectTree(other, first->m_strID));
    EXPECT_TRUE(centre.ProjectName(other, first->m_strID).IsEmpty());
    EXPECT_EQ(centre.ProjectName(ann, first->m_strID), u"Station");
}

TEST_P(CentreOperations, ImportGivesADeviceOrTheProjectAndEachBomSubmitIsANewRevisionTheBlockHolds) {
    auto tree = submitted();
    // The first device's secondary rows follow its primary ones.
    EXPECT_EQ(imported(tree->m_strID, CString(), ann),
              (std::vector<std::string>{kBreaker, kTransformers, kProtection, "断路器|VS1-12/630|2||"}));
    for (const auto& [project, cabinet] : std::vector<std::pair<CString, CString>>{
             {CString(), CString()},
             {u"77", CString()},
             {tree->m_strID, u"77"},
             {tree->m_strID, tree->m_arrChildren[1]->m_strID}})
        EXPECT_EQ(imported(project, cabinet, ann), std::vector<std::string>{"refused"}) << project << "/" << cabinet;
    EXPECT_EQ(imported(tree->m_strID, CString(), other), std::vector<std::string>{"refused"});

    // A BOM submit makes revision 2 of every device; the block holds the accepted rows.
    HMProjectTree_INFO& feeder = *tree->m_arrCabinets[1];
    feeder.m_arrPrimaryBom[0].m_strRowCount = u"4";
    feeder.m_arrSecondaryBom.Add(row(u"电度表", u"DTSD341", u"1"));

    const SubmitReport report = centre.SubmitBom(ann, *tree);
    EXPECT_EQ(report.accepted, 3);
    EXPECT_TRUE(report.skipped.empty());
    EXPECT_EQ(revisionCount(feeder), 2);
    EXPECT_TRUE(feeder.m_bChanged);
    EXPECT_NE(feeder.m_strBoms.Find(u"Revision=\"2\""), -1);
    const auto read = throughHexmoorXml(feeder);
    EXPECT_EQ(rowTexts(read->m_arrPrimaryBom), std::vector<std::string>{"断路器|VS1-12/630|4||"});
    EXPECT_EQ(rowTexts(read->m_arrSecondaryBom), std::vector<std::string>{"电度表|DTSD341|1||"});

    // The centre's import gives the newest revision; the older one is kept.
    EXPECT_EQ(imported(tree->m_strID, feeder.m_strID, ann), (std::vector<std::string>{"断路器|VS1-12/630|4||", "电度表|DTSD341|1||"}));
    const auto history = store->revisions(*ParseCentreId(feeder.m_strID));
    EXPECT_EQ(store->rows(history[0].id).front().count, u"2");
}

TEST_P(CentreOperations, DevicesTheCentreDoesNotKnowAreSkippedAndTheOthersTaken) {
    auto tree = submitted();
    auto elsewhere = submitted(u"其他");
    tree->m_arrCabinets[0]->m_strID = u"999999";                             // no such node
    tree->m_arrCabinets[2]->m_strID = elsewhere->m_arrCabinets[2]->m_strID;  // another project's device
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

TEST_P(CentreOperations, ThePartsCatalogueAddsUpEqualPartsOverTheEnterprise) {
    auto tree = substation();
    tree->m_arrCabinets[2]->m_arrPrimaryBom.Add(row(u"断路器", u"VS1-12/630", u"3台"));
    tree->m_arrCabinets[2]->m_arrPrimaryBom.Add(row(u"断路器", u"VS1-12/630", u"1", u"", u"other code"));
    centre.SubmitItm(ann, *tree);
    auto foreign = substation(u"foreign");
    centre.SubmitItm(other, *foreign);

    // 5 = 2 + the leading digits of "3台"; the part of another code is another part; a part has no remark.
    EXPECT_EQ(rowTexts(centre.PartsCatalogue(ann)), (std::vector<std::string>{"断路器|VS1-12/1250|1||QF-01", kTransformers, kProtection,
                                                                              "断路器|VS1-12/630|5||", "断路器|VS1-12/630|1||other code"}));
}

TEST_P(CentreOperations, AnErrorHalfwayLeavesTheStoreAndTheTreeAsTheyWere) {
    auto tree = submitted();
    const CString boms = tree->m_arrCabinets[2]->m_strBoms;
    // Breaks at the third revision of a submit, then at the fourth node of a new project.
    const auto fullDisk = [] { throw CCentreStoreError(u"the disk is full"); };
    BreakingStore breaking(*store, 2, fullDisk);
    tree->m_arrCabinets[0]->m_arrPrimaryBom.RemoveAll();
    EXPECT_THROW(CBomCentreOperations(breaking).SubmitBom(ann, *tree), CCentreStoreError);
    for (HMProjectTree_INFO* device : tree->m_arrCabinets) EXPECT_TRUE(revisionCount(*device) == 1 && !device->m_bChanged);
    EXPECT_EQ(tree->m_arrCabinets[2]->m_strBoms, boms);

    BreakingStore breakingAgain(*store, 4, fullDisk);
    auto another = substation(u"another");
    EXPECT_THROW(CBomCentreOperations(breakingAgain).SubmitItm(ann, *another), CCentreStoreError);
    EXPECT_TRUE(another->m_strID.IsEmpty());
    EXPECT_EQ(centre.Projects(ann).size(), 1u);
    // The name was not taken by the half-made project.
    centre.SubmitItm(ann, *another);
}

TEST_P(CentreOperations, TheComparisonTablesAddedRemovedAndChangedPartsPerDeviceInLinedUpColumns) {
    auto tree = submitted();
    HMProjectTree_INFO& incoming = *tree->m_arrCabinets[0];
    incoming.m_arrPrimaryBom[1].m_strRowCount = u"2";                      // changed
    incoming.m_arrPrimaryBom.RemoveAt(0);                                 // removed
    incoming.m_arrSecondaryBom.Add(row(u"电流互感器", u"LZZBJ9-10", u"1"));  // same part, other system: added
    tree->m_arrCabinets[2]->m_strID = CString();

    // Wide characters take two columns, so every column lines up under its heading.
    const std::string expected =
        "Device AH1 进线柜 (ID " + incoming.m_strID.ToUtf8() + "): 3 differences from revision 1 of the centre.\n"
        "  change         system     name        model        centre  drawings\n"
        "  count changed  primary    电流互感器  LZZBJ9-10    3       2\n"
        "  added          secondary  电流互感器  LZZBJ9-10    -       1\n"
        "  removed        primary    断路器      VS1-12/1250  1       -\n"
        "Device AH2 (ID " + tree->m_arrCabinets[1]->m_strID.ToUtf8() + "): the same as revision 1 of the centre.\n"
        "Device AH4: the centre does not know it (ID \"\"); not compared.\n"
        "BOM comparison: 3 devices, 2 differ from the centre.\n";
    EXPECT_EQ(FormatComparison(centre.Compare(ann, *tree)).ToUtf8(), expected);
}

TEST_P(CentreOperations, TheLatestSubmittedProjectGivesTheOneCabinetTreeWhoseSecondarySubmitKeepsThePrimaryRows) {
    EXPECT_FALSE(centre.OneCabinetTree(ann));
    auto older = submitted(u"older");
    submitted(u"newer");
    centre.SubmitBom(ann, *older);
    auto cabinet = centre.OneCabinetTree(ann);
    ASSERT_TRUE(cabinet);
    EXPECT_EQ(cabinet->m_strID, older->m_arrCabinets[0]->m_strID);
    EXPECT_TRUE(cabinet->m_arrChildren.IsEmpty());
    EXPECT_EQ(throughHexmoorXml(*cabinet)->m_arrPrimaryBom.GetSize(), 2);

    // Its primary rows are the current revision's, whatever the submit of the secondary ones carries.
    cabinet->m_arrPrimaryBom.Add(row(u"ignored", u"x", u"9"));
    cabinet->m_arrSecondaryBom.Add(row(u"端子", u"UK5N", u"40"));
    EXPECT_TRUE(centre.SubmitSecondary(ann, *cabinet).skipped.empty());
    EXPECT_EQ(imported(older->m_strID, cabinet->m_strID, ann),
              (std::vector<std::string>{kBreaker, kTransformers, "端子|UK5N|40||"}));
    EXPECT_TRUE(cabinet->m_bChanged);
}

TEST_P(CentreOperations, AccountsAndUsageFilesAreKept) {
    // The first login makes the account; later ones must match it.
    EXPECT_EQ(centre.CheckAccount(u"e", u"u", u"pw"), 1);
    EXPECT_EQ(centre.CheckAccount(u"e", u"u", u"pw"), 1);
    EXPECT_EQ(centre.CheckAccount(u"e", u"u", u"PW"), -1);
    EXPECT_EQ(centre.CheckAccount(u"e", u"v", u"PW"), 1);
    centre.KeepUsageFile(ann, u"item", u"7", u"<用量/>");
    const auto files = store->usageFiles();
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(std::tie(files[0].key, files[0].text, files[0].enterprise), std::make_tuple(CString(u"7"), CString(u"<用量/>"), ann.enterprise));
}

INSTANTIATE_TEST_SUITE_P(Stores, CentreOperations, ::testing::ValuesIn(StoreMakers()),
                         [](const ::testing::TestParamInfo<StoreMaker>& info) { return info.param.name; });
