// Walking the entities of a block table record in drawing order, the way every reader of a drawing does:
// erased entities are skipped, each entity is opened for read and closed before the next step, and an
// entity that fails to open is passed over.
#pragma once

#include "drawing/model/AcDb.h"

#include <functional>

// What a visitor tells the walk after each entity.
enum class WalkStep { Continue, Stop };

using EntityVisitor = std::function<WalkStep(AcDbEntity& entity)>;

// False when the record does not open.
QX_API bool QxWalkBlockRecord(AcDbObjectId record, const EntityVisitor& visit);
// Model space of the database; false for a null database or one without model space.
QX_API bool QxWalkModelSpace(AcDbDatabase* database, const EntityVisitor& visit);
