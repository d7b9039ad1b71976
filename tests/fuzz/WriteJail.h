// For a harness whose input decides where files are written: the process gets a mount namespace of its own
// in which every file system is read-only but for the folders given, so that a path that leaves its folder
// fails to be written instead of landing anywhere on the machine.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

// The folders libFuzzer writes into, taken from its arguments: the first corpus folder, the folders of
// the artifact prefix, of an exact artifact path and of a merge control file (the working folder when
// no artifact prefix is given), and the temporary folder, where a merge keeps its control file.
std::vector<std::string> FoldersLibFuzzerWrites(int argc, char** argv);

// False when the process may not have a mount namespace of its own (it is not root).
bool WriteOnlyInto(const std::vector<std::string>& folders);

} // namespace fuzz
