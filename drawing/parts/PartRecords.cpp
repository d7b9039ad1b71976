// The part records of drawings.
#include "drawing/parts/PartRecords.h"

COnePartBom::~COnePartBom() {
    for (COneComponent*& component : Components) {
        delete component;
        component = nullptr;
    }
}

CPartBomDataBase::~CPartBomDataBase() {
    for (COnePartBom*& row : PartBoms) {
        delete row;
        row = nullptr;
    }
}

void QxFreePartBoms(CPartBomDataBaseArray& parts) {
    for (CPartBomDataBase*& record : parts) {
        delete record;
        record = nullptr;
    }
    parts.RemoveAll();
}
