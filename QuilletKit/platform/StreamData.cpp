#include "platform/StreamData.hpp"

#include <qpdf/Pipeline.hh>

#include <stdexcept>

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

} // namespace quillet
