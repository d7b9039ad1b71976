// Splitting DXF text into tags.
#include "drawing/dxf/DxfTokenizer.h"

#include <charconv>
#include <cmath>
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

bool ParseDxfDouble(std::string_view text, double& value) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return false;
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
