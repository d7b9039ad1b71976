// The JSON form of trees and rows: what is sent is what arrives, and documents of the wrong shape are
// refused instead of half read.
#include "platform/cloud/http/CentreJson.h"
#include "platform/cloud/http/HttpBomCentre.h"
#include "teamcentre/TeamTrees.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {

TEST(CentreJson, ATreeArrivesWithEveryFieldItsLinksAndItsDeviceList) {
    auto tree = team_test::project(u"华东变电站", 2);
    tree->m_strID = u"7";
    HMProjectTree_INFO* device = tree->m_arrCabinets[1];
    device->m_strBoms = u"<cabinet ID=\"9\"/>";
    device->m_nCabCount = 3;
    device->m_bChanged = true;
    device->m_arrSecondaryBom.Add({u"L", u"综保", u"PCS", u"1", u"r\n\"q\"", u"K"});
    // A device list in another order than the walk: kept as it was.
    tree->m_arrCabinets.RemoveAll();
    tree->m_arrCabinets.Add(device);
    tree->m_arrCabinets.Add(tree->m_arrChildren[0]->m_arrChildren[0]);

    const auto read = TreeFromJson(json::parse(TreeToJson(*tree).dump()));
    EXPECT_EQ(team_test::shape(*read), "华东变电站: { 出线:100 { AH1:0 AH2:0 } } devices: AH2 AH1");
    ASSERT_EQ(read->m_arrCabinets.GetSize(), 2);
    const HMProjectTree_INFO* second = read->m_arrCabinets[0];
    EXPECT_EQ(second, read->m_arrChildren[0]->m_arrChildren[1]);
    EXPECT_EQ(read->m_strID, CString(u"7"));
    EXPECT_EQ(std::make_tuple(second->m_strBoms, second->m_nCabCount, second->m_bChanged), std::make_tuple(device->m_strBoms, 3, true));
    EXPECT_EQ(second->m_arrSecondaryBom, device->m_arrSecondaryBom);
    EXPECT_EQ(second->m_arrPrimaryBom, device->m_arrPrimaryBom);
}

TEST(CentreJson, DocumentsOfTheWrongShapeAreRefused) {
    const json good = TreeToJson(*team_test::project(u"p", 1));
    json noName = good;
    noName.erase("name");
    json badDevice = good;
    badDevice["cabinets"] = json::array({99});
    json rootAsDevice = good;
    rootAsDevice["cabinets"] = json::array({0});
    json numberText = good;
    numberText["children"][0]["cirNo"] = 5;
    for (const json& bad : {noName, badDevice, rootAsDevice, numberText, json::array(), json("tree")})
        EXPECT_THROW(TreeFromJson(bad), CCentreJsonError) << bad.dump();
    json deep = good;
    json* at = &deep;
    for (int i = 0; i < kMaxTreeDepth + 2; ++i) {
        (*at)["children"] = json::array({good});
        (*at)["children"][0]["cabinets"] = json::array();
        at = &(*at)["children"][0];
    }
    EXPECT_THROW(TreeFromJson(deep), CCentreJsonError);

    // The client's list of projects to choose from: every field of every entry is checked before use.
    const json project = {{"id", 7}, {"name", "P\a\x1b[2J"}, {"created", "2026-01-01"}};
    // A parsed reply holds its IDs as unsigned numbers, one made in code as signed ones: both are taken.
    const json parsed = json::parse(R"({"id": 18446744073709551615, "name": "Q", "created": "2026-01-02"})");
    const auto listed = ProjectListFromJson(json::array({project, parsed}));
    ASSERT_TRUE(listed && listed->size() == 2);
    EXPECT_EQ(ProjectChoiceText(listed->front()), CString(u"P\\x07\\x1b[2J (ID 7, created 2026-01-01)"));
    EXPECT_EQ(listed->back().id, "18446744073709551615");
    std::vector<json> badLists{json::object(), json("p"), json::array({1})};
    for (const char* field : {"id", "name", "created"}) {
        json missing = project;
        missing.erase(field);
        badLists.push_back(json::array({project, missing}));
    }
    for (const json& id : {json(-7), json(0), json(7.5), json("7"), json(nullptr)}) {
        json wrong = project;
        wrong["id"] = id;
        badLists.push_back(json::array({wrong}));
    }
    for (const json& bad : badLists) EXPECT_FALSE(ProjectListFromJson(bad)) << bad.dump();
}

TEST(CentreJson, TheCentreFieldsAreCopiedOnlyIntoATreeOfTheSameShape) {
    auto mine = team_test::project(u"p", 2);
    auto answered = team_test::project(u"p", 2);
    answered->m_strID = u"1";
    answered->m_arrCabinets[0]->m_strID = u"3";
    answered->m_arrCabinets[0]->m_strBoms = u"<cabinet/>";
    HMProjectTree_INFO* kept = mine->m_arrCabinets[0];
    ASSERT_TRUE(CopyCentreFields(*answered, *mine));
    EXPECT_EQ(mine->m_arrCabinets[0], kept);
    EXPECT_EQ(kept->m_strID, CString(u"3"));
    EXPECT_EQ(kept->m_strBoms, CString(u"<cabinet/>"));

    auto other = team_test::project(u"p", 3);
    other->m_strID = u"2";
    EXPECT_FALSE(CopyCentreFields(*other, *mine));
    EXPECT_EQ(mine->m_strID, CString(u"1"));
}

} // namespace
