// Sites that break during an upload or the journal update: no staged file is left missing, and the journal
// on the site is never shorter than before.
#include "RepositoryFixture.h"

#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <filesystem>

namespace {

class BrokenSite : public RepositoryFixture {
protected:
    void writeJournal() {
        ASSERT_TRUE(WriteLegacyText(site.logic() + u"Server.xml",
                                    u"版本日期：2015,01,01,00,00,02\nb.dwg|2015,01,01,00,00,02|MOD\na.dwg|2015,01,01,00,00,01|MOD"));
    }
    int journalLineCount() const {
        CStringArray lines;
        ReadFileLines(site.logic() + u"Server.xml", lines, false);
        return lines.GetSize();
    }
};

} // namespace

TEST_F(BrokenSite, AJournalThatCannotBeReadIsNeitherReplacedNorShortened) {
    serve({"--drop-retr", "Server.xml"});
    writeJournal();
    auto connection = client();
    EXPECT_EQ(connection->CheckClientVersion(), 0);
    install.writeFile("c.dwg", "c");
    EXPECT_FALSE(connection->SubmitFile(install.logic() + u"c.dwg", u"c.dwg"));
    EXPECT_EQ(site.readFile("c.dwg"), "c");  // the change itself is on the site
    EXPECT_EQ(journalLineCount(), 3);
    EXPECT_FALSE(site.exists("Server.xml.bak"));
}

TEST_F(BrokenSite, WhenRenamesAreRefusedStagedFilesAndJournalUpdatesAreNeverLeftMissing) {
    serve({"--refuse-rename"});
    install.writeFile("LocalData/Ftp.bg", "");
    writeJournal();
    site.writeFile("a.dwg", "old");
    install.writeFile("new.dwg", "new");
    auto connection = client();
    EXPECT_TRUE(connection->UploadFile(install.logic() + u"new.dwg", u"a.dwg"));
    EXPECT_EQ(site.readFile("a.dwg"), "new");
    // The staging file is left beside it, as a held target leaves it.
    size_t staged = 0;
    for (const auto& entry : std::filesystem::directory_iterator(site.native()))
        staged += entry.path().filename().string().rfind("#10.0.0.1(alpha)-", 0) == 0;
    EXPECT_EQ(staged, 1u);

    EXPECT_TRUE(connection->SubmitFile(install.logic() + u"new.dwg", u"c.dwg"));
    EXPECT_TRUE(connection->SubmitFile(install.logic() + u"new.dwg", u"d.dwg"));
    EXPECT_EQ(journalLineCount(), 5);
    EXPECT_EQ(site.readFile("d.dwg"), "new");
}
