// Readers of the entities that a block definition may hold only for their shape: ellipses, splines and
// hatches. They keep what the extents of a block need.
#include "drawing/dxf/DxfEntities.h"

#include "drawing/model/AcDbCurves.h"
#include "drawing/model/AcDbHatch.h"

#include <cmath>

namespace {

using Tags = std::vector<DxfTag>;

// Points given as repeated groups base, base + 10, base + 20: each base group starts the next point.
class RepeatedPoints {
public:
    explicit RepeatedPoints(int base) : m_base(base) {}
    bool take(const DxfTag& tag, DxfValues& values) {
        if (tag.code == m_base) m_points.push_back({values.real(tag), 0.0, 0.0});
        else if (tag.code == m_base + 10 && !m_points.empty()) m_points.back().y = values.real(tag);
        else if (tag.code == m_base + 20 && !m_points.empty()) m_points.back().z = values.real(tag);
        else return false;
        return true;
    }
    const std::vector<AcGePoint3d>& points() const { return m_points; }

private:
    int m_base;
    std::vector<AcGePoint3d> m_points;
};

} // namespace

std::unique_ptr<AcDbEntity> ReadDxfEllipse(const Tags& tags, size_t end, DxfValues& values) {
    AcGePoint3d center;
    AcGePoint3d majorEnd{1.0, 0.0, 0.0};
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double ratio = 1.0;
    double start = 0.0;
    double finish = 2.0 * AcGe::kPi;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        if (TakePointGroup(tag, 10, center, values) || TakePointGroup(tag, 11, majorEnd, values) ||
            TakeVectorGroup(tag, 210, normal, values))
            continue;
        if (tag.code == 40) ratio = values.real(tag);
        if (tag.code == 41) start = values.real(tag);
        if (tag.code == 42) finish = values.real(tag);
    }
    auto ellipse = std::make_unique<AcDbEllipse>();
    ellipse->set(center, normal, majorEnd - AcGePoint3d::kOrigin, ratio, start, finish);
    return ellipse;
}

std::unique_ptr<AcDbEntity> ReadDxfSpline(const Tags& tags, size_t end, DxfValues& values) {
    RepeatedPoints control(10);
    RepeatedPoints fit(11);
    for (size_t i = 0; i < end; ++i)
        if (!control.take(tags[i], values)) fit.take(tags[i], values);
    auto spline = std::make_unique<AcDbSpline>();
    for (const AcGePoint3d& point : control.points()) spline->appendControlPoint(point);
    for (const AcGePoint3d& point : fit.points()) spline->appendFitPoint(point);
    return spline;
}

// The boundary paths lie between the count of paths (91) and the hatch style (75). A polyline path
// (flag 2 in 92) gives its vertices; an edge path gives line ends (edge type 1), the circles of arcs (2)
// and ellipses (3), and spline control and fit points (4). Vectors (an ellipse's axis, a spline's
// tangents) are no points.
std::unique_ptr<AcDbEntity> ReadDxfHatch(const Tags& tags, size_t end, DxfValues& values) {
    auto hatch = std::make_unique<AcDbHatch>();
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    bool inBoundary = false;
    bool polylinePath = false;
    long long edgeType = 0;
    AcGePoint2d point;
    AcGePoint2d center;
    AcGeVector3d axis;
    for (size_t i = 0; i < end; ++i) {
        const DxfTag& tag = tags[i];
        if (TakeVectorGroup(tag, 210, normal, values)) continue;
        if (!inBoundary) {
            if (tag.code == 30) hatch->setElevation(values.real(tag));
            inBoundary = tag.code == 91;
            continue;
        }
        switch (tag.code) {
        case 75: i = end - 1; break;  // the boundary is done; pattern and seed points follow
        case 92: polylinePath = (values.integer(tag) & 2) != 0; edgeType = 0; break;
        case 72: if (!polylinePath) edgeType = values.integer(tag); break;
        case 10: point.x = values.real(tag); break;
        case 20:
            point.y = values.real(tag);
            if (polylinePath || edgeType == 1 || edgeType == 4) hatch->appendBoundaryPoint(point);
            center = point;
            break;
        case 11: point.x = axis.x = values.real(tag); break;
        case 21:
            point.y = axis.y = values.real(tag);
            if (edgeType == 1 || edgeType == 4) hatch->appendBoundaryPoint(point);
            break;
        case 40:
            if (edgeType == 2 && !polylinePath) hatch->appendBoundaryCircle(center, std::fabs(values.real(tag)));
            if (edgeType == 3 && !polylinePath) hatch->appendBoundaryCircle(center, axis.length());
            break;
        default: break;
        }
    }
    hatch->setNormal(normal);
    return hatch;
}
