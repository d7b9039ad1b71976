// Geometry of the drawing model.
#include "drawing/model/AcGe.h"

#include <algorithm>
#include <cmath>

const AcGeVector3d AcGeVector3d::kXAxis{1.0, 0.0, 0.0};
const AcGeVector3d AcGeVector3d::kYAxis{0.0, 1.0, 0.0};
const AcGeVector3d AcGeVector3d::kZAxis{0.0, 0.0, 1.0};
const AcGePoint3d AcGePoint3d::kOrigin{};

double AcGeVector3d::length() const {
    return std::sqrt(x * x + y * y + z * z);
}

AcGeVector3d AcGeVector3d::normal() const {
    const double len = length();
    if (len == 0.0) return *this;
    return {x / len, y / len, z / len};
}

AcGeVector3d AcGeVector3d::crossProduct(const AcGeVector3d& o) const {
    return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
}

double AcGePoint3d::distanceTo(const AcGePoint3d& other) const {
    return (other - *this).length();
}

AcGeMatrix3d::AcGeMatrix3d() : m{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}} {}

AcGeMatrix3d AcGeMatrix3d::translation(const AcGeVector3d& offset) {
    AcGeMatrix3d r;
    r.m[0][3] = offset.x;
    r.m[1][3] = offset.y;
    r.m[2][3] = offset.z;
    return r;
}

AcGeMatrix3d AcGeMatrix3d::scaling(double sx, double sy, double sz) {
    AcGeMatrix3d r;
    r.m[0][0] = sx;
    r.m[1][1] = sy;
    r.m[2][2] = sz;
    return r;
}

AcGeMatrix3d AcGeMatrix3d::rotationAboutZ(double radians) {
    AcGeMatrix3d r;
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    r.m[0][0] = c;
    r.m[0][1] = -s;
    r.m[1][0] = s;
    r.m[1][1] = c;
    return r;
}

AcGeMatrix3d AcGeMatrix3d::alignCoordSys(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                          const AcGeVector3d& yAxis, const AcGeVector3d& zAxis) {
    AcGeMatrix3d r;
    const AcGeVector3d axes[3] = {xAxis, yAxis, zAxis};
    for (int col = 0; col < 3; ++col) {
        r.m[0][col] = axes[col].x;
        r.m[1][col] = axes[col].y;
        r.m[2][col] = axes[col].z;
    }
    r.m[0][3] = origin.x;
    r.m[1][3] = origin.y;
    r.m[2][3] = origin.z;
    return r;
}

AcGeMatrix3d AcGeMatrix3d::planeToWorld(const AcGeVector3d& normal) {
    const AcGeVector3d n = normal.normal();
    if (n.length() == 0.0) return {};
    constexpr double kLimit = 1.0 / 64.0;
    const AcGeVector3d ax = (std::fabs(n.x) < kLimit && std::fabs(n.y) < kLimit)
        ? AcGeVector3d::kYAxis.crossProduct(n).normal()
        : AcGeVector3d::kZAxis.crossProduct(n).normal();
    return alignCoordSys(AcGePoint3d::kOrigin, ax, n.crossProduct(ax).normal(), n);
}

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& b) const {
    AcGeMatrix3d r;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 4; ++j) {
            double sum = (j == 3) ? m[i][3] : 0.0;
            for (int k = 0; k < 3; ++k) sum += m[i][k] * b.m[k][j];
            r.m[i][j] = sum;
        }
    }
    return r;
}

AcGePoint3d AcGeMatrix3d::transform(const AcGePoint3d& p) const {
    return {m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + m[0][3],
            m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + m[1][3],
            m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + m[2][3]};
}

AcGeVector3d AcGeMatrix3d::transform(const AcGeVector3d& v) const {
    return {m[0][0] * v.x + m[0][1] * v.y + m[0][2] * v.z,
            m[1][0] * v.x + m[1][1] * v.y + m[1][2] * v.z,
            m[2][0] * v.x + m[2][1] * v.y + m[2][2] * v.z};
}

AcDbExtents::AcDbExtents(const AcGePoint3d& min, const AcGePoint3d& max) {
    addPoint(min);
    addPoint(max);
}

void AcDbExtents::addPoint(const AcGePoint3d& p) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return;
    if (!m_valid) {
        m_min = m_max = p;
        m_valid = true;
        return;
    }
    m_min = {std::min(m_min.x, p.x), std::min(m_min.y, p.y), std::min(m_min.z, p.z)};
    m_max = {std::max(m_max.x, p.x), std::max(m_max.y, p.y), std::max(m_max.z, p.z)};
}

void AcDbExtents::addExt(const AcDbExtents& other) {
    if (!other.isValid()) return;
    addPoint(other.minPoint());
    addPoint(other.maxPoint());
}
