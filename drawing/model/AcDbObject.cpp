// What every object of a drawing has.
#include "drawing/model/AcDbObject.h"

#include "drawing/model/AcDbArena.h"
#include "drawing/model/AcDbDatabase.h"

#include <algorithm>
#include <new>

namespace {

// Each object is preceded by a word that says where its memory came from.
enum class Origin : std::uint64_t { Heap = 0, Arena = 1 };
constexpr size_t kHeader = sizeof(Origin);

} // namespace

void* AcDbObject::operator new(size_t size) {
    void* memory = nullptr;
    Origin origin = Origin::Arena;
    if (AcDbArena* arena = AcDbArenaScope::current()) memory = arena->allocate(size + kHeader);
    if (memory == nullptr) {
        memory = ::operator new(size + kHeader);
        origin = Origin::Heap;
    }
    *static_cast<Origin*>(memory) = origin;
    return static_cast<char*>(memory) + kHeader;
}

void AcDbObject::operator delete(void* memory) noexcept {
    if (memory == nullptr) return;
    void* start = static_cast<char*>(memory) - kHeader;
    // Arena memory goes with its database.
    if (*static_cast<Origin*>(start) == Origin::Heap) ::operator delete(start);
}

AcDbObject::~AcDbObject() = default;

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    m_erased = erasing;
    if (m_database != nullptr) m_database->noteGeometryChange();
    return Acad::eOk;
}

void AcDbObject::upgradeOpen() {
    m_writeEnabled = true;
    // Whoever writes may move geometry that cached extents hold.
    if (m_database != nullptr) m_database->noteGeometryChange();
}

Acad::ErrorStatus AcDbObject::close() {
    m_writeEnabled = false;
    return Acad::eOk;
}

const XDataApp* AcDbObject::findXData(std::u16string_view application) const {
    const CString wanted(application);
    for (const XDataApp& app : m_xdata)
        if (app.name.EqualsNoCase(wanted)) return &app;
    return nullptr;
}

resbuf* AcDbObject::xData(const char16_t* application) const {
    ResItems items;
    const bool all = application == nullptr || application[0] == u'\0';
    for (const XDataApp& app : m_xdata) {
        if (!all && !app.name.EqualsNoCase(application)) continue;
        items.push_back(ResItem::text(1001, app.name));
        items.insert(items.end(), app.items.begin(), app.items.end());
        if (!all) break;
    }
    return ToRbChain(items);
}

void AcDbObject::setXDataItems(const CString& application, ResItems items) {
    // The list is one block: it is made anew with the application's items replaced, dropped or added.
    std::vector<XDataList::Run> runs;
    ResItems all;
    bool found = false;
    for (const XDataApp& app : m_xdata) {
        const bool named = !found && app.name.EqualsNoCase(application);
        found = found || named;
        if (named && items.empty()) continue;
        const ResItems& own = named ? items : app.items.copy();
        runs.push_back({&app.name, own.size()});
        all.insert(all.end(), own.begin(), own.end());
    }
    if (!found && !items.empty()) {
        runs.push_back({&namePool().intern(application.view()), items.size()});
        all.insert(all.end(), items.begin(), items.end());
    }
    m_xdata = XDataList(runs, all);
}

AcDbNamePool& AcDbObject::namePool() const {
    return m_database != nullptr ? m_database->names() : AcDbNamePool::detached();
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* chain) {
    if (chain == nullptr || chain->restype != 1001) return Acad::eInvalidInput;
    const ResItems items = FromRbChain(chain);
    size_t i = 0;
    while (i < items.size()) {
        const CString application = items[i].asText();
        ResItems own;
        for (++i; i < items.size() && items[i].code() != 1001; ++i) own.push_back(items[i]);
        setXDataItems(application, std::move(own));
    }
    return Acad::eOk;
}
