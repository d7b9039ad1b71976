// resbuf chains and the items objects keep.
#include "drawing/model/Resbuf.h"

#include "support/Format.h"

#include <array>
#include <cstring>

static_assert(sizeof(ResItem) == 32, "an item should stay as small as a point and its code");

namespace {

// The kind of a DXF group code, by its range.
constexpr RbKind kindOfGroupCode(int code) {
    if (code >= 10 && code <= 37) return RbKind::Point;
    if (code == 38 || code == 39) return RbKind::Real;  // elevation and thickness
    if (code >= 40 && code <= 59) return RbKind::Real;
    if (code >= 60 && code <= 79) return RbKind::Int16;
    if (code >= 90 && code <= 99) return RbKind::Int32;
    if (code >= 110 && code <= 139) return RbKind::Point;
    if (code >= 140 && code <= 149) return RbKind::Real;
    if (code >= 160 && code <= 169) return RbKind::Int64;
    if (code >= 170 && code <= 179) return RbKind::Int16;
    if (code >= 210 && code <= 239) return RbKind::Point;
    if (code >= 270 && code <= 299) return RbKind::Int16;
    if (code >= 370 && code <= 389) return RbKind::Int16;
    if (code >= 400 && code <= 409) return RbKind::Int16;
    if (code >= 420 && code <= 429) return RbKind::Int32;
    if (code >= 440 && code <= 459) return RbKind::Int32;
    if (code >= 460 && code <= 469) return RbKind::Real;
    if (code >= 1010 && code <= 1039) return RbKind::Point;
    if (code >= 1040 && code <= 1059) return RbKind::Real;
    if (code >= 1060 && code <= 1070) return RbKind::Int16;
    if (code == 1071) return RbKind::Int32;
    return RbKind::Text;
}

// Every item of every drawing asks for its kind: group codes are looked up, not compared range by range.
constexpr auto kGroupCodeKinds = [] {
    std::array<RbKind, 1072> kinds{};
    for (size_t code = 0; code < kinds.size(); ++code) kinds[code] = kindOfGroupCode(static_cast<int>(code));
    return kinds;
}();

} // namespace

RbKind RbKindOf(int code) {
    if (code >= 0 && code < static_cast<int>(kGroupCodeKinds.size())) return kGroupCodeKinds[static_cast<size_t>(code)];
    switch (code) {
    case RTREAL: case RTANG: return RbKind::Real;
    case RTPOINT: case RT3DPOINT: return RbKind::Point;
    case RTSHORT: return RbKind::Int16;
    case RTLONG: return RbKind::Int32;
    default: return RbKind::Text;
    }
}

resbuf* acutNewRb(int restype) {
    auto* item = new resbuf{};
    item->rbnext = nullptr;
    item->restype = static_cast<short>(restype);
    std::memset(&item->resval, 0, sizeof(item->resval));
    return item;
}

int acutRelRb(resbuf* chain) {
    while (chain != nullptr) {
        resbuf* next = chain->rbnext;
        if (RbKindOf(chain->restype) == RbKind::Text) delete[] chain->resval.rstring;
        delete chain;
        chain = next;
    }
    return RTNORM;
}

void SetRbString(resbuf& item, const CString& text) {
    delete[] item.resval.rstring;
    auto* copy = new char16_t[static_cast<size_t>(text.GetLength()) + 1];
    std::copy(text.str().begin(), text.str().end(), copy);
    copy[text.GetLength()] = u'\0';
    item.resval.rstring = copy;
}

ResItem ResItem::text(short code, const CString& value) {
    return textFromView(code, value.view());
}

ResItem ResItem::textFromView(short code, std::u16string_view value) {
    ResItem item;
    item.m_code = code;
    item.setText(value);
    return item;
}

ResItem ResItem::real(short code, double value) {
    ResItem item;
    item.m_code = code;
    item.m_held = Held::Real;
    item.m_value.real = value;
    return item;
}

ResItem ResItem::point(short code, const AcGePoint3d& value) {
    ResItem item;
    item.m_code = code;
    item.m_held = Held::Point;
    item.m_value.point[0] = value.x;
    item.m_value.point[1] = value.y;
    item.m_value.point[2] = value.z;
    return item;
}

ResItem ResItem::integer(short code, std::int64_t value) {
    ResItem item;
    item.m_code = code;
    item.m_held = Held::Integer;
    item.m_value.integer = value;
    return item;
}

void ResItem::setText(std::u16string_view value) {
    m_held = Held::Text;
    m_length = static_cast<std::uint32_t>(value.size());
    char16_t* target = m_value.inlineText;
    if (textOnHeap()) target = m_value.heapText = new char16_t[value.size()];
    std::copy(value.begin(), value.end(), target);
}

void ResItem::release() {
    if (textOnHeap()) delete[] m_value.heapText;
    m_held = Held::Text;
    m_length = 0;
}

