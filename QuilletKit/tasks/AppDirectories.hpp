// Where the application keeps its own files.
#pragma once

#include <filesystem>

namespace quillet::AppDirectories {

/// "$XDG_DATA_HOME/quillet" ("~/.local/share/quillet" when the variable is unset or not an
/// absolute path), or "quillet" in the temporary folder when no home is known either. Each call
/// creates the folder (mode 0700, with missing parents) when it is missing; a failure to create
/// it is ignored and the location is answered all the same.
std::filesystem::path support();

} // namespace quillet::AppDirectories
