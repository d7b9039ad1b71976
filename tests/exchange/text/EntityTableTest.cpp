#include "XmlTextFixtures.h"

#include "exchange/text/EntityTable.h"
#include "exchange/text/QxXmlTextDoc.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

namespace {

// The HTML 4 list as an independent source writes it: name and code, 252 lines.
std::map<std::string, int> html4References() {
    std::map<std::string, int> references;
    std::ifstream in(std::string(QX_TEST_DATA_DIR) + "/xmltext/html4-entities.txt");
    std::string name;
    int code;
    while (in >> name >> code) references[name] = code;
    return references;
}

std::string lower(std::string name) {
    for (char& ch : name) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    return name;
}

} // namespace

// The buckets keep the original's layout: length, four digits of the code, the folded name.
TEST(EntityTable, BucketsHoldTheFoldedNamesInNameOrder) {
    const CStringArray& buckets = GetEntityBuckets();
    ASSERT_EQ(buckets.GetSize(), QX_ENTITY_BUCKET_COUNT);
    EXPECT_EQ(buckets[3], CString(u"40185sup1"));
    EXPECT_EQ(buckets[27], CString(u"40710circ"));
    EXPECT_EQ(buckets[GetEntityBucket(u"brvbar")], CString(u"60166brvbar"));
    EXPECT_EQ(buckets[GetEntityBucket(u"alpha")],
              CString(u"50913alpha50202ecirc70933upsilon50945alpha50234ecirc70965upsilon"));
}

TEST(EntityTable, EveryNameDecodesToTheFirstOfItsSpellings) {
    const std::map<std::string, int> html4 = html4References();
    // The map iterates in ASCII order, capitals first: the first spelling of a folded name wins.
    std::map<std::string, int> firstOfFolded;
    for (const auto& [name, code] : html4) firstOfFolded.emplace(lower(name), code);
    for (const auto& [name, code] : html4) {
        const CString reference = CString("&" + name + ";");
        EXPECT_EQ(CQxXmlTextDoc::UnescapeText(reference.c_str()), CString(char16_t(firstOfFolded[lower(name)]))) << name;
    }
    EXPECT_EQ(LookupEntityCode(u"apos"), 39);
    EXPECT_EQ(LookupEntityCode(u"prime"), 8243);
    EXPECT_EQ(LookupEntityCode(u"nosuch"), 0);
}
