#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "platform/params/ParameterLibrary.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

class ParameterLibrary : public ::testing::Test {
protected:
    void SetUp() override { SetCorvaneInstallDirOverride(install.logic()); }
    void TearDown() override { SetCorvaneInstallDirOverride(CString()); }

    mode_t loginFileMode() const {
        struct stat st;
        return ::stat((install.native() + "/LocalData/QxLoginInfo.dat").c_str(), &st) == 0 ? st.st_mode & 0777 : 0;
    }

    TempFolder install;
};

} // namespace

// The stored login holds the credential: a file that another program left readable by all is made private
// again by the next login, and the record reads back whole.
TEST_F(ParameterLibrary, StoredLoginIsOwnerOnlyAfterEveryWrite) {
    install.writeFile("LocalData/QxLoginInfo.dat", "old record");
    ::chmod((install.native() + "/LocalData/QxLoginInfo.dat").c_str(), 0644);
    QxLSetLoginInfo_Varnholt_CV201301(u"acme", u"ann", u"secret", u"localhost:8585");
    EXPECT_EQ(loginFileMode(), 0600u);
    CString record;
    ASSERT_EQ(QxGetCollectInfo_Varnholt_CV201301(2, record), 1);
    EXPECT_EQ(record, CString(u"acme·ann·secret·localhost:8585"));
}
