// File locks between two hosts: check-out, re-check-out by the holder, a forced take-over and the refused
// check-in that follows it, locks taken and released by name. The two hosts are one process acting under
// two identities.
#include "RepositoryFixture.h"

#include "support/FileUtils.h"
#include "support/TextFile.h"

namespace {

class FileLocks : public RepositoryFixture {
protected:
    FileLocks() {
        site.writeFile("lib/a.dwg", "v1");
        site.writeFile("a.dwg.bak", "10.0.0.9(root)");  // a lock of another file of the same name, at the root
    }
    std::string holder(const std::string& lockPath) const {
        CStringArray lines;
        ReadFileLines(site.logic() + CString(lockPath), lines, false);
        return lines.IsEmpty() ? std::string() : lines[0].ToUtf8();
    }
    CString local() const { return install.logic() + u"lib\\a.dwg"; }
};

const char* const kAlpha = "10.0.0.1(alpha)";
const char* const kBeta = "10.0.0.2(beta)";

} // namespace

// A check-out fetches and locks beside the file, the holder may check out again, and a missing file is not
// locked; a forced take-over refuses the first host's check-in; taking or releasing another host's lock asks.
TEST_F(FileLocks, ACheckOutLocksBesideTheFileAForcedTakeOverRefusesTheCheckInAndEveryOverruleAsks) {
    auto connection = client();
    ASSERT_TRUE(connection->CheckOutFile(local(), u"lib", u"a.dwg"));
    EXPECT_EQ(install.readFile("lib/a.dwg"), "v1");
    EXPECT_EQ(holder("lib/a.dwg.bak"), kAlpha);
    EXPECT_FALSE(connection->IsCheckOutRevoked(u"lib\\a.dwg"));
    EXPECT_FALSE(connection->IsCheckOutLost(u"lib\\a.dwg"));

    site.writeFile("lib/a.dwg", "v2");
    ASSERT_TRUE(connection->CheckOutFile(local(), u"lib", u"a.dwg"));
    EXPECT_EQ(install.readFile("lib/a.dwg"), "v2");
    EXPECT_EQ(holder("lib/a.dwg.bak"), kAlpha);
    EXPECT_EQ(holder("a.dwg.bak"), "10.0.0.9(root)");
    EXPECT_TRUE(prompts.questions.empty());

    // A file that is not on the site is not checked out.
    EXPECT_TRUE(connection->CheckOutFile(local(), u"lib", u"none.dwg"));
    EXPECT_EQ(output.boxes.back().text, u"服务器上不存在<lib\\none.dwg>文件！");
    EXPECT_FALSE(site.exists("lib/none.dwg.bak"));
    EXPECT_FALSE(connection->IsCheckOutRevoked(u"lib\\none.dwg"));

    actAs(kBeta);
    prompts.answers = {u"n"};
    EXPECT_FALSE(connection->CheckOutFile(local(), u"lib", u"a.dwg"));
    EXPECT_EQ(holder("lib/a.dwg.bak"), kAlpha);
    prompts.answers = {u"y"};
    EXPECT_TRUE(connection->CheckOutFile(local(), u"lib", u"a.dwg"));
    EXPECT_EQ(holder("lib/a.dwg.bak"), kBeta);
    ASSERT_EQ(prompts.questions.size(), 2u);
    EXPECT_EQ(prompts.questions[1],
              u"主机IP为10.0.0.1(alpha)的用户正对文件<a.dwg>进行操作，可等待其完成后再继续...\n是否强制撤销其库修改操作?");

    actAs(kAlpha);
    EXPECT_TRUE(connection->IsCheckOutLost(u"lib\\a.dwg"));
    EXPECT_TRUE(connection->IsCheckOutRevoked(u"lib\\a.dwg"));
    ASSERT_FALSE(output.boxes.empty());
    EXPECT_EQ(output.boxes.back().text, u"文件<lib\\a.dwg>的库修改作已被主机IP为10.0.0.2(beta)的用户强制撤销，无法入库...");
    // Cancelling leaves the new holder's lock alone.
    connection->CancelCheckOut(local(), u"lib");
    EXPECT_EQ(holder("lib/a.dwg.bak"), kBeta);

    actAs(kBeta);
    connection->CancelCheckOut(local(), u"lib");
    EXPECT_FALSE(site.exists("lib/a.dwg.bak"));
    actAs(kAlpha);
    EXPECT_TRUE(connection->IsCheckOutRevoked(u"lib\\a.dwg"));
    EXPECT_EQ(output.boxes.back().text, u"文件<lib\\a.dwg>的库修改作已被强制撤销，无法入库...");

    // Taking and releasing a lock ask before they overrule another host (a lock with junk in it).
    site.writeFile("lib/junk.dwg.bak", std::string("\xff\xfe\x00junk", 7));
    prompts.answers = {u"n"};
    EXPECT_FALSE(connection->TakeLock(u"lib\\junk.dwg.bak"));
    EXPECT_FALSE(connection->ReleaseLock(u"lib\\junk.dwg"));
    EXPECT_EQ(prompts.questions.size(), 4u);

    ASSERT_TRUE(connection->TakeLock(u"lib\\mine.dwg.bak"));
    EXPECT_EQ(holder("lib/mine.dwg.bak"), kAlpha);
    ASSERT_TRUE(connection->TakeLock(u"lib\\mine.dwg.bak"));  // the holder again: no question
    EXPECT_TRUE(connection->ReleaseLock(u"lib\\mine.dwg"));
    EXPECT_FALSE(site.exists("lib/mine.dwg.bak"));
    EXPECT_EQ(prompts.questions.size(), 4u);
}
