#include "tasks/AppDirectories.hpp"

#include <cstdlib>
#include <system_error>

namespace quillet::AppDirectories {
namespace {

namespace fs = std::filesystem;

fs::path dataHome() {
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg != nullptr && *xdg == '/') {
        return xdg;
    }
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
        return fs::path(home) / ".local" / "share";
    }
    std::error_code error;
    auto temporary = fs::temp_directory_path(error);
    return error ? fs::path("/tmp") : temporary;
}

} // namespace

fs::path support() {
    const fs::path folder = dataHome() / "quillet";
    std::error_code error;
    if (!fs::exists(folder, error)) {
        if (fs::create_directories(folder, error)) {
            fs::permissions(folder, fs::perms::owner_all, fs::perm_options::replace, error);
        }
    }
    return folder;
}

} // namespace quillet::AppDirectories
