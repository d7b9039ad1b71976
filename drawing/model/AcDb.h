// The whole drawing model in one include.
#pragma once

#include "drawing/model/AcDb3dPolyline.h"
#include "drawing/model/AcDbBlockReference.h"
#include "drawing/model/AcDbBlockTable.h"
#include "drawing/model/AcDbCurves.h"
#include "drawing/model/AcDbDatabase.h"
#include "drawing/model/AcDbDictionary.h"
#include "drawing/model/AcDbHatch.h"
#include "drawing/model/AcDbOpen.h"
#include "drawing/model/AcDbPolyline.h"
#include "drawing/model/AcDbText.h"
