// Sites that break during an upload or the journal update: no staged file is left missing, and the journal
// on the site is never shorter than before.
#include "RepositoryFixture.h"

#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <filesystem>

namespace {

const char16_t kJournalText[] = u"版本日期：2015,01,01,00,00,02\nb.dwg|2015,01,01,00,00,02|MOD\na.dwg|2015,01,01,00,00,01|MOD";

class JournalDropped : public RepositoryFixture {
protected:
    JournalDropped() : RepositoryFixture({"--drop-retr", "Server.xml"}) {}
};

class RenamesRefused : public RepositoryFixture {
protected:
    RenamesRefused() : RepositoryFixture({"--refuse-rename"}) {}
};

int siteLineCount(const TempFolder& site) {
    CStringArray lines;
    ReadFileLines(site.logic() + u"Server.xml", lines, false);
    return lines.GetSize();
}

} // namespace

TEST_F(JournalDropped, AJournalThatCannotBeReadIsNeitherReplacedNorShortened) {
    ASSERT_TRUE(WriteLegacyText(site.logic() + u"Server.xml", kJournalText));
    auto connection = client();
    EXPECT_EQ(connection->CheckClientVersion(), 0);
    install.writeFile("c.dwg", "c");
    EXPECT_FALSE(connection->SubmitFile(install.logic() + u"c.dwg", u"c.dwg"));
    EXPECT_EQ(site.readFile("c.dwg"), "c");  // the change itself is on the site
    EXPECT_EQ(siteLineCount(site), 3);
    EXPECT_FALSE(site.exists("Server.xml.bak"));
}

TEST_F(RenamesRefused, StagedJournalUpdatesKeepTheJournalWhole) {
    install.writeFile("LocalData/Ftp.bg", "");
    ASSERT_TRUE(WriteLegacyText(site.logic() + u"Server.xml", kJournalText));
    auto connection = client();
    install.writeFile("c.dwg", "c");
    EXPECT_TRUE(connection->SubmitFile(install.logic() + u"c.dwg", u"c.dwg"));
    EXPECT_TRUE(connection->SubmitFile(install.logic() + u"c.dwg", u"d.dwg"));
    EXPECT_EQ(siteLineCount(site), 5);
    EXPECT_EQ(site.readFile("d.dwg"), "c");
}

TEST_F(RenamesRefused, AStagedFileIsNeverLeftMissingWhenTheRenameIsRefused) {
    install.writeFile("LocalData/Ftp.bg", "");
    site.writeFile("a.dwg", "old");
    auto connection = client();
    install.writeFile("new.dwg", "new");
    EXPECT_TRUE(connection->UploadFile(install.logic() + u"new.dwg", u"a.dwg"));
    EXPECT_EQ(site.readFile("a.dwg"), "new");
    // The staging file is left beside it, as a held target leaves it.
    size_t staged = 0;
    for (const auto& entry : std::filesystem::directory_iterator(site.native()))
        staged += entry.path().filename().string().rfind("#10.0.0.1(alpha)-", 0) == 0;
    EXPECT_EQ(staged, 1u);
}
