// Geometry of the drawing model: points, vectors, the 4x4 transform and extents, with the host's names.
#pragma once

#include "support/Export.h"

namespace AcGe {
constexpr double kPi = 3.14159265358979323846;
}

struct QX_API AcGePoint2d {
    double x = 0.0;
    double y = 0.0;
};

struct QX_API AcGeVector3d {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    static const AcGeVector3d kXAxis;
    static const AcGeVector3d kYAxis;
    static const AcGeVector3d kZAxis;

    double length() const;
    AcGeVector3d normal() const;
    AcGeVector3d crossProduct(const AcGeVector3d& other) const;
    friend AcGeVector3d operator*(double f, const AcGeVector3d& v) { return {f * v.x, f * v.y, f * v.z}; }
    friend AcGeVector3d operator+(const AcGeVector3d& a, const AcGeVector3d& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
};

struct QX_API AcGePoint3d {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    static const AcGePoint3d kOrigin;

    double distanceTo(const AcGePoint3d& other) const;
    friend AcGePoint3d operator+(const AcGePoint3d& p, const AcGeVector3d& v) { return {p.x + v.x, p.y + v.y, p.z + v.z}; }
    friend AcGeVector3d operator-(const AcGePoint3d& a, const AcGePoint3d& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend bool operator==(const AcGePoint3d&, const AcGePoint3d&) = default;
};

// An affine transform; the last row is always (0, 0, 0, 1).
class QX_API AcGeMatrix3d {
public:
    AcGeMatrix3d();

    static AcGeMatrix3d translation(const AcGeVector3d& offset);
    static AcGeMatrix3d scaling(double sx, double sy, double sz);
    static AcGeMatrix3d rotationAboutZ(double radians);
    // The object coordinate system of an entity whose extrusion is `normal` (the arbitrary axis algorithm).
    static AcGeMatrix3d planeToWorld(const AcGeVector3d& normal);
    // Takes the unit axes to the given vectors and the origin to `origin` (setToAlignCoordSys from the world).
    static AcGeMatrix3d alignCoordSys(const AcGePoint3d& origin, const AcGeVector3d& xAxis, const AcGeVector3d& yAxis,
                                      const AcGeVector3d& zAxis);

    AcGeMatrix3d operator*(const AcGeMatrix3d& right) const;
    AcGePoint3d transform(const AcGePoint3d& point) const;
    // The linear part only: directions and lengths, no offset.
    AcGeVector3d transform(const AcGeVector3d& vector) const;

private:
    double m[3][4];
};

// An axis-aligned box; empty until a point is added.
class QX_API AcDbExtents {
public:
    AcDbExtents() = default;
    AcDbExtents(const AcGePoint3d& min, const AcGePoint3d& max);

    void addPoint(const AcGePoint3d& point);
    void addExt(const AcDbExtents& other);
    bool isValid() const { return m_valid; }
    const AcGePoint3d& minPoint() const { return m_min; }
    const AcGePoint3d& maxPoint() const { return m_max; }

private:
    AcGePoint3d m_min;
    AcGePoint3d m_max;
    bool m_valid = false;
};
