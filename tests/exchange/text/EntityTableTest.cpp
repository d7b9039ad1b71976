#include "XmlTextFixtures.h"

#include "exchange/text/EntityTable.h"
#include "exchange/text/QxXmlTextDoc.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <utility>

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

TEST(EntityTable, HoldsTheHtml4ListAndAposInTheirBuckets) {
    const std::map<std::string, int> html4 = html4References();
    ASSERT_EQ(html4.size(), 252u);

    std::set<std::pair<std::string, int>> expected{{"apos", 39}};
    for (const auto& [name, code] : html4) expected.insert({lower(name), code});

    const CStringArray& buckets = GetEntityBuckets();
    ASSERT_EQ(buckets.GetSize(), QX_ENTITY_BUCKET_COUNT);
    std::multiset<std::pair<std::string, int>> found;
    for (int b = 0; b < buckets.GetSize(); ++b) {
        const std::string text = buckets[b].ToUtf8();
        for (size_t at = 0; at < text.size();) {
            const size_t length = static_cast<size_t>(text[at] - '0');
            ASSERT_TRUE(length >= 2 && length <= 8 && at + 5 + length <= text.size()) << text;
            const std::string name = text.substr(at + 5, length);
            EXPECT_EQ(GetEntityBucket(CString(name).view()), b) << name;
            found.insert({name, std::stoi(text.substr(at + 1, 4))});
            at += 5 + length;
        }
    }
    EXPECT_EQ(found.size(), 253u);
    const std::set<std::pair<std::string, int>> distinct(found.begin(), found.end());
    EXPECT_EQ(distinct, expected);

    EXPECT_EQ(buckets[3], CString(u"40185sup1"));
    EXPECT_EQ(buckets[27], CString(u"40710circ"));
    EXPECT_EQ(buckets[GetEntityBucket(u"brvbar")], CString(u"60166brvbar"));
    EXPECT_EQ(buckets[GetEntityBucket(u"alpha")], CString(u"50913alpha50202ecirc70933upsilon50945alpha50234ecirc70965upsilon"));
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
