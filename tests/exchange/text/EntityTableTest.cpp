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
