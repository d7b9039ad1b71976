// What every BOM centre backend says to and asks of the person, so that the embedded centre and the
// team's server look the same from the command line.
#pragma once

#include "support/CString.h"

class CHexmoorInteFace;

// Asks enterprise, user (each offering what the client holds; an empty answer keeps it) and the credential
// without echo, and puts the answers into the client. False when the person cancels or leaves a name empty.
bool AskCentreLogin(CHexmoorInteFace& client);

// One line on the command line, "Hexmoor: message".
void TellCentreMessage(const CString& message);
