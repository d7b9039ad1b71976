// AcDbBlockReference: an insert of a block definition (a MINSERT counts as one reference).
#pragma once

#include "drawing/model/AcDbEntity.h"

class QX_API AcDbBlockReference : public AcDbEntity {
public:
    static AcDbBlockReference* cast(AcDbObject* object) { return dynamic_cast<AcDbBlockReference*>(object); }
    static const AcDbBlockReference* cast(const AcDbObject* object) { return dynamic_cast<const AcDbBlockReference*>(object); }
    std::string_view dxfName() const override { return "INSERT"; }

    // The block table record of the definition; null when the drawing names a block it does not define.
    AcDbObjectId blockTableRecord() const { return m_block; }
    void setBlockTableRecord(AcDbObjectId block) { m_block = block; }
    // The insertion point in world coordinates.
    AcGePoint3d position() const { return m_position; }
    void setPosition(const AcGePoint3d& position) { m_position = position; }
    // Scale factors; a negative one mirrors.
    AcGeVector3d scaleFactors() const { return m_scale; }
    void setScaleFactors(const AcGeVector3d& scale) { m_scale = scale; }
    double rotation() const { return m_rotation; }
    void setRotation(double radians) { m_rotation = radians; }
    AcGeVector3d normal() const { return m_normal; }
    void setNormal(const AcGeVector3d& normal) { m_normal = normal; }

    // From the definition's coordinates to the world: base point, scale, rotation, extrusion, position.
    AcGeMatrix3d blockTransform() const;
    // The geometry of the definition, taken through the block transform.
    void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const override;

private:
    AcDbObjectId m_block;
    AcGePoint3d m_position;
    AcGeVector3d m_scale{1.0, 1.0, 1.0};
    double m_rotation = 0.0;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
};
