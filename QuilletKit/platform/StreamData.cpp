#include "platform/StreamData.hpp"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>

#include <stdexcept>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>

namespace quillet {
namespace {

struct LimitExceeded : std::runtime_error {
    LimitExceeded() : std::runtime_error("decoded stream exceeds the limit") {}
};

// Collects into a string and gives up as soon as the limit is passed, before allocating more.
class LimitedCollector : public Pipeline {
  public:
    LimitedCollector(std::string& into, std::size_t limit)
        : Pipeline("limited collector", nullptr), into_(into), limit_(limit) {}

    void write(unsigned char const* data, size_t length) override {
        if (length > limit_ - into_.size()) {
            throw LimitExceeded();
        }
        into_.append(reinterpret_cast<const char*>(data), length);
    }
    void finish() override {}

  private:
    std::string& into_;
    std::size_t limit_;
};

// Counts without keeping anything, against a budget shared by many streams. qpdf catches what a
// pipeline throws and retries without filters, so running out is also recorded in `exceeded`.
class BudgetCounter : public Pipeline {
  public:
    explicit BudgetCounter(std::size_t& left) : Pipeline("budget counter", nullptr), left_(left) {}

    void write(unsigned char const*, size_t length) override {
        if (length > left_) {
            exceeded = true;
            throw LimitExceeded();
        }
        left_ -= length;
    }
    void finish() override {}

    bool exceeded = false;

  private:
    std::size_t& left_;
};

bool expands(const std::string& filter) {
    return filter == "/FlateDecode" || filter == "/Fl" || filter == "/LZWDecode" ||
           filter == "/LZW" || filter == "/RunLengthDecode" || filter == "/RL";
}

bool hasStackedExpansion(QPDFObjectHandle stream) {
    auto filter = stream.getDict().getKey("/Filter");
    if (!filter.isArray()) {
        return false;
    }
    int expanding = 0;
    for (auto& item : filter.getArrayAsVector()) {
        expanding += item.isName() && expands(item.getName()) ? 1 : 0;
    }
    return expanding > 1;
}

bool appendDecoded(QPDFObjectHandle stream, std::string& into, std::size_t limit) {
    const std::size_t before = into.size();
    try {
        LimitedCollector collector(into, limit);
        if (stream.pipeStreamData(&collector, 0, qpdf_dl_generalized, true)) {
            return true;
        }
    } catch (const LimitExceeded&) {
        throw;
    } catch (const std::exception&) {
        // Damaged data: treated below like a stream that cannot be decoded.
    }
    into.resize(before);
    return false;
}

} // namespace

std::optional<std::string> decodedStreamData(QPDFObjectHandle stream, std::size_t limit) {
    try {
        if (!stream.isStream()) {
            return std::nullopt;
        }
        std::string data;
        if (appendDecoded(stream, data, limit)) {
            return data;
        }
    } catch (const std::exception&) {
    }
    return std::nullopt;
}

std::optional<std::string> pageContentData(QPDFObjectHandle page, std::size_t limit) {
    try {
        QPDFObjectHandle contents = page.getKey("/Contents");
        std::string data;
        const auto add = [&](QPDFObjectHandle stream) {
            if (stream.isStream() && appendDecoded(stream, data, limit) && data.size() < limit) {
                data.push_back('\n');
            }
        };
        if (contents.isArray()) {
            for (int i = 0; i < contents.getArrayNItems(); ++i) {
                add(contents.getArrayItem(i));
            }
        } else {
            add(contents);
        }
        return data;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

bool stackedStreamsWithin(QPDF& qpdf, std::size_t budget) {
    std::size_t left = budget;
    for (auto& object : qpdf.getAllObjects()) {
        if (!object.isStream() || !hasStackedExpansion(object)) {
            continue;
        }
        BudgetCounter counter(left);
        try {
            object.pipeStreamData(&counter, 0, qpdf_dl_generalized, true, true);
        } catch (const std::exception&) {
            // Broken data ends early; what it decoded so far still counts against the budget.
        }
        if (counter.exceeded) {
            return false;
        }
    }
    return true;
}

namespace {

bool isSpace(char c) { return std::string_view(" \t\r\n\f", 6).find(c) != std::string_view::npos; }

// Counts the expanding filters named in the array that starts at `at` ('['), up to its ']'.
int expandingFiltersInArray(std::string_view bytes, std::size_t at) {
    int count = 0;
    for (auto i = at + 1; i < bytes.size() && bytes[i] != ']' && i < at + 512; ++i) {
        if (bytes[i] != '/') {
            continue;
        }
        auto end = i + 1;
        while (end < bytes.size() && std::isalnum(static_cast<unsigned char>(bytes[end]))) {
            ++end;
        }
        const auto name = bytes.substr(i + 1, end - i - 1);
        if (name == "FlateDecode" || name == "Fl" || name == "LZWDecode" || name == "LZW" ||
            name == "RunLengthDecode" || name == "RL") {
            ++count;
        }
        i = end - 1;
    }
    return count;
}

} // namespace

bool mayStackFilters(std::string_view bytes) {
    constexpr std::string_view key = "/Filter";
    for (auto at = bytes.find(key); at != std::string_view::npos; at = bytes.find(key, at + 1)) {
        auto next = at + key.size();
        while (next < bytes.size() && isSpace(bytes[next])) {
            ++next;
        }
        if (next >= bytes.size()) {
            break;
        }
        if ((bytes[next] == '[' && expandingFiltersInArray(bytes, next) >= 2) ||
            (bytes[next] >= '0' && bytes[next] <= '9')) {
            return true;
        }
    }
    // A name written with # escapes could spell /Filter where the search above cannot see it.
    constexpr std::string_view escaped = "/F";
    for (auto at = bytes.find(escaped); at != std::string_view::npos; at = bytes.find(escaped, at + 1)) {
        auto end = at + 1;
        while (end < bytes.size() && std::isalnum(static_cast<unsigned char>(bytes[end]))) {
            ++end;
        }
        if (end < bytes.size() && bytes[end] == '#') {
            return true;
        }
    }
    return false;
}

bool mayStackFilters(const std::filesystem::path& file) {
    const int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return true;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || info.st_size <= 0) {
        ::close(fd);
        return true;
    }
    const auto size = static_cast<std::size_t>(info.st_size);
    void* mapped = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    ::close(fd);
    if (mapped == MAP_FAILED) {
        return true;
    }
    const bool result = mayStackFilters(std::string_view(static_cast<const char*>(mapped), size));
    ::munmap(mapped, size);
    return result;
}

} // namespace quillet
