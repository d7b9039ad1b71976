// HMLogin: the interactive login, even when a stored login exists.
#include "module/Login.h"
#include "module/Session.h"
#include "module/commands/Commands.h"

void HMLogin() {
    g_bForceLogin = true;
    HMLoginCloud();
}
