#include "support/PathText.h"

#include <gtest/gtest.h>

TEST(JoinPath, PutsExactlyOneBackslashAtTheSeam) {
    EXPECT_EQ(JoinPath(u"a\\", u"\\b"), CString(u"a\\b"));
    EXPECT_EQ(JoinPath(u"a", u"b"), CString(u"a\\b"));
    EXPECT_EQ(JoinPath(u"a\\", u"b"), CString(u"a\\b"));
    EXPECT_EQ(JoinPath(u"a", u"\\b"), CString(u"a\\b"));
}

TEST(JoinPath, EmptySidesCountAsHavingNoBackslash) {
    EXPECT_EQ(JoinPath(u"", u"b"), CString(u"\\b"));
    EXPECT_EQ(JoinPath(u"a", u""), CString(u"a\\"));
}

TEST(PathItems, BareNamesHaveNoFileNameOrLastItem) {
    EXPECT_EQ(GetFileNameOfPath(u"name.txt"), CString());
    EXPECT_EQ(GetLastPathItem(u"name.txt"), CString());
    EXPECT_EQ(GetLastPathItem(u"name\\"), CString());
}

TEST(PathItems, TrailingBackslashCountsForParentButNotForLastItem) {
    EXPECT_EQ(GetLastPathItem(u"a\\b\\folder\\"), CString(u"folder"));
    EXPECT_EQ(GetFileNameOfPath(u"a\\b\\folder\\"), CString());
    EXPECT_EQ(GetParentPath(u"a\\b\\folder\\"), CString(u"a\\b\\folder"));
    EXPECT_EQ(GetParentPath(u"a\\b\\c.dwg"), CString(u"a\\b"));
    EXPECT_EQ(GetParentPath(u"c.dwg"), CString());
}

TEST(Extensions, NeedAtLeastOneCharacterBehindTheLastDotOfTheLastItem) {
    EXPECT_FALSE(HasFileExtension(u"a\\name."));
    EXPECT_EQ(RemoveFileExtension(u"a\\name."), CString(u"a\\name."));
    EXPECT_FALSE(HasFileExtension(u"a.b\\name"));
    EXPECT_EQ(GetFileExtension(u"a.b\\name"), CString());
    EXPECT_EQ(GetFileExtension(u"a\\x.tar.GZ"), CString(u"GZ"));
    EXPECT_EQ(RemoveFileExtension(u"a\\x.tar.gz"), CString(u"a\\x.tar"));
}

TEST(Extensions, ProjectAndDeviceFilesIgnoreCase) {
    EXPECT_TRUE(IsPrjFile(u"a\\A.PRJ"));
    EXPECT_TRUE(IsItmFile(u"x\\项目.Itm"));
    EXPECT_FALSE(IsItmFile(u"x\\itm"));
}
