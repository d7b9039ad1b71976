// Readers of entity records, one small function per kind of entity.
#pragma once

#include "drawing/dxf/DxfContext.h"
#include "drawing/model/AcDb3dPolyline.h"
#include "drawing/model/AcDbEntity.h"
#include "drawing/model/AcDbPolyline.h"

#include <memory>

struct DxfEntityRead {
    std::unique_ptr<AcDbEntity> entity;  // null when the record is bad
    CString blockName;                   // of an INSERT, resolved once every block is known
    std::string_view layer;              // the bytes of the layer's name; empty for layer "0"
};

// Any entity record but the parts of sequences (VERTEX, SEQEND, ATTRIB); kinds the model does not know
// become AcDbUnknownEntity. Tags [0, bodyEnd) are read; xdata and the common groups are the caller's.
DxfEntityRead ReadDxfEntity(const DxfRecord& record, size_t bodyEnd, DxfValues& values);
// Readers of single kinds, tags [0, end).
std::unique_ptr<AcDbEntity> ReadDxfEllipse(const std::vector<DxfTag>& tags, size_t end, DxfValues& values);
std::unique_ptr<AcDbEntity> ReadDxfSpline(const std::vector<DxfTag>& tags, size_t end, DxfValues& values);
std::unique_ptr<AcDbEntity> ReadDxfHatch(const std::vector<DxfTag>& tags, size_t end, DxfValues& values);
// Adds a VERTEX record to an old-style polyline; false when the record is bad.
bool AddDxfVertex(AcDbPolyline& polyline, const DxfRecord& record, DxfValues& values);
// Adds a VERTEX record to a 3D polyline or a mesh: a point, or a face of a polyface mesh.
bool AddDxfSpaceVertex(AcDbSpaceVertices& owner, const DxfRecord& record, DxfValues& values);
