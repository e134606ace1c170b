#include "platform/FreeNames.hpp"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <mutex>
#include <string>
#include <system_error>

namespace quillet::FreeNames {
namespace fs = std::filesystem;
namespace {

// The index of a claim that has no sequence after it.
constexpr int exactly = 0;

struct Claim {
    fs::path base;
    int index = 1;
    Clock::time_point now;
    std::optional<fs::path> placedAt;
};

std::mutex mutex;
std::map<fs::path, Claim>& claims() {
    static std::map<fs::path, Claim> table;
    return table;
}

fs::path key(const fs::path& path) { return path.lexically_normal(); }

[[noreturn]] void fail(const std::string& what, const fs::path& path, int error) {
    throw fs::filesystem_error(what, path, std::error_code(error, std::generic_category()));
}

bool unsupported(int error) {
    return error == EINVAL || error == ENOSYS || error == ENOTSUP || error == EOPNOTSUPP ||
           error == EPERM;
}

// 0 when `file` now is `destination`, EEXIST when the name is taken, another errno otherwise.
int moveWithoutReplacing(const fs::path& file, const fs::path& destination) {
    if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, destination.c_str(), RENAME_NOREPLACE) ==
        0) {
        return 0;
    }
    int error = errno;
    if (!unsupported(error)) {
        return error;
    }
    // File systems without RENAME_NOREPLACE mostly still have hard links, which are exclusive too.
    if (::link(file.c_str(), destination.c_str()) == 0) {
        ::unlink(file.c_str());
        return 0;
    }
    error = errno;
    if (!unsupported(error)) {
        return error;
    }
    // Neither (some network and FAT file systems): the best left is to look right before moving.
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(destination, ignored))) {
        return EEXIST;
    }
    return ::rename(file.c_str(), destination.c_str()) == 0 ? 0 : errno;
}

} // namespace

fs::path candidate(const fs::path& base, int index, Clock::time_point now) {
    if (index == 1) {
        return base;
    }
    auto stem = base.stem().string();
    auto extension = base.extension().string();
    if (!extension.empty()) {
        extension.erase(0, 1);
    }
    std::string number;
    if (index >= 2 && index <= 999) {
        number = std::to_string(index);
    } else {
        number = std::to_string(
            std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch()).count());
    }
    return base.parent_path() / (stem + "-" + number + "." + extension);
}

void claim(const fs::path& chosen, const fs::path& base, int index, Clock::time_point now) {
    std::lock_guard lock(mutex);
    claims()[key(chosen)] = Claim{base, index, now, std::nullopt};
}

void claimExactly(const fs::path& chosen) {
    std::lock_guard lock(mutex);
    claims()[key(chosen)] = Claim{chosen, exactly, Clock::time_point{}, std::nullopt};
}

bool isClaimed(const fs::path& destination) {
    std::lock_guard lock(mutex);
    const auto found = claims().find(key(destination));
    return found != claims().end() && !found->second.placedAt;
}

fs::path placeExclusively(const fs::path& file, const fs::path& destination) {
    Claim claim;
    {
        std::lock_guard lock(mutex);
        const auto found = claims().find(key(destination));
        if (found == claims().end() || found->second.placedAt) {
            fail("not a claimed output name", destination, EINVAL);
        }
        claim = found->second;
    }
    // Past the numbered names the sequence has one last name; it is not tried twice.
    const int last = claim.index == exactly ? exactly : 1000;
    for (int index = claim.index; index <= last; ++index) {
        const auto target = index == claim.index ? destination
                                                 : candidate(claim.base, index, claim.now);
        const int error = moveWithoutReplacing(file, target);
        if (error == 0) {
            std::lock_guard lock(mutex);
            claims()[key(destination)].placedAt = target;
            return target;
        }
        if (error != EEXIST) {
            fail("cannot move the finished file into place", target, error);
        }
    }
    fail("no free name left for", destination, EEXIST);
}

fs::path placed(const fs::path& chosen) {
    std::lock_guard lock(mutex);
    const auto found = claims().find(key(chosen));
    if (found == claims().end()) {
        return chosen;
    }
    auto where = found->second.placedAt.value_or(chosen);
    claims().erase(found);
    return where;
}

void release(const fs::path& chosen) {
    std::lock_guard lock(mutex);
    claims().erase(key(chosen));
}

} // namespace quillet::FreeNames