ResItem::ResItem(const ResItem& other) : m_code(other.m_code), m_held(other.m_held), m_length(other.m_length), m_value(other.m_value) {
    if (other.textOnHeap()) setText(other.textView());
}

ResItem::ResItem(ResItem&& other) noexcept
    : m_code(other.m_code), m_held(other.m_held), m_length(other.m_length), m_value(other.m_value) {
    other.m_held = Held::Text;
    other.m_length = 0;
}

ResItem& ResItem::operator=(const ResItem& other) {
    if (this == &other) return *this;
    ResItem copy(other);
    return *this = std::move(copy);
}

ResItem& ResItem::operator=(ResItem&& other) noexcept {
    if (this == &other) return *this;
    release();
    m_code = other.m_code;
    m_held = other.m_held;
    m_length = other.m_length;
    m_value = other.m_value;
    other.m_held = Held::Text;
    other.m_length = 0;
    return *this;
}

ResItem::~ResItem() {
    release();
}

std::u16string_view ResItem::textView() const {
    if (m_held != Held::Text) return {};
    return {textOnHeap() ? m_value.heapText : m_value.inlineText, m_length};
}

CString ResItem::asText() const {
    switch (m_held) {
    case Held::Text: return CString(textView());
    case Held::Real: return QxFormat(u"%g", m_value.real);
    case Held::Integer: return QxFormat(u"%d", m_value.integer);
    case Held::Point: return QxFormat(u"%g,%g,%g", m_value.point[0], m_value.point[1], m_value.point[2]);
    }
    return {};
}

double ResItem::asReal() const {
    if (m_held == Held::Real) return m_value.real;
    if (m_held == Held::Integer) return static_cast<double>(m_value.integer);
    if (m_held == Held::Point) return m_value.point[0];
    return 0.0;
}

AcGePoint3d ResItem::asPoint() const {
    if (m_held == Held::Point) return {m_value.point[0], m_value.point[1], m_value.point[2]};
    return {};
}

std::int64_t ResItem::asInteger() const {
    if (m_held == Held::Integer) return m_value.integer;
    // Reals beyond the integers' range (and NaN) have no integer value.
    if (m_held == Held::Real && m_value.real > -9.2e18 && m_value.real < 9.2e18) return static_cast<std::int64_t>(m_value.real);
    return 0;
}

bool operator==(const ResItem& a, const ResItem& b) {
    if (a.m_code != b.m_code || a.m_held != b.m_held) return false;
    switch (a.m_held) {
    case ResItem::Held::Text: return a.textView() == b.textView();
    case ResItem::Held::Real: return a.m_value.real == b.m_value.real;
    case ResItem::Held::Integer: return a.m_value.integer == b.m_value.integer;
    case ResItem::Held::Point:
        return a.m_value.point[0] == b.m_value.point[0] && a.m_value.point[1] == b.m_value.point[1] &&
               a.m_value.point[2] == b.m_value.point[2];
    }
    return false;
}

resbuf* ToRbChain(const ResItems& items) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const ResItem& item : items) {
        resbuf* rb = acutNewRb(item.code());
        switch (item.kind()) {
        case RbKind::Text: SetRbString(*rb, item.asText()); break;
        case RbKind::Point: {
            const AcGePoint3d p = item.asPoint();
            rb->resval.rpoint[0] = p.x;
            rb->resval.rpoint[1] = p.y;
            rb->resval.rpoint[2] = p.z;
            break;
        }
        case RbKind::Real: rb->resval.rreal = item.asReal(); break;
        case RbKind::Int16: rb->resval.rint = static_cast<short>(item.asInteger()); break;
        case RbKind::Int32: rb->resval.rlong = static_cast<std::int32_t>(item.asInteger()); break;
        case RbKind::Int64: rb->resval.rint64 = item.asInteger(); break;
        }
        *tail = rb;
        tail = &rb->rbnext;
    }
    return head;
}

ResItems FromRbChain(const resbuf* chain) {
    ResItems items;
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext) {
        const short code = rb->restype;
        switch (RbKindOf(code)) {
        case RbKind::Text: items.push_back(ResItem::textFromView(code, rb->resval.rstring ? rb->resval.rstring : u"")); break;
        case RbKind::Point:
            items.push_back(ResItem::point(code, {rb->resval.rpoint[0], rb->resval.rpoint[1], rb->resval.rpoint[2]}));
            break;
        case RbKind::Real: items.push_back(ResItem::real(code, rb->resval.rreal)); break;
        case RbKind::Int16: items.push_back(ResItem::integer(code, rb->resval.rint)); break;
        case RbKind::Int32: items.push_back(ResItem::integer(code, rb->resval.rlong)); break;
        case RbKind::Int64: items.push_back(ResItem::integer(code, rb->resval.rint64)); break;
        }
    }
    return items;
}
