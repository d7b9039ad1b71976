// HMTest: asks the cloud for one cabinet's tree; nothing is shown.
#include "module/Session.h"
#include "module/commands/Commands.h"

void HMTest() {
    if (!g_pHexmoorClient) return;
    g_pHexmoorClient->freeTreeInfo(g_pHexmoorClient->getOneCabProjectInfo());
}
