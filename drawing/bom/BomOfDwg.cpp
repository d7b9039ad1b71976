// Freeing lists of drawing BOMs.
#include "drawing/bom/BomOfDwg.h"

void QxFreeBomOfDwgs(CBomOfDwgArray& list) {
    for (CBomOfDwg*& bom : list) {
        delete bom;
        bom = nullptr;
    }
    list.RemoveAll();
}
