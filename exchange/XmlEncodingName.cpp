// The encoding names of XML declarations.
#include "exchange/XmlEncodingName.h"

#include "support/Encoding.h"

#include <algorithm>
#include <cctype>

namespace {

std::string lowerCase(std::string_view name) {
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

} // namespace

std::string XmlDecoderName(std::string_view declared) {
    static const char* const kGb2312Names[] = {"gb2312", "gb_2312-80", "csgb2312", "euc-cn", "euccn", "x-euc-cn"};
    const std::string lower = lowerCase(declared);
    const bool gb2312 = std::any_of(std::begin(kGb2312Names), std::end(kGb2312Names), [&](const char* n) { return lower == n; });
    return gb2312 ? std::string("GB18030") : std::string(declared);
}

bool XmlLabelFitsAsciiBytes(const std::string& iconvName) {
    constexpr std::string_view kMarkup = "<?xml version=\"1.0\" encoding=\"x\"?><a b='c'/>";
    const auto decoded = DecodeCodePage(kMarkup, iconvName);
    return decoded && *decoded == Utf8ToUtf16(kMarkup);
}
