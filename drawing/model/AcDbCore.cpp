// Handles and object ids.
#include "drawing/model/AcDbCore.h"

#include "drawing/model/AcDbObject.h"

#include <array>
#include <type_traits>

namespace {

// The value of each byte as a hexadecimal digit, or -1: handles are read by the hundred thousand.
constexpr auto kHexDigits = [] {
    std::array<signed char, 256> digits{};
    digits.fill(-1);
    for (int i = 0; i < 10; ++i) digits[static_cast<size_t>('0' + i)] = static_cast<signed char>(i);
    for (int i = 0; i < 6; ++i) {
        digits[static_cast<size_t>('A' + i)] = static_cast<signed char>(10 + i);
        digits[static_cast<size_t>('a' + i)] = static_cast<signed char>(10 + i);
    }
    return digits;
}();

template <typename Char>
bool parseHex(std::basic_string_view<Char> text, std::uint64_t& value) {
    size_t first = 0;
    size_t last = text.size();
    while (first < last && (text[first] == ' ' || text[first] == '\t')) ++first;
    while (last > first && (text[last - 1] == ' ' || text[last - 1] == '\t' || text[last - 1] == '\r')) --last;
    if (first == last) return false;
    // Leading zeros do not count towards the sixteen digits a handle may have.
    while (first + 1 < last && text[first] == '0') ++first;
    if (last - first > 16) return false;
    std::uint64_t result = 0;
    for (size_t i = first; i < last; ++i) {
        const auto ch = static_cast<std::make_unsigned_t<Char>>(text[i]);
        const int digit = ch < kHexDigits.size() ? kHexDigits[ch] : -1;
        if (digit < 0) return false;
        result = (result << 4) | static_cast<unsigned>(digit);
    }
    value = result;
    return true;
}

} // namespace

const AcDbObjectId AcDbObjectId::kNull{};

AcDbHandle::AcDbHandle(std::u16string_view text) {
    parse(text, *this);
}

bool AcDbHandle::parse(std::u16string_view text, AcDbHandle& handle) {
    std::uint64_t value;
    if (!parseHex(text, value)) return false;
    handle.m_value = value;
    return true;
}

bool AcDbHandle::parse(std::string_view text, AcDbHandle& handle) {
    std::uint64_t value;
    if (!parseHex(text, value)) return false;
    handle.m_value = value;
    return true;
}

CString AcDbHandle::text() const {
    static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
    char16_t buffer[17];
    int pos = 16;
    std::uint64_t v = m_value;
    do {
        buffer[--pos] = kDigits[v & 0xF];
        v >>= 4;
    } while (v != 0);
    return CString(std::u16string_view(buffer + pos, static_cast<size_t>(16 - pos)));
}

bool AcDbHandle::getIntoAsciiBuffer(char16_t* buffer, size_t length) const {
    const CString hex = text();
    if (buffer == nullptr || length < static_cast<size_t>(hex.GetLength()) + 1) return false;
    std::copy(hex.str().begin(), hex.str().end(), buffer);
    buffer[hex.GetLength()] = u'\0';
    return true;
}

bool AcDbObjectId::isErased() const {
    return m_object != nullptr && m_object->isErased();
}

AcDbHandle AcDbObjectId::handle() const {
    return m_object ? m_object->objectHandle() : AcDbHandle();
}

AcDbDatabase* AcDbObjectId::database() const {
    return m_object ? m_object->database() : nullptr;
}
