// AcDbEntity: an object with a place in a block table record, a layer, a colour, visibility and
// geometric extents.
#pragma once

#include "drawing/model/AcDbObject.h"
#include "drawing/model/AcGe.h"

#include <vector>

// State of one extents computation: guards nested block references against cycles and depth.
struct QX_API ExtentsWalk {
    static constexpr int kMaxDepth = 32;
    std::vector<const AcDbObject*> blocksOnPath;
};

class QX_API AcDbEntity : public AcDbObject {
public:
    AcDbEntity();
    static AcDbEntity* cast(AcDbObject* object) { return dynamic_cast<AcDbEntity*>(object); }
    static const AcDbEntity* cast(const AcDbObject* object) { return dynamic_cast<const AcDbEntity*>(object); }

    AcDbObjectId blockId() const { return ownerId(); }
    const CString& layer() const { return *m_layer; }
    // Layer names are shared by the entities of a database (see namePool()).
    void setLayer(const CString& layer);
    // For readers that fill a drawing: a name that already lives in the pool of the database the entity
    // goes into.
    void setPooledLayer(const CString& pooledName) { m_layer = &pooledName; }
    int colorIndex() const { return m_colorIndex; }
    // Colour numbers are 16-bit (0 by block, 256 by layer, negative while the layer is off).
    void setColorIndex(int color);
    AcDb::Visibility visibility() const { return m_invisible ? AcDb::kInvisible : AcDb::kVisible; }
    void setVisibility(AcDb::Visibility visibility, bool doSubents = true);
    bool isPaperSpaceFlagged() const { return m_paperSpace; }
    void setPaperSpaceFlag(bool paper) { m_paperSpace = paper; }

    // eInvalidExtents when the entity has no geometry the model measures.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const;
    // Adds the entity's geometry, taken through `toWorld`, to `extents`.
    virtual void addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk& walk, AcDbExtents& extents) const = 0;

private:
    // The small members first: they fill the room the object's own members leave at their end.
    short m_colorIndex = 256;
    bool m_invisible = false;
    bool m_paperSpace = false;
    const CString* m_layer;
};

// An entity of a kind the model does not know (HATCH, DIMENSION, ...): kept with its data, no extents.
class QX_API AcDbUnknownEntity : public AcDbEntity {
public:
    explicit AcDbUnknownEntity(std::string_view dxfName) : m_dxfName(dxfName) {}
    std::string_view dxfName() const override { return m_dxfName; }
    void addExtents(const AcGeMatrix3d&, ExtentsWalk&, AcDbExtents&) const override {}

private:
    std::string m_dxfName;
};

// Adds a circular arc to extents exactly: the arc lies in the local frame that `toWorld` maps into the
// world, centred at `center`, from `start` to `end` (radians, counter-clockwise); `end - start` of 2 pi
// or more is a full circle. Any affine `toWorld` is allowed: a circle may become an ellipse.
QX_API void AddArcExtents(const AcGeMatrix3d& toWorld, const AcGePoint3d& center, double radius, double start,
                          double end, AcDbExtents& extents);
