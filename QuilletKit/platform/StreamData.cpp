#include "platform/StreamData.hpp"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>

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

} // namespace quillet
