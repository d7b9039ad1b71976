// A module session against a temporary install folder and a scripted cloud.
#pragma once

#include "common/CapturedOutput.h"
#include "common/ScriptedBackend.h"
#include "common/TempFolder.h"
#include "module/Session.h"
#include "platform/InstallPath.h"

#include <gtest/gtest.h>

class ModuleFixture : public ::testing::Test {
protected:
    ModuleFixture() {
        install.makeFolder("Data");
        install.makeFolder("Temp");
        install.makeFolder("LocalData");
        SetCorvaneInstallDirOverride(install.logic());
    }
    ~ModuleFixture() override {
        HMEndSession();
        g_bForceLogin = false;
        g_bBomCheckFailed = false;
        SetCorvaneInstallDirOverride(CString());
    }

    CloudScript& cloud() { return *scripted.script; }

    TempFolder install;
    ScriptedCloud scripted;
    CapturedOutput output;
};
