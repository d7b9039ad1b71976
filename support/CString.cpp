// CString: the system's wide text.
#include "support/CString.h"

#include "support/Encoding.h"

#include <algorithm>
#include <ostream>

namespace {

const std::u16string_view kBlanks = u" \t\r\n\v\f";

size_t clampCount(int count) { return count < 0 ? 0 : static_cast<size_t>(count); }

} // namespace

std::ostream& operator<<(std::ostream& out, const CString& text) { return out << text.ToUtf8(); }

bool IsQxBlank(char16_t ch) { return kBlanks.find(ch) != std::u16string_view::npos; }

char16_t FoldAsciiUpper(char16_t ch) { return (ch >= u'a' && ch <= u'z') ? char16_t(ch - 32) : ch; }

CString::CString(const char* utf8) : m_text(utf8 ? Utf8ToUtf16(utf8) : std::u16string()) {}

CString CString::FromUtf8(std::string_view utf8) { return CString(Utf8ToUtf16(utf8)); }

std::string CString::ToUtf8() const { return Utf16ToUtf8(m_text); }

CString CString::Left(int count) const { return CString(m_text.substr(0, clampCount(count))); }

CString CString::Right(int count) const {
    const size_t n = std::min(clampCount(count), m_text.size());
    return CString(m_text.substr(m_text.size() - n));
}

CString CString::Mid(int first) const {
    const size_t start = std::min(clampCount(first), m_text.size());
    return CString(m_text.substr(start));
}

CString CString::Mid(int first, int count) const {
    const size_t start = std::min(clampCount(first), m_text.size());
    return CString(m_text.substr(start, clampCount(count)));
}

int CString::Find(char16_t ch, int start) const {
    if (start < 0 || static_cast<size_t>(start) > m_text.size()) return -1;
    const size_t pos = m_text.find(ch, static_cast<size_t>(start));
    return pos == std::u16string::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(const CString& sub, int start) const {
    if (start < 0 || static_cast<size_t>(start) > m_text.size()) return -1;
    const size_t pos = m_text.find(sub.m_text, static_cast<size_t>(start));
    return pos == std::u16string::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(char16_t ch) const {
    const size_t pos = m_text.rfind(ch);
    return pos == std::u16string::npos ? -1 : static_cast<int>(pos);
}

int CString::Replace(const CString& from, const CString& to) {
    if (from.IsEmpty()) return 0;
    int count = 0;
    std::u16string out;
    size_t pos = 0;
    for (;;) {
        const size_t hit = m_text.find(from.m_text, pos);
        if (hit == std::u16string::npos) break;
        out.append(m_text, pos, hit - pos);
        out += to.m_text;
        pos = hit + from.m_text.size();
        ++count;
    }
    if (count == 0) return 0;
    out.append(m_text, pos, std::u16string::npos);
    m_text = std::move(out);
    return count;
}

int CString::Replace(char16_t from, char16_t to) {
    int count = 0;
    for (char16_t& ch : m_text)
        if (ch == from) { ch = to; ++count; }
    return count;
}

int CString::Remove(char16_t ch) {
    const size_t before = m_text.size();
    std::erase(m_text, ch);
    return static_cast<int>(before - m_text.size());
}

int CString::Insert(int index, const CString& text) {
    const size_t at = std::min(clampCount(index), m_text.size());
    m_text.insert(at, text.m_text);
    return GetLength();
}

int CString::Delete(int index, int count) {
    const size_t at = clampCount(index);
    if (at < m_text.size()) m_text.erase(at, clampCount(count));
    return GetLength();
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }
CString& CString::TrimLeft() { return TrimLeft(CString(std::u16string(kBlanks))); }
CString& CString::TrimRight() { return TrimRight(CString(std::u16string(kBlanks))); }
CString& CString::Trim(const CString& chars) { return TrimRight(chars).TrimLeft(chars); }

CString& CString::TrimLeft(const CString& chars) {
    const size_t first = m_text.find_first_not_of(chars.m_text);
    if (first == std::u16string::npos) m_text.clear();
    else m_text.erase(0, first);
    return *this;
}

CString& CString::TrimRight(const CString& chars) {
    const size_t last = m_text.find_last_not_of(chars.m_text);
    if (last == std::u16string::npos) m_text.clear();
    else m_text.erase(last + 1);
    return *this;
}

CString& CString::MakeUpper() {
    for (char16_t& ch : m_text) ch = FoldAsciiUpper(ch);
    return *this;
}

CString& CString::MakeLower() {
    for (char16_t& ch : m_text)
        if (ch >= u'A' && ch <= u'Z') ch = char16_t(ch + 32);
    return *this;
}

int CString::Compare(const CString& other) const {
    const int r = m_text.compare(other.m_text);
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

// Folds to lower case like _wcsicmp, so that '_' sorts before letters as it does there.
int CString::CompareNoCase(const CString& other) const {
    auto lower = [](char16_t ch) { return (ch >= u'A' && ch <= u'Z') ? char16_t(ch + 32) : ch; };
    const size_t n = std::min(m_text.size(), other.m_text.size());
    for (size_t i = 0; i < n; ++i) {
        const char16_t a = lower(m_text[i]);
        const char16_t b = lower(other.m_text[i]);
        if (a != b) return a < b ? -1 : 1;
    }
    if (m_text.size() == other.m_text.size()) return 0;
    return m_text.size() < other.m_text.size() ? -1 : 1;
}

bool CString::StartsWith(const CString& prefix) const { return m_text.starts_with(prefix.m_text); }
bool CString::EndsWith(const CString& suffix) const { return m_text.ends_with(suffix.m_text); }
