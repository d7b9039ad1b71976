// A temporary install folder for the settings tests.
#pragma once

#include "common/TempFolder.h"
#include "platform/InstallPath.h"
#include "support/Encoding.h"

#include <gtest/gtest.h>

class SettingsTest : public ::testing::Test {
protected:
    void SetUp() override { SetCorvaneInstallDirOverride(install.logic()); }
    void TearDown() override { SetCorvaneInstallDirOverride(CString()); }

    // Writes text below the install folder in the legacy code page, as the Windows application does.
    void writeLegacy(const std::string& relative, const std::u16string& text) const {
        install.writeFile(relative, EncodeLegacy(text));
    }
    void writeUtf8(const std::string& relative, const std::u16string& text) const {
        install.writeFile(relative, Utf16ToUtf8(text));
    }

    TempFolder install;
};
