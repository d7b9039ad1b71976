// Splitting DXF text into tags.
#include "drawing/dxf/DxfTokenizer.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
    return text;
}

// The common form of a group code line, read fast: blanks, digits, blanks. Other forms go to ParseDxfInt.
bool parsePlainCode(std::string_view line, long long& code) {
    size_t i = 0;
    while (i < line.size() && line[i] == ' ') ++i;
    const size_t digits = i;
    long long value = 0;
    while (i < line.size() && line[i] >= '0' && line[i] <= '9' && i - digits < 6) value = value * 10 + (line[i++] - '0');
    if (i == digits) return false;
    while (i < line.size() && (line[i] == ' ' || line[i] == '\r')) ++i;
    if (i != line.size()) return false;
    code = value;
    return true;
}

} // namespace

void DxfTokenizer::skipByteOrderMark() {
    if (m_pos == 0 && m_text.starts_with("\xEF\xBB\xBF")) m_pos = 3;
}

void DxfTokenizer::keepFrom(const char* position) {
    if (m_feed == nullptr || position < m_text.data() || position > m_text.data() + m_text.size()) return;
    m_keep = static_cast<size_t>(position - m_text.data());
    m_feed->release();
}

// The new text begins at the keep mark: offsets into the old one move down by it.
bool DxfTokenizer::moreText() {
    if (m_feed == nullptr) return false;
    const size_t kept = m_text.size() - m_keep;
    m_text = m_feed->more(m_keep);
    m_pos -= m_keep;
    m_keep = 0;
    return m_text.size() > kept;
}

bool DxfTokenizer::readLine(std::string_view& line) {
    if (m_pos >= m_text.size() && !moreText()) return false;
    const void* newline = nullptr;
    size_t searched = m_pos;
    // A line that runs past what has arrived waits for more; only the new bytes are searched again.
    while ((newline = std::memchr(m_text.data() + searched, '\n', m_text.size() - searched)) == nullptr) {
        searched = m_text.size() - m_keep;
        if (!moreText()) break;
    }
    const char* start = m_text.data() + m_pos;
    const size_t left = m_text.size() - m_pos;
    const size_t length = newline ? static_cast<size_t>(static_cast<const char*>(newline) - start) : left;
    line = std::string_view(start, length);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    m_pos += length + (newline ? 1 : 0);
    ++m_line;
    return true;
}

bool DxfTokenizer::nextGeneral(DxfTag& tag) {
    if (m_failed) return false;
    std::string_view codeLine;
    if (!readLine(codeLine)) return false;
    long long code;
    std::string_view valueLine;
    if ((!parsePlainCode(codeLine, code) && !ParseDxfInt(codeLine, code)) || code < -32768 || code > 32767 ||
        !readLine(valueLine)) {
        m_failed = true;
        return false;
    }
    tag.code = static_cast<int>(code);
    tag.value = valueLine;
    return true;
}

namespace {

// Most reals of a drawing are short decimals such as "-1130.0": with at most fifteen digits both the digits
// and the power of ten are exact doubles, and one division rounds correctly, so the value is the one
// from_chars gives, without its general machinery.
bool parseShortDecimal(std::string_view text, double& value) {
    static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    size_t i = text.starts_with('-') ? 1 : 0;
    const bool negative = i == 1;
    std::int64_t digits = 0;
    int count = 0;
    int fractionDigits = 0;
    bool sawPoint = false;
    bool sawDigit = false;
    for (; i < text.size(); ++i) {
        const char ch = text[i];
        if (ch == '.' && !sawPoint && sawDigit) {
            sawPoint = true;
            continue;
        }
        if (ch < '0' || ch > '9' || ++count > 15) return false;
        sawDigit = true;
        digits = digits * 10 + (ch - '0');
        if (sawPoint) ++fractionDigits;
    }
    if (!sawDigit) return false;
    const double magnitude = static_cast<double>(digits) / kPowersOfTen[fractionDigits];
    value = negative ? -magnitude : magnitude;
    return true;
}

} // namespace

bool ParseDxfDouble(std::string_view text, double& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return false;
    if (parseShortDecimal(text, value)) return true;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    // "nan" and "inf" are numbers to from_chars, but no coordinate a drawing can hold.
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && std::isfinite(value);
}

bool ParseDxfInt(std::string_view text, long long& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return false;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}
