// A fresh folder under the system temporary folder, removed with everything in it when the
// object goes away. Tests write their fixtures and outputs here, never beside the corpus.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillet::test {

class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    /// Writes `bytes` to `name` inside the folder and answers the full path.
    std::filesystem::path write(const std::string& name, const std::string& bytes) const;

  private:
    std::filesystem::path path_;
};

/// The whole content of a file ("" when it cannot be read).
std::string readFile(const std::filesystem::path& path);

/// The names in `folder`, sorted; none when it does not exist.
std::vector<std::string> fileNames(const std::filesystem::path& folder);

/// A file of the shared real-world corpus, e.g. corpus("001-trivial/minimal-document.pdf").
std::filesystem::path corpus(const std::string& relative);

} // namespace quillet::test
