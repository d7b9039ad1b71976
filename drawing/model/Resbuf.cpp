// resbuf chains and the items objects keep.
#include "drawing/model/Resbuf.h"

#include "support/Format.h"

#include <cstring>

RbKind RbKindOf(int code) {
    switch (code) {
    case RTREAL: case RTANG: return RbKind::Real;
    case RTPOINT: case RT3DPOINT: return RbKind::Point;
    case RTSHORT: return RbKind::Int16;
    case RTLONG: return RbKind::Int32;
    case RTSTR: return RbKind::Text;
    default: break;
    }
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
    ResItem item;
    item.m_code = code;
    item.m_value = value;
    return item;
}

ResItem ResItem::real(short code, double value) {
    ResItem item;
    item.m_code = code;
    item.m_value = value;
    return item;
}

ResItem ResItem::point(short code, const AcGePoint3d& value) {
    ResItem item;
    item.m_code = code;
    item.m_value = value;
    return item;
}

ResItem ResItem::integer(short code, std::int64_t value) {
    ResItem item;
    item.m_code = code;
    item.m_value = value;
    return item;
}

CString ResItem::asText() const {
    if (const auto* s = std::get_if<CString>(&m_value)) return *s;
    if (const auto* d = std::get_if<double>(&m_value)) return QxFormat(u"%g", *d);
    if (const auto* i = std::get_if<std::int64_t>(&m_value)) return QxFormat(u"%d", *i);
    const auto& p = std::get<AcGePoint3d>(m_value);
    return QxFormat(u"%g,%g,%g", p.x, p.y, p.z);
}

double ResItem::asReal() const {
    if (const auto* d = std::get_if<double>(&m_value)) return *d;
    if (const auto* i = std::get_if<std::int64_t>(&m_value)) return static_cast<double>(*i);
    if (const auto* p = std::get_if<AcGePoint3d>(&m_value)) return p->x;
    return 0.0;
}

AcGePoint3d ResItem::asPoint() const {
    if (const auto* p = std::get_if<AcGePoint3d>(&m_value)) return *p;
    return {};
}

std::int64_t ResItem::asInteger() const {
    if (const auto* i = std::get_if<std::int64_t>(&m_value)) return *i;
    if (const auto* d = std::get_if<double>(&m_value)) return static_cast<std::int64_t>(*d);
    return 0;
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
        case RbKind::Text: items.push_back(ResItem::text(code, rb->resval.rstring ? rb->resval.rstring : u"")); break;
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
