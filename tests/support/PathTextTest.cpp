#include "support/PathText.h"

#include <gtest/gtest.h>

#include <vector>

TEST(PathText, JoinsAndTakesApartPathsAsTheHostDoes) {
    const struct { const char* what; CString got; CString expected; } rows[] = {
        {"one backslash at the seam", JoinPath(u"a\\", u"\\b"), u"a\\b"},
        {"a backslash added", JoinPath(u"a", u"b"), u"a\\b"},
        {"the left's kept", JoinPath(u"a\\", u"b"), u"a\\b"},
        {"the right's kept", JoinPath(u"a", u"\\b"), u"a\\b"},
        {"an empty left has no backslash", JoinPath(u"", u"b"), u"\\b"},
        {"an empty right has no backslash", JoinPath(u"a", u""), u"a\\"},
        {"a bare name has no file name", GetFileNameOfPath(u"name.txt"), u""},
        {"a bare name has no last item", GetLastPathItem(u"name.txt"), u""},
        {"nor has a bare folder", GetLastPathItem(u"name\\"), u""},
        {"a folder path's last item", GetLastPathItem(u"a\\b\\folder\\"), u"folder"},
        {"a folder path has no file name", GetFileNameOfPath(u"a\\b\\folder\\"), u""},
        {"a trailing backslash counts for the parent", GetParentPath(u"a\\b\\folder\\"), u"a\\b\\folder"},
        {"a file's parent", GetParentPath(u"a\\b\\c.dwg"), u"a\\b"},
        {"a bare file has no parent", GetParentPath(u"c.dwg"), u""},
        {"a dot at the end is no extension", RemoveFileExtension(u"a\\name."), u"a\\name."},
        {"a dot of a folder is no extension", GetFileExtension(u"a.b\\name"), u""},
        {"the last dot's extension", GetFileExtension(u"a\\x.tar.GZ"), u"GZ"},
        {"only the last extension goes", RemoveFileExtension(u"a\\x.tar.gz"), u"a\\x.tar"},
    };
    for (const auto& row : rows) EXPECT_EQ(row.got, row.expected) << row.what;

    // The kinds ignore case.
    EXPECT_EQ((std::vector<bool>{HasFileExtension(u"a\\name."), HasFileExtension(u"a.b\\name"), IsPrjFile(u"a\\A.PRJ"),
                                 IsItmFile(u"x\\项目.Itm"), IsItmFile(u"x\\itm")}),
              (std::vector<bool>{false, false, true, true, false}));
}
