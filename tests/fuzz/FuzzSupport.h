// What the harnesses share: a scratch folder of the process, the input written into it as a file, and a
// host that shows nothing (every harness has it from its start: it drops what the host would print and every
// box it would show, and answers no question, as the harnesses run millions of inputs with nobody at the
// terminal).
#pragma once

#include "support/CString.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// The process's own folder (under /dev/shm when there is one, else $TMPDIR or /tmp), made on first use and
// removed at exit. Folders that fuzzers killed on a finding left behind are removed when the next starts.
const std::string& ScratchFolder();

// Writes the bytes to `relative` ('/' separated) below the scratch folder, making its folders, and gives
// the file's logic path; a path the file system refuses is left unwritten.
CString WriteScratchFile(const std::string& relative, std::string_view bytes);
inline CString WriteScratchFile(const std::string& relative, const uint8_t* data, size_t size) {
    return WriteScratchFile(relative, std::string_view(reinterpret_cast<const char*>(data), size));
}
void RemoveScratchFile(const std::string& relative);

// The scratch folder with a trailing backslash, as the logic names folders.
CString ScratchLogicFolder();

// Makes the scratch folder the install folder, so that readers of LocalData\ and Data\ read the input.
void UseScratchAsInstallFolder();

// Empties a folder below the scratch folder, so that each input starts from nothing left by the last.
void ClearScratchFolder(const std::string& relative);

// The input cut at its zero bytes into exactly `count` parts: missing parts are empty, and whatever follows
// the last separator belongs to the last part. Harnesses whose input is several files take them this way.
std::vector<std::string_view> SplitSections(const uint8_t* data, size_t size, size_t count);

// A broken promise of the code under test: says which and aborts, so that libFuzzer keeps the input.
void Require(bool holds, const char* promise);

} // namespace fuzz
