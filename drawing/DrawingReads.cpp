// Drawings read once per command.
#include "drawing/DrawingReads.h"

namespace {

// Commands run on the host's one thread; the scope in force belongs to the command that stands.
CDrawingReadScope* g_inForce = nullptr;

} // namespace

CDrawingReadScope::CDrawingReadScope() {
    if (g_inForce != nullptr) return;
    g_inForce = this;
    m_inForce = true;
}

CDrawingReadScope::~CDrawingReadScope() {
    if (m_inForce) g_inForce = nullptr;
}

CDrawingReadScope* CDrawingReadScope::active() {
    return g_inForce;
}

AcDbDatabase* CDrawingReadScope::database(const CString& path) {
    auto it = m_kept.find(path);
    if (it != m_kept.end()) {
        Kept& kept = it->second;
        if (!kept.database || kept.database->geometryGeneration() == kept.generation) return kept.database.get();
        m_changed.push_back(std::move(kept.database));
        m_kept.erase(it);
    }
    auto read = std::make_unique<AcDbDatabase>(false, true);
    if (read->readDwgFile(path, 64, false, nullptr) != Acad::eOk) read.reset();
    const std::uint64_t generation = read ? read->geometryGeneration() : 0;
    Kept& kept = m_kept[path];
    kept.database = std::move(read);
    kept.generation = generation;
    return kept.database.get();
}

std::unique_ptr<AcDbDatabase> CDrawingReadScope::take(const CString& path) {
    const auto it = m_kept.find(path);
    if (it == m_kept.end()) return nullptr;
    std::unique_ptr<AcDbDatabase> taken = std::move(it->second.database);
    m_kept.erase(it);
    return taken;
}

void CDrawingReadScope::forget(const CStringArray& paths) {
    for (const CString& path : paths) m_kept.erase(path);
}
