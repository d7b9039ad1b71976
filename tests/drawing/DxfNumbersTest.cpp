// Reals of a drawing read exactly as the standard library reads them, whichever way the reader takes.
#include "drawing/dxf/DxfTokenizer.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

namespace {

// The standard reading of a trimmed text: whole, finite, or no number.
bool standardReading(const std::string& text, double& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && std::isfinite(value);
}

} // namespace

TEST(DxfNumbersTest, RealsReadAsTheStandardLibraryReadsThem) {
    std::vector<std::string> texts = {"0", "-0", "-0.0", "0.", "1.", ".5", "-.5", "5e3", "1e400", "nan", "inf", "-",
                                      "", "1..2", "1.2.3", "--1", "0x10", "12a", "123456789012345",
                                      "1234567890123456", "0.000000000000001", "9007199254740993", "-1130.0"};
    std::mt19937_64 random(7);
    for (int i = 0; i < 200000; ++i) {
        std::string text = random() % 4 == 0 ? "-" : "";
        const int whole = static_cast<int>(random() % 10);
        const int fraction = static_cast<int>(random() % 12);
        for (int d = 0; d < whole; ++d) text += static_cast<char>('0' + random() % 10);
        if (random() % 3 != 0) text += '.';
        for (int d = 0; d < fraction; ++d) text += static_cast<char>('0' + random() % 10);
        texts.push_back(text);
    }
    for (const std::string& text : texts) {
        double expected = 0.0;
        double read = 0.0;
        const bool standard = standardReading(text, expected);
        ASSERT_EQ(ParseDxfDouble(text, read), standard) << text;
        if (standard) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(expected)) << text;
        }
    }
    double padded = 0.0;
    EXPECT_TRUE(ParseDxfDouble("  +2.5 \r", padded));
    EXPECT_EQ(padded, 2.5);
}
