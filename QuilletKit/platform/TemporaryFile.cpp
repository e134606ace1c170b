#include "platform/TemporaryFile.hpp"

#include "platform/FreeNames.hpp"
#include "platform/UUID.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <set>
#include <string>
#include <system_error>

namespace quillet {
namespace fs = std::filesystem;
namespace {

[[noreturn]] void fail(const std::string& what, const fs::path& path, int error) {
    throw fs::filesystem_error(what, path, std::error_code(error, std::generic_category()));
}

void syncPath(const fs::path& path, int flags) {
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC);
    if (fd < 0) {
        fail("cannot open for syncing", path, errno);
    }
    const int result = ::fsync(fd);
    const int error = errno;
    ::close(fd);
    // Some file systems cannot sync a folder; the data itself is what matters.
    if (result != 0 && error != EINVAL && error != EROFS) {
        fail("cannot flush to disk", path, error);
    }
}

// The permissions a freshly created file would get, read without changing the process umask
// (changing it is not thread-safe).
mode_t defaultFileMode() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("Umask:", 0) == 0) {
            return static_cast<mode_t>(0666 & ~std::stoul(line.substr(6), nullptr, 8));
        }
    }
    return 0644;
}

void adoptPermissions(const fs::path& temporary, const fs::path& destination) {
    struct stat existing {};
    const mode_t mode = ::stat(destination.c_str(), &existing) == 0 ? (existing.st_mode & 07777)
                                                                     : defaultFileMode();
    if (::chmod(temporary.c_str(), mode) != 0) {
        fail("cannot set permissions", temporary, errno);
    }
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

} // namespace

TemporaryFile::TemporaryFile(const fs::path& folder, const std::string& prefix,
                             const std::string& suffix) {
    const fs::path candidate = folder / (prefix + newUUIDString() + suffix);
    const int fd = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) {
        fail("cannot create a temporary file in", folder, errno);
    }
    ::close(fd);
    path_ = candidate;
    registration_ = std::make_unique<InterruptCleanup::Registration>(path_);
}

TemporaryFile TemporaryFile::beside(const fs::path& destination) {
    fs::path folder = destination.parent_path();
    if (folder.empty()) {
        folder = ".";
    }
    return TemporaryFile(folder, "." + destination.filename().string() + ".quillet-", ".tmp");
}

TemporaryFile TemporaryFile::inSystemTemporaryFolder(const std::string& suffix) {
    return TemporaryFile(fs::temp_directory_path(), "quillet-", suffix);
}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : path_(std::move(other.path_)), registration_(std::move(other.registration_)) {
    other.path_.clear();
}

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept {
    if (this != &other) {
        discard();
        path_ = std::move(other.path_);
        registration_ = std::move(other.registration_);
        other.path_.clear();
    }
    return *this;
}

TemporaryFile::~TemporaryFile() { discard(); }

void TemporaryFile::discard() noexcept {
    if (!path_.empty()) {
        std::error_code ignored;
        fs::remove(path_, ignored);
        path_.clear();
    }
    registration_.reset();
}

fs::path TemporaryFile::commit(const fs::path& destination, Durability durability) {
    const bool flush = durability == Durability::flushed;
    if (flush) {
        syncPath(path_, O_RDONLY);
    }
    const auto copyBeside = [&] {
        TemporaryFile nearby = beside(destination);
        fs::copy_file(path_, nearby.path(), fs::copy_options::overwrite_existing);
        auto where = nearby.commit(destination, durability);
        discard();
        return where;
    };
    fs::path where = destination;
    if (FreeNames::isClaimed(destination)) {
        if (::chmod(path_.c_str(), defaultFileMode()) != 0) {
            fail("cannot set permissions", path_, errno);
        }
        try {
            where = FreeNames::placeExclusively(path_, destination);
        } catch (const fs::filesystem_error& error) {
            if (error.code().value() != EXDEV) {
                throw;
            }
            return copyBeside();
        }
    } else {
        adoptPermissions(path_, destination);
        if (::rename(path_.c_str(), destination.c_str()) != 0) {
            const int error = errno;
            if (error != EXDEV) {
                fail("cannot move the finished file into place", destination, error);
            }
            return copyBeside();
        }
    }
    path_.clear();
    registration_.reset();
    if (flush) {
        syncPath(folderOf(where), O_RDONLY | O_DIRECTORY);
    }
    return where;
}

void TemporaryFile::flushToDisk(const std::vector<fs::path>& files) {
    std::set<fs::path> folders;
    for (const auto& file : files) {
        syncPath(file, O_RDONLY);
        folders.insert(folderOf(file));
    }
    for (const auto& folder : folders) {
        syncPath(folder, O_RDONLY | O_DIRECTORY);
    }
}

} // namespace quillet
