// Simple geometry kept for the extents of block definitions: lines, arcs, circles, solids, ellipses and
// splines.
#pragma once

#include "drawing/model/AcDbEntity.h"

#include <array>
#include <vector>

class QX_API AcDbLine : public AcDbEntity {
public:
    AcDbLine() = default;
    AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) : m_start(start), m_end(end) {}
    static AcDbLine* cast(AcDbObject* object) { return dynamic_cast<AcDbLine*>(object); }
    std::string_view dxfName() const override { return "LINE"; }

    AcGePoint3d startPoint() const { return m_start; }
    AcGePoint3d endPoint() const { return m_end; }
    void setStartPoint(const AcGePoint3d& p) { m_start = p; }
    void setEndPoint(const AcGePoint3d& p) { m_end = p; }
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    AcGePoint3d m_start;
    AcGePoint3d m_end;
};

// A circle or an arc lies in the plane of its normal; its centre is given in that plane's coordinates.
class QX_API AcDbCircle : public AcDbEntity {
public:
    static AcDbCircle* cast(AcDbObject* object) { return dynamic_cast<AcDbCircle*>(object); }
    std::string_view dxfName() const override { return "CIRCLE"; }

    AcGePoint3d center() const { return m_center; }
    void setCenter(const AcGePoint3d& c) { m_center = c; }
    double radius() const { return m_radius; }
    void setRadius(double r) { m_radius = r; }
    AcGeVector3d normal() const { return m_normal; }
    void setNormal(const AcGeVector3d& n) { m_normal = n; }
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

protected:
    AcGePoint3d m_center;
    double m_radius = 0.0;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
};

class QX_API AcDbArc : public AcDbCircle {
public:
    static AcDbArc* cast(AcDbObject* object) { return dynamic_cast<AcDbArc*>(object); }
    std::string_view dxfName() const override { return "ARC"; }

    // Radians, counter-clockwise from the plane's x axis.
    double startAngle() const { return m_start; }
    double endAngle() const { return m_end; }
    void setStartAngle(double a) { m_start = a; }
    void setEndAngle(double a) { m_end = a; }
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    double m_start = 0.0;
    double m_end = 0.0;
};

// A filled triangle or quadrilateral; corners in the plane of its normal.
class QX_API AcDbSolid : public AcDbEntity {
public:
    static AcDbSolid* cast(AcDbObject* object) { return dynamic_cast<AcDbSolid*>(object); }
    std::string_view dxfName() const override { return "SOLID"; }

    AcGePoint3d pointAt(int index) const { return m_corners.at(static_cast<size_t>(index)); }
    void setPointAt(int index, const AcGePoint3d& p) { m_corners.at(static_cast<size_t>(index)) = p; }
    void setNormal(const AcGeVector3d& n) { m_normal = n; }
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    std::array<AcGePoint3d, 4> m_corners{};
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
};

// An ellipse or an elliptical arc, in world coordinates: the point at parameter t is
// center + cos t * majorAxis + sin t * ratio * (normal x majorAxis).
class QX_API AcDbEllipse : public AcDbEntity {
public:
    static AcDbEllipse* cast(AcDbObject* object) { return dynamic_cast<AcDbEllipse*>(object); }
    std::string_view dxfName() const override { return "ELLIPSE"; }

    void set(const AcGePoint3d& center, const AcGeVector3d& normal, const AcGeVector3d& majorAxis, double radiusRatio,
             double startParam, double endParam);
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    AcGePoint3d m_center;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    AcGeVector3d m_majorAxis{1.0, 0.0, 0.0};
    double m_ratio = 1.0;
    double m_start = 0.0;
    double m_end = 2.0 * AcGe::kPi;
};

// A spline as far as its box goes: the curve lies within the hull of its control points; a spline given
// only by fit points passes through them.
class QX_API AcDbSpline : public AcDbEntity {
public:
    static AcDbSpline* cast(AcDbObject* object) { return dynamic_cast<AcDbSpline*>(object); }
    std::string_view dxfName() const override { return "SPLINE"; }

    void appendControlPoint(const AcGePoint3d& point) { m_controlPoints.push_back(point); }
    void appendFitPoint(const AcGePoint3d& point) { m_fitPoints.push_back(point); }
    int numControlPoints() const { return static_cast<int>(m_controlPoints.size()); }
    int numFitPoints() const { return static_cast<int>(m_fitPoints.size()); }
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    std::vector<AcGePoint3d> m_controlPoints;
    std::vector<AcGePoint3d> m_fitPoints;
};
