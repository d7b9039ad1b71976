// The functions that sibling modules of the application call across the module boundary, looked up by
// these plain names. They share the module's session: a caller never sees the client object. Every one but
// QxFreeTreeInfo logs in first, and answers false or null, touching nothing, when that fails. A tree handed
// in stays the caller's; a tree from QxGetHMProjectRemote is the caller's until it goes to QxFreeTreeInfo.
#pragma once

#include "project/ProjectTree.h"

#ifndef QX_MODULE_EXPORT
#define QX_MODULE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

QX_MODULE_EXPORT bool QxLoginCloudServer();
// The cloud project that the library settles on, with every device's rows unpacked from its BOM block.
QX_MODULE_EXPORT HMProjectTree_INFO* QxGetHMProjectRemote();
QX_MODULE_EXPORT void QxFreeTreeInfo(HMProjectTree_INFO* tree);
// Fills the caller's tree from the local documents of the project file (empty: the current project).
QX_MODULE_EXPORT bool QxGetHMProjectInfo(HMProjectTree_INFO* tree, CString projectFile);
// Submits the tree's rows and refreshes them from what the cloud accepted; nothing is saved.
QX_MODULE_EXPORT bool QxHMBomSubmit(HMProjectTree_INFO* tree);
QX_MODULE_EXPORT bool QxSys1Refer(HMProjectTree_INFO* tree);
QX_MODULE_EXPORT bool QxsubmitOneCabCir2(HMProjectTree_INFO* tree);
QX_MODULE_EXPORT bool QxGetDqBomsArray(BomRows& rows);
// The cloud's rows of one cabinet of the project file (empty: the current project). The third text is
// part of the callers' signature and is not read.
QX_MODULE_EXPORT bool QxGetHMBomsArray(BomRows& rows, CString projectFile, CString cabinetNumber, CString unused);
