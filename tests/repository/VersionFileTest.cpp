// The version journal file on its own: reading, stamping, rewriting.
#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "repository/VersionFile.h"
#include "support/FileUtils.h"
#include "support/TextFile.h"

#include <gtest/gtest.h>

namespace {

class VersionFile : public ::testing::Test {
protected:
    VersionFile() { SetCorvaneInstallDirOverride(install.logic()); }
    ~VersionFile() override { SetCorvaneInstallDirOverride(CString()); }

    CString journalPath() const { return install.logic() + u"Server.xml"; }
    void writeJournal(const CString& text) { ASSERT_TRUE(WriteLegacyText(journalPath(), text)); }
    CStringArray journalLines() const {
        CStringArray lines;
        ReadFileLines(journalPath(), lines, true);
        return lines;
    }
    // The entries as "path|version|operation;" in their order.
    static std::string entriesText(const COperateVersionFile& journal) {
        CString text;
        for (const STRUCT_FILE_INFO& entry : journal.GetEntries())
            text += entry.m_strPath + u"|" + entry.m_strVersion + u"|" + entry.m_strOperation + u";";
        return text.ToUtf8();
    }

    TempFolder install;
};

} // namespace

TEST(VersionStamp, IsTheClockUnlessTheClockIsNotAheadOfTheJournal) {
    EXPECT_EQ(COperateVersionFile::NextVersionStamp(u"2015,03,02,09,05,07", u"2015,03,02,09,05,08"), u"2015,03,02,09,05,08");
    // Two changes in one second, or a slow clock: the last field is raised, without a leading zero.
    EXPECT_EQ(COperateVersionFile::NextVersionStamp(u"2015,03,02,09,05,07", u"2015,03,02,09,05,07"), u"2015,03,02,09,05,8");
    EXPECT_EQ(COperateVersionFile::NextVersionStamp(u"2015,03,02,09,05,59", u"2014,01,01,00,00,00"), u"2015,03,02,09,05,60");
    // Raising 9 to 10 would sort below as text: a field is added instead.
    EXPECT_EQ(COperateVersionFile::NextVersionStamp(u"2015,03,02,09,05,9", u"2015,03,02,09,05,10"), u"2015,03,02,09,05,9,1");
    EXPECT_EQ(COperateVersionFile::NextVersionStamp(u"junk", u"2015"), u"junk,1");

    const CString now = COperateVersionFile::MakeVersionStamp();
    ASSERT_EQ(now.GetLength(), 19);
    EXPECT_EQ(now[4], u',');
    EXPECT_EQ(now[16], u',');
}

TEST(VersionStamp, NeverGoesBackOverAFastRunOfChanges) {
    CString last = u"2099,12,31,23,59,07";  // a journal ahead of this clock
    for (int i = 0; i < 500; ++i) {
        const CString next = COperateVersionFile::NextVersionStamp(last, COperateVersionFile::MakeVersionStamp());
        ASSERT_GT(next.CompareNoCase(last), 0) << next << " after " << last;
        last = next;
    }
}

TEST_F(VersionFile, LoadsEntriesInFileOrderPassingOverTheVersionLineAndBlankLines) {
    writeJournal(u"\n版本日期：2015,03,02,09,05,07\n  a\\b.dwg|2015,03,02,09,05,07|MOD  \n\njunk\nonly|one\nx|s|op|more\n");
    COperateVersionFile journal(journalPath());
    ASSERT_TRUE(journal.Load());
    EXPECT_EQ(journal.m_strVersionLine, u"版本日期：2015,03,02,09,05,07");
    // A line without a bar gives three empty fields.
    EXPECT_EQ(entriesText(journal), "a\\b.dwg|2015,03,02,09,05,07|MOD;||;only||;x|s|op|more;");

    COperateVersionFile missing(install.logic() + u"none.xml");
    EXPECT_FALSE(missing.Load());
}

// Removing takes the first match only, ignoring case; adding puts a batch at the front under one stamp;
// replacing a path moves its line to the front under the next stamp; each rewrites the whole file.
TEST_F(VersionFile, RemovesAddsAndReplacesEntriesAndRewritesTheFile) {
    writeJournal(u"版本日期：2099,01,01,00,00,07\nA.dwg|1|MOD\na.DWG|0|MOD\nb.dwg|2099,01,01,00,00,07|MOD");
    COperateVersionFile journal(journalPath());
    journal.Load();
    EXPECT_FALSE(journal.RemoveEntries({}));
    EXPECT_TRUE(journal.RemoveEntries({u"a.dwg"}));
    EXPECT_EQ(entriesText(journal), "a.DWG|0|MOD;b.dwg|2099,01,01,00,00,07|MOD;");
    ASSERT_TRUE(journal.AddEntries({u"x\\", u"y\\"}, {u"DEL", u"REN"}));
    ASSERT_TRUE(journal.UpdateEntry(u"B.DWG", u"MOD"));
    EXPECT_EQ(journalLines(), (CStringArray{u"版本日期：2099,01,01,00,00,9", u"B.DWG|2099,01,01,00,00,9|MOD",
                                            u"y\\|2099,01,01,00,00,8|REN", u"x\\|2099,01,01,00,00,8|DEL",
                                            u"a.DWG|0|MOD"}));
    EXPECT_NE(install.readFile("Server.xml").back(), '\n');  // no line end behind the last line
    EXPECT_NE(install.readFile("Server.xml").find("\r\n"), std::string::npos);
}

TEST_F(VersionFile, OnlyTheMainLibraryAloneMarksThePartLibraryVersion) {
    COperateVersionFile journal(journalPath());
    ASSERT_TRUE(journal.AddEntries({u"Data\\QxMainLib.mdb", u"a.dwg"}, {u"MOD", u"MOD"}));
    EXPECT_FALSE(install.exists("Client_PartLib.xml"));
    ASSERT_TRUE(journal.UpdateEntry(u"data\\qxmainlib.MDB", u"MOD"));
    CString partLib;
    ASSERT_TRUE(ReadFirstLine(install.logic() + u"Client_PartLib.xml", partLib));
    EXPECT_EQ(partLib, journalLines()[0]);
}

TEST_F(VersionFile, AJournalThatCannotBeWrittenIsAFailure) {
    install.makeFolder("Server.xml");  // a folder where the file should be
    COperateVersionFile journal(journalPath());
    EXPECT_FALSE(journal.AddEntries({u"a.dwg"}, {u"MOD"}));
}
