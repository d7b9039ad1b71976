// The copy that makes the one in-place rewrite safe against a kill: before a file in a folder that may not
// be written is rewritten where it stands, its bytes are kept in the install's Temp\ folder; the copy goes
// when the write has finished, and a copy that is still there at the next start puts the old bytes back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace QxFs::InPlace {

// Keeps `oldBytes` of the native `target` with what the write will put there; the copy's native path, or
// nullopt when no copy can be kept (no install folder, a Temp\ that cannot be written).
std::optional<std::string> KeepCopy(const std::string& target, std::string_view oldBytes, std::string_view newBytes);

// Writes bytes over an existing regular file where it stands, flushed to disk.
bool OverwriteWhereItStands(const std::string& target, std::string_view bytes);

} // namespace QxFs::InPlace
