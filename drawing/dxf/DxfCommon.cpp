// The groups every object has, and items of xdata and xrecords.
#include "drawing/dxf/DxfContext.h"

namespace {

bool isHandleCode(int code) {
    return (code >= 320 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481 || code == 1005 ||
           code == 5 || code == 105;
}

// The first code of a point, whose y and z follow as code + 10 and code + 20.
bool isPointStart(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 || (code >= 1010 && code <= 1013);
}

} // namespace

// Names come in the same order object after object (an entity's applications, say): the search starts
// behind the name found last, where the next one mostly is.
const CString& DxfNames::name(std::string_view bytes) {
    for (size_t i = 1; i <= m_recent.size(); ++i) {
        const size_t slot = (m_lastFound + i) % m_recent.size();
        if (m_recent[slot].name != nullptr && m_recent[slot].bytes == bytes) {
            m_lastFound = slot;
            return *m_recent[slot].name;
        }
    }
    Recent& replaced = m_recent[m_next];
    m_lastFound = m_next;
    m_next = (m_next + 1) % m_recent.size();
    replaced.bytes = bytes;
    replaced.name = &m_pool.intern(m_decoder.decode(bytes).view());
    return *replaced.name;
}

void DxfNames::forget() {
    for (Recent& recent : m_recent) recent.name = nullptr;
}

double DxfValues::real(const DxfTag& tag) {
    double value = 0.0;
    if (!ParseDxfDouble(tag.value, value)) m_bad = true;
    return value;
}

long long DxfValues::integer(const DxfTag& tag) {
    long long value = 0;
    if (ParseDxfInt(tag.value, value)) return value;
    // Some writers put a decimal point into integer groups.
    double real = 0.0;
    if (ParseDxfDouble(tag.value, real) && real > -9.2e18 && real < 9.2e18) return static_cast<long long>(real);
    m_bad = true;
    return 0;
}

DxfCommonGroups ReadCommonGroups(const DxfRecord& record) {
    DxfCommonGroups common;
    const auto& tags = record.tags;
    common.bodyEnd = tags.size();
    bool inGroup = false;
    bool inExtensionDictionary = false;
    bool beforeSubclass = true;
    for (size_t i = 0; i < tags.size(); ++i) {
        const DxfTag& tag = tags[i];
        if (tag.code == 1001) {
            common.bodyEnd = i;
            break;
        }
        if (!beforeSubclass) continue;
        switch (tag.code) {
        case 100: beforeSubclass = false; break;
        case 5: AcDbHandle::parse(tag.value, common.handle); break;
        case 102:
            inGroup = !tag.value.starts_with("}");
            inExtensionDictionary = tag.value.starts_with("{ACAD_XDICTIONARY");
            break;
        case 360:
            if (inExtensionDictionary) AcDbHandle::parse(tag.value, common.extensionDictionary);
            break;
        case 330:
            if (!inGroup && common.owner.isNull()) AcDbHandle::parse(tag.value, common.owner);
            break;
        default: break;
        }
    }
    return common;
}

bool TakePointGroup(const DxfTag& tag, int base, AcGePoint3d& point, DxfValues& values) {
    if (tag.code == base) point.x = values.real(tag);
    else if (tag.code == base + 10) point.y = values.real(tag);
    else if (tag.code == base + 20) point.z = values.real(tag);
    else return false;
    return true;
}

bool TakeVectorGroup(const DxfTag& tag, int base, AcGeVector3d& vector, DxfValues& values) {
    if (tag.code == base) vector.x = values.real(tag);
    else if (tag.code == base + 10) vector.y = values.real(tag);
    else if (tag.code == base + 20) vector.z = values.real(tag);
    else return false;
    return true;
}

ResItems ReadResItems(const std::vector<DxfTag>& tags, size_t begin, size_t end, DxfValues& values) {
    ResItems items;
    // At most one item a tag: made to measure in one allocation rather than grown.
    items.reserve(end - begin);
    AppendResItems(tags, begin, end, values, items);
    return items;
}

void AppendResItems(const std::vector<DxfTag>& tags, size_t begin, size_t end, DxfValues& values, ResItems& items) {
    for (size_t i = begin; i < end; ++i) {
        const DxfTag& tag = tags[i];
        const auto code = static_cast<short>(tag.code);
        if (isPointStart(tag.code)) {
            AcGePoint3d p{values.real(tag), 0.0, 0.0};
            if (i + 1 < end && tags[i + 1].code == tag.code + 10) p.y = values.real(tags[++i]);
            if (i + 1 < end && tags[i + 1].code == tag.code + 20) p.z = values.real(tags[++i]);
            items.push_back(ResItem::point(code, p));
            continue;
        }
        switch (RbKindOf(tag.code)) {
        case RbKind::Point: break;  // a y or z without its x
        case RbKind::Real: items.push_back(ResItem::real(code, values.real(tag))); break;
        case RbKind::Int16:
        case RbKind::Int32:
        case RbKind::Int64: items.push_back(ResItem::integer(code, values.integer(tag))); break;
        case RbKind::Text: {
            AcDbHandle handle;
            if (isHandleCode(tag.code) && AcDbHandle::parse(tag.value, handle))
                items.push_back(ResItem::text(code, handle.text()));
            else
                items.push_back(ResItem::text(code, values.text(tag)));
            break;
        }
        }
    }
}

XDataList ReadXData(const DxfRecord& record, size_t begin, DxfValues& values, DxfNames& names,
                    DxfXDataScratch& scratch) {
    const auto& tags = record.tags;
    std::vector<XDataList::Run>& runs = scratch.runs;
    ResItems& items = scratch.items;
    runs.clear();
    items.clear();
    size_t i = begin;
    while (i < tags.size()) {
        if (tags[i].code != 1001) {
            ++i;
            continue;
        }
        size_t end = i + 1;
        while (end < tags.size() && tags[end].code != 1001) ++end;
        const size_t before = items.size();
        AppendResItems(tags, i + 1, end, values, items);
        // Only groups of 1000 and above belong to xdata; anything else behind a 1001 is passed over.
        items.erase(std::remove_if(items.begin() + static_cast<std::ptrdiff_t>(before), items.end(),
                                   [](const ResItem& item) { return item.code() < 1000; }),
                    items.end());
        runs.push_back({&names.name(tags[i].value), items.size() - before});
        i = end;
    }
    // The list moves the items into its own block.
    return XDataList(runs, items);
}
