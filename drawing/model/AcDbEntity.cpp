// Entities: common properties and extents.
#include "drawing/model/AcDbEntity.h"

#include "drawing/model/AcDbNamePool.h"

#include <algorithm>
#include <cmath>

namespace {

const CString kDefaultLayer = u"0";

} // namespace

AcDbEntity::AcDbEntity() : m_layer(&kDefaultLayer) {}

void AcDbEntity::setLayer(const CString& layer) {
    m_layer = &namePool().intern(layer.view());
}

void AcDbEntity::setColorIndex(int color) {
    m_colorIndex = static_cast<short>(std::clamp(color, -32768, 32767));
}

void AcDbEntity::setVisibility(AcDb::Visibility visibility, bool) {
    m_invisible = visibility == AcDb::kInvisible;
}

Acad::ErrorStatus AcDbEntity::getGeomExtents(AcDbExtents& extents) const {
    AcDbExtents result;
    ExtentsWalk walk;
    addExtents(AcGeMatrix3d(), walk, result);
    if (!result.isValid()) return Acad::eInvalidExtents;
    extents = result;
    return Acad::eOk;
}

namespace {

double normalizedSweep(double start, double end) {
    constexpr double kTwoPi = 2.0 * AcGe::kPi;
    double sweep = std::fmod(end - start, kTwoPi);
    if (sweep < 0.0) sweep += kTwoPi;
    return sweep;
}

bool onArc(double angle, double start, double sweep) {
    return normalizedSweep(start, angle) <= sweep;
}

} // namespace

void AddArcExtents(const AcGeMatrix3d& toWorld, const AcGePoint3d& center, double radius, double start, double end,
                   AcDbExtents& extents) {
    if (!std::isfinite(radius) || !std::isfinite(start) || !std::isfinite(end)) return;
    const bool full = std::fabs(end - start) >= 2.0 * AcGe::kPi;
    const double sweep = full ? 2.0 * AcGe::kPi : normalizedSweep(start, end);
    const AcGePoint3d c = toWorld.transform(center);
    const AcGeVector3d u = toWorld.transform(AcGeVector3d{radius, 0.0, 0.0});
    const AcGeVector3d v = toWorld.transform(AcGeVector3d{0.0, radius, 0.0});
    auto pointAt = [&](double a) { return c + std::cos(a) * u + std::sin(a) * v; };
    extents.addPoint(pointAt(start));
    extents.addPoint(pointAt(start + sweep));
    // Along each world axis the arc's coordinate c + u cos a + v sin a peaks at atan2(v, u) and opposite.
    const double us[3] = {u.x, u.y, u.z};
    const double vs[3] = {v.x, v.y, v.z};
    for (int axis = 0; axis < 3; ++axis) {
        if (us[axis] == 0.0 && vs[axis] == 0.0) continue;
        const double peak = std::atan2(vs[axis], us[axis]);
        for (double a : {peak, peak + AcGe::kPi})
            if (full || onArc(a, start, sweep)) extents.addPoint(pointAt(a));
    }
}
