// DxfTokenizer: splits ASCII DXF text into (group code, value) tags. It knows nothing of sections or
// entities; values stay views into the caller's buffer.
#pragma once

#include "support/Export.h"

#include <cstddef>
#include <string_view>

struct DxfTag {
    int code = 0;
    std::string_view value;
};

// Text that arrives piece by piece: the tokenizer asks for more when a line runs past what has arrived.
class DxfTextFeed {
public:
    virtual ~DxfTextFeed() = default;
    // Makes more text available and gives the text from the byte that stood at `keepFrom` of the text given
    // last, with what arrived behind it; at the end of the input nothing new arrives. The text may move to
    // other addresses: what was given before stays readable where it was until release().
    virtual std::string_view more(size_t keepFrom) = 0;
    // Nothing given before the last call of more() is looked at again.
    virtual void release() = 0;
};

class DxfTokenizer {
public:
    // `text` is what has arrived of the input; `feed`, when given, brings the rest.
    explicit DxfTokenizer(std::string_view text, DxfTextFeed* feed = nullptr) : m_text(text), m_feed(feed) {}

    // Passes over a UTF-8 byte-order mark at the start.
    void skipByteOrderMark();
    // The next tag; false at the end of the text or at a group code line that is no integer.
    bool next(DxfTag& tag);
    // True when next() stopped at a bad group code line, or at a code line without its value line.
    bool failed() const { return m_failed; }
    // The line number (from 1) of the last line read, for messages.
    size_t line() const { return m_line; }
    // The text before `position` (in the last tag read) is no longer needed, nor any tag read before the
    // last; the feed may drop it when more text arrives.
    void keepFrom(const char* position);

private:
    bool nextPlain(DxfTag& tag);
    bool nextGeneral(DxfTag& tag);
    bool readLine(std::string_view& line);
    bool moreText();

    std::string_view m_text;
    DxfTextFeed* m_feed;
    size_t m_pos = 0;
    size_t m_keep = 0;  // what lies before this offset of m_text is no longer needed
    size_t m_line = 0;
    bool m_failed = false;
};

// Most tags are a code of a few digits (blank-padded) and a short value, both wholly in the text that has
// arrived: they are read in one pass, here where the loader can inline it (a drawing has millions of tags).
// Anything else takes nextGeneral().
inline bool DxfTokenizer::nextPlain(DxfTag& tag) {
    const char* p = m_text.data() + m_pos;
    const char* const end = m_text.data() + m_text.size();
    while (p < end && *p == ' ') ++p;
    const char* const digits = p;
    int code = 0;
    const char* const digitsEnd = end - p > 5 ? p + 5 : end;
    while (p < digitsEnd && static_cast<unsigned char>(*p - '0') < 10) code = code * 10 + (*p++ - '0');
    if (p == digits || code > 32767) return false;
    if (p < end && *p == '\r') ++p;
    if (p >= end || *p != '\n') return false;
    const char* const value = ++p;
    while (p < end && *p != '\n') ++p;
    if (p >= end) return false;
    size_t length = static_cast<size_t>(p - value);
    if (length > 0 && value[length - 1] == '\r') --length;
    tag.code = code;
    tag.value = std::string_view(value, length);
    m_pos = static_cast<size_t>(p + 1 - m_text.data());
    m_line += 2;
    return true;
}

inline bool DxfTokenizer::next(DxfTag& tag) {
    return (!m_failed && nextPlain(tag)) || nextGeneral(tag);
}

// Values of tags, read without regard to the locale; blanks around a number are allowed. A real must be
// finite.
QX_API bool ParseDxfDouble(std::string_view text, double& value);
QX_API bool ParseDxfInt(std::string_view text, long long& value);
