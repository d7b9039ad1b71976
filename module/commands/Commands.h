// The handlers of the module's seven commands.
#pragma once

void HMLogin();
void HMXmCreate();
void HMBomSubmit();
void HMItmSubmit();
void HMBomCmp();
void HMTest();
void HMUpdate();
