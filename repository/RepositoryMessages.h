// How the repository speaks to the person: boxes captioned "Corvane" and yes/no questions, both through
// the host, and the command line for connection errors.
#pragma once

#include "support/CString.h"

QX_API void ShowRepositoryBox(const CString& text, unsigned icon);
// A question answered with Yes or No; a cancelled question counts as No.
QX_API bool AskRepositoryYesNo(const CString& text);
