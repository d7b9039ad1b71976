// Login to the cloud: silent with the stored login, or interactive; after an interactive login the usage
// files that the application collected are sent.
#pragma once

#include "support/CString.h"

class CHexmoorInteFace;

// Brings the session to logged in if it can; what it did is read afterwards from isLogin().
void HMLoginCloud();
// Fills the client's tag and description from the parameter library (items 1 and 3); gives item 1.
CString SetClientIdentity(CHexmoorInteFace& client);
