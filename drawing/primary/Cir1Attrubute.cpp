// Freeing the circuit records of a primary diagram.
#include "drawing/primary/Cir1Attrubute.h"

void QxFreeCircuits(CCir1AttrubuteArray& circuits) {
    for (CCir1Attrubute*& circuit : circuits) {
        delete circuit;
        circuit = nullptr;
    }
    circuits.RemoveAll();
}
