// A damaged word.mdb that makes the Access library allocate without end: its reading process is stopped at
// its limits, the same way on every read, and never takes the machine's memory.
#include "common/TempFolder.h"
#include "support/database/OperateMdb.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/resource.h>

namespace {

const std::string kAccessDir = std::string(QX_SHARED_TESTDATA_DIR) + "/access";

// The largest resident size of any child this process has waited for, in bytes.
long long largestChildResident() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<long long>(usage.ru_maxrss) * 1024;
}

} // namespace

TEST(AccessReaderGrowth, AMemoPageThatClaimsEndlessDataStopsAtTheMemoryLimit) {
    if (!std::filesystem::is_directory(kAccessDir)) GTEST_SKIP() << "Access test files not found: " << kAccessDir << " is absent";
    std::ifstream in(kAccessDir + "/testV1997.mdb", std::ios::binary);
    std::ostringstream whole;
    whole << in.rdbuf();
    std::string bytes = whole.str();
    ASSERT_EQ(bytes.size(), 118784u);
    // One byte of a row on the memo page 45 (page type 1, "LVAL"): libmdb then reads on and on, allocating.
    bytes[45 * 2048 + 0x36B] = static_cast<char>(0xF9);
    TempFolder folder;
    folder.writeFile("word.mdb", bytes);

    constexpr long long kLimitWithSlack = 600LL << 20;
    const bool measurable = largestChildResident() < kLimitWithSlack;
    for (int read = 0; read < 2; ++read) {
        COperateMdb db(folder.logic() + u"word.mdb");
        EXPECT_FALSE(db.IsOpen()) << "read " << read;
    }
    if (measurable) {
        EXPECT_LT(largestChildResident(), kLimitWithSlack);
    }
}
