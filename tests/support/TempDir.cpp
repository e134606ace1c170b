#include "support/TempDir.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace quillet::test {

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quillet-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot create a temporary folder");
    }
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    // Tests may leave read-only folders behind; make them writable so removal succeeds.
    for (auto it = std::filesystem::recursive_directory_iterator(path_, ignored);
         it != std::filesystem::recursive_directory_iterator(); it.increment(ignored)) {
        std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
    }
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TempDir::write(const std::string& name, const std::string& bytes) const {
    auto target = path_ / name;
    std::filesystem::create_directories(target.parent_path());
    std::ofstream out(target, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        throw std::runtime_error("cannot write " + target.string());
    }
    return target;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

std::vector<std::string> fileNames(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (auto it = std::filesystem::directory_iterator(folder, error);
         it != std::filesystem::directory_iterator(); it.increment(error)) {
        names.push_back(it->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::filesystem::path corpus(const std::string& relative) {
    return std::filesystem::path(corpusFolder()) / relative;
}

} // namespace quillet::test
