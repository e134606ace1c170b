#include "tasks/StateFile.hpp"

#include "platform/UUID.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <fstream>
#include <sstream>
#include <system_error>
#include <unistd.h>

namespace quillet::StateFile {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& file, const std::string& what, int error) {
    throw fs::filesystem_error("cannot write state file (" + what + ")", file,
                               std::error_code(error, std::generic_category()));
}

class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (fd_ >= 0) {
            ::close(fd_);
        }
    }
    int get() const { return fd_; }
    /// Closes now so a failing close (a delayed write error) is seen.
    int close() {
        const int result = ::close(fd_);
        fd_ = -1;
        return result;
    }

  private:
    int fd_;
};

void writeAll(int fd, const std::string& bytes, const fs::path& file) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            fail(file, "write", errno);
        }
        done += static_cast<std::size_t>(n);
    }
}

} // namespace

std::optional<std::string> read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    std::ostringstream content;
    content << stream.rdbuf();
    if (stream.bad()) {
        return std::nullopt;
    }
    return std::move(content).str();
}

void write(const fs::path& file, const std::string& bytes, fs::perms permissions) {
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const fs::path temporary = folder / ("." + file.filename().string() + "-" + newUUIDString());
    Descriptor out(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                          static_cast<mode_t>(permissions)));
    if (out.get() < 0) {
        fail(file, "create", errno);
    }
    try {
        writeAll(out.get(), bytes, file);
        // The umask may have narrowed the mode; a state file gets exactly what was asked.
        if (::fchmod(out.get(), static_cast<mode_t>(permissions)) != 0) {
            fail(file, "chmod", errno);
        }
        if (::fsync(out.get()) != 0) {
            fail(file, "fsync", errno);
        }
        if (out.close() != 0) {
            fail(file, "close", errno);
        }
        if (::rename(temporary.c_str(), file.c_str()) != 0) {
            fail(file, "rename", errno);
        }
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
    // The rename is only durable once the folder itself is on disk.
    Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() >= 0) {
        ::fsync(directory.get());
    }
}

void setAside(const fs::path& file) noexcept {
    std::error_code ignored;
    fs::rename(file, fs::path(file.string() + ".bad"), ignored);
}

void remove(const fs::path& file) noexcept {
    std::error_code ignored;
    fs::remove(file, ignored);
}

} // namespace quillet::StateFile
