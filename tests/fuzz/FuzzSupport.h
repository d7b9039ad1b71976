// What the harnesses share: a scratch folder of the process, the input written into it as a file, and a
// host that shows nothing.
#pragma once

#include "support/CString.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzz {

// The process's own folder (under /dev/shm when there is one, else $TMPDIR or /tmp), made on first use and
// removed at exit. Folders that fuzzers killed on a finding left behind are removed when the next starts.
const std::string& ScratchFolder();

// Writes the bytes to `relative` ('/' separated) below the scratch folder, making its folders, and gives
// the file's logic path.
CString WriteScratchFile(const std::string& relative, std::string_view bytes);
inline CString WriteScratchFile(const std::string& relative, const uint8_t* data, size_t size) {
    return WriteScratchFile(relative, std::string_view(reinterpret_cast<const char*>(data), size));
}
void RemoveScratchFile(const std::string& relative);

// The scratch folder with a trailing backslash, as the logic names folders.
CString ScratchLogicFolder();

// Makes the scratch folder the install folder, so that readers of LocalData\ and Data\ read the input.
void UseScratchAsInstallFolder();

// Drops what the host would print and every box it would show: the harnesses run millions of inputs.
void SilenceHost();

} // namespace fuzz
