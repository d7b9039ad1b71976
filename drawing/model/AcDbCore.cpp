// Handles and object ids.
#include "drawing/model/AcDbCore.h"

#include "drawing/model/AcDbObject.h"

namespace {

template <typename Char>
bool parseHex(std::basic_string_view<Char> text, std::uint64_t& value) {
    size_t first = 0;
    size_t last = text.size();
    while (first < last && (text[first] == ' ' || text[first] == '\t')) ++first;
    while (last > first && (text[last - 1] == ' ' || text[last - 1] == '\t' || text[last - 1] == '\r')) --last;
    if (first == last) return false;
    std::uint64_t result = 0;
    int significant = 0;
    for (size_t i = first; i < last; ++i) {
        const auto ch = static_cast<char32_t>(text[i]);
        unsigned digit;
        if (ch >= '0' && ch <= '9') digit = ch - '0';
        else if (ch >= 'A' && ch <= 'F') digit = ch - 'A' + 10;
        else if (ch >= 'a' && ch <= 'f') digit = ch - 'a' + 10;
        else return false;
        if (result != 0 || digit != 0) ++significant;
        if (significant > 16) return false;
        result = (result << 4) | digit;
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
