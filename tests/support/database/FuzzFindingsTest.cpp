// Access files that fuzzing found to drive the reading process into endless work: each read fails, the
// same way every time, and leaves the object closed. New findings go into tests/data/fuzz/access/.
#include "common/CapturedOutput.h"
#include "support/FileSystem.h"
#include "support/database/OperateMdb.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

std::vector<std::string> findingsOf(const std::string& reader) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(QX_TEST_DATA_DIR) + "/fuzz/" + reader))
        files.push_back(entry.path().string());
    return files;
}

} // namespace

TEST(AccessFuzzFindings, DamagedFilesAreRefusedTheSameWayEachTime) {
    const std::vector<std::string> files = findingsOf("access");
    ASSERT_FALSE(files.empty());
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        CapturedOutput output;
        COperateMdb first(QxFs::FromNative(file));
        COperateMdb second(QxFs::FromNative(file));
        EXPECT_FALSE(first.IsOpen());
        EXPECT_FALSE(second.IsOpen());
        CStringArray tables;
        first.GetTableNames(tables);
        EXPECT_TRUE(tables.IsEmpty());
        EXPECT_EQ(first.GetRecordCount(u"Table1"), -1);
        EXPECT_TRUE(output.printed.IsEmpty());  // a damaged file is no missing file
    }
}
