// The session with the cloud: the one client object and the flags that every command and export shares.
// g_bBomCheckFailed and the extraction arrays are the drawing extraction's (drawing/ExtractionState.h).
#pragma once

#include "drawing/ExtractionState.h"
#include "platform/cloud/HexmoorClient.h"

#include <memory>

extern std::unique_ptr<CHexmoorInteFace> g_pHexmoorClient;
extern bool g_bForceLogin;

// The endpoint of the cloud until Data\HMHost.dat or a stored login names another.
inline constexpr const char16_t* kDefaultHexmoorEndpoint = u"localhost:8585";

// Makes the client, picks the endpoint and takes up a login handed over in Temp\HMID.txt.
void HMStartSession();
void HMEndSession();
// The guard at the head of every cloud entry: true when logged in, after one login attempt if need be.
bool EnsureHMLogin();
