// CString: the system's wide text, UTF-16 code units in memory, with the operations the logic uses.
#pragma once

#include "support/Export.h"

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

class QX_API CString {
public:
    CString() = default;
    CString(const char16_t* text) : m_text(text ? text : u"") {}
    CString(std::u16string text) : m_text(std::move(text)) {}
    CString(std::u16string_view text) : m_text(text) {}
    CString(const char16_t* text, int length) : m_text(text, static_cast<size_t>(length)) {}
    CString(char16_t ch, int repeat = 1) : m_text(static_cast<size_t>(repeat), ch) {}
    // Narrow text is UTF-8 (source literals, the terminal, the XML library).
    CString(const char* utf8);
    CString(const std::string& utf8) : CString(utf8.c_str()) {}

    static CString FromUtf8(std::string_view utf8);
    std::string ToUtf8() const;

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    char16_t GetAt(int index) const { return m_text.at(static_cast<size_t>(index)); }
    void SetAt(int index, char16_t ch) { m_text.at(static_cast<size_t>(index)) = ch; }
    char16_t operator[](int index) const { return GetAt(index); }

    const std::u16string& str() const { return m_text; }
    std::u16string_view view() const { return m_text; }
    const char16_t* c_str() const { return m_text.c_str(); }
    operator std::u16string_view() const { return m_text; }

    // Sub-strings; counts and positions are clamped as MFC does.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    // Positions are UTF-16 indexes; -1 when not found.
    int Find(char16_t ch, int start = 0) const;
    int Find(const CString& sub, int start = 0) const;
    int ReverseFind(char16_t ch) const;

    // Return the number of replacements or removals.
    int Replace(const CString& from, const CString& to);
    int Replace(char16_t from, char16_t to);
    int Remove(char16_t ch);
    int Insert(int index, const CString& text);
    int Delete(int index, int count = 1);

    // Trimming removes space, tab, CR, LF, vertical tab and form feed unless other characters are given.
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim(const CString& chars);
    CString& TrimLeft(const CString& chars);
    CString& TrimRight(const CString& chars);
    CString& Trim(char16_t ch) { return Trim(CString(ch)); }
    CString& TrimLeft(char16_t ch) { return TrimLeft(CString(ch)); }
    CString& TrimRight(char16_t ch) { return TrimRight(CString(ch)); }

    // Case changes and case-blind comparison fold ASCII letters only, as the host's C run-time does.
    CString& MakeUpper();
    CString& MakeLower();
    int Compare(const CString& other) const;
    int CompareNoCase(const CString& other) const;
    bool EqualsNoCase(const CString& other) const { return CompareNoCase(other) == 0; }
    bool StartsWith(const CString& prefix) const;
    bool EndsWith(const CString& suffix) const;
    bool Contains(const CString& sub) const { return Find(sub) >= 0; }

    CString& operator+=(const CString& other) { m_text += other.m_text; return *this; }
    CString& operator+=(char16_t ch) { m_text += ch; return *this; }
    friend CString operator+(CString left, const CString& right) { left += right; return left; }
    friend CString operator+(CString left, const char16_t* right) { left += CString(right); return left; }
    friend CString operator+(const char16_t* left, const CString& right) { return CString(left) + right; }
    friend CString operator+(CString left, const char* right) { left += CString(right); return left; }
    friend CString operator+(const char* left, const CString& right) { return CString(left) + right; }
    friend CString operator+(CString left, char16_t right) { left += right; return left; }

    friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const CString& a, const char16_t* b) { return a.m_text == (b ? b : u""); }
    friend bool operator==(const CString& a, const char* b) { return a == CString(b); }
    friend bool operator<(const CString& a, const CString& b) { return a.m_text < b.m_text; }

private:
    std::u16string m_text;
};

// Writes the text as UTF-8.
QX_API std::ostream& operator<<(std::ostream& out, const CString& text);

QX_API bool IsQxBlank(char16_t ch);
QX_API char16_t FoldAsciiUpper(char16_t ch);

template <>
struct std::hash<CString> {
    size_t operator()(const CString& s) const noexcept { return std::hash<std::u16string>()(s.str()); }
};
