#include "engines/SplitPartFile.hpp"

#include "platform/UUID.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <set>
#include <system_error>

namespace quillet {
namespace fs = std::filesystem;
namespace {

[[noreturn]] void fail(const std::string& what, const fs::path& path, int error) {
    throw fs::filesystem_error(what, path, std::error_code(error, std::generic_category()));
}

void flush(const fs::path& path, int flags) {
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC);
    if (fd < 0) {
        fail("cannot open for flushing", path, errno);
    }
    const int result = ::fsync(fd);
    const int error = errno;
    ::close(fd);
    // Some file systems cannot flush a folder; the parts themselves are what matters.
    if (result != 0 && error != EINVAL && error != EROFS) {
        fail("cannot flush to disk", path, error);
    }
}

fs::path folderOf(const fs::path& file) {
    const auto folder = file.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

} // namespace

SplitPartFile::SplitPartFile(const fs::path& destination) : destination_(destination) {
    const fs::path folder = folderOf(destination);
    const fs::path candidate =
        folder / ("." + destination.filename().string() + ".quillet-" + newUUIDString() + ".tmp");
    // 0666 lets the umask decide, as for any file a program creates: the part keeps these
    // permissions when it is renamed into place.
    const int fd = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) {
        fail("cannot create a part in", folder, errno);
    }
    ::close(fd);
    path_ = candidate;
    registration_ = std::make_unique<InterruptCleanup::Registration>(path_);
}

SplitPartFile::SplitPartFile(SplitPartFile&& other) noexcept
    : path_(std::move(other.path_)), destination_(std::move(other.destination_)),
      registration_(std::move(other.registration_)) {
    other.path_.clear();
}

SplitPartFile& SplitPartFile::operator=(SplitPartFile&& other) noexcept {
    if (this != &other) {
        discard();
        path_ = std::move(other.path_);
        destination_ = std::move(other.destination_);
        registration_ = std::move(other.registration_);
        other.path_.clear();
    }
    return *this;
}

SplitPartFile::~SplitPartFile() {
    discard();
}

void SplitPartFile::discard() noexcept {
    if (!path_.empty()) {
        std::error_code ignored;
        fs::remove(path_, ignored);
        path_.clear();
    }
    registration_.reset();
}

void SplitPartFile::moveIntoPlace() {
    if (::rename(path_.c_str(), destination_.c_str()) != 0) {
        fail("cannot move the finished part into place", destination_, errno);
    }
    path_.clear();
    registration_.reset();
}

void SplitPartFile::flushToDisk(const std::vector<fs::path>& files) {
    std::set<fs::path> folders;
    for (const auto& file : files) {
        flush(file, O_RDONLY);
        folders.insert(folderOf(file));
    }
    for (const auto& folder : folders) {
        flush(folder, O_RDONLY | O_DIRECTORY);
    }
}

} // namespace quillet
