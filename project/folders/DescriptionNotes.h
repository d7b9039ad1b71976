// The description notes of a new project or device file: the words of Data\word.mdb under the key
// "项目设备描述信息", each as a note with an empty value.
#pragma once

#include "project/ProjectFiles.h"

inline constexpr const char16_t* HM_DESCRIPTION_KEY = u"项目设备描述信息";

// Brings the rows holding "工程" (an engineering project's items) to the front for a project, or the others
// to the front for a device. Each row in turn that does not belong in front is swapped with the first later
// row that does, so the rows behind the front group may change their order.
QX_API void OrderDescriptionRows(CStringArray& rows, bool forProject);

// The word list read afresh, ordered for a project or a device, each word a note with an empty value.
QX_API PrjNoteList MakeDescriptionNotes(bool forProject);
