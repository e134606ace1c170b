#include "engines/DocumentScrubber.hpp"

#include <qpdf/QPDFObjGen.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <array>
#include <set>
#include <vector>

namespace quillet {
namespace {

// Keys whose whole value goes, whatever it holds.
constexpr std::array<const char*, 7> doomedKeys{
    "/Metadata", "/PieceInfo", "/Thumb", "/AA", "/EF", "/JavaScript", "/EmbeddedFiles",
};

bool isJavaScriptAction(QPDFObjectHandle value) {
    return value.isDictionary() &&
           (value.getKey("/S").isNameAndEquals("/JavaScript") || value.hasKey("/JS"));
}

bool isFileAttachment(QPDFObjectHandle value) {
    return value.isDictionary() && value.getKey("/Subtype").isNameAndEquals("/FileAttachment");
}

bool isEmbeddedFile(QPDFObjectHandle value) {
    return value.isStream() && value.getDict().getKey("/Type").isNameAndEquals("/EmbeddedFile");
}

// A value that must not survive wherever it is referenced from.
bool isDoomed(QPDFObjectHandle value) {
    return isJavaScriptAction(value) || isFileAttachment(value) || isEmbeddedFile(value);
}

void scrubDictionary(QPDFObjectHandle dictionary) {
    for (const char* key : doomedKeys) {
        dictionary.removeKey(key);
    }
    for (const auto& key : dictionary.getKeys()) {
        if (isDoomed(dictionary.getKey(key))) {
            dictionary.removeKey(key);
        }
    }
}

void scrubArray(QPDFObjectHandle array) {
    // Backwards, so erasing does not shift the items still to be looked at.
    for (int i = array.getArrayNItems() - 1; i >= 0; --i) {
        if (isDoomed(array.getArrayItem(i))) {
            array.eraseItem(i);
        }
    }
}

class Walk {
  public:
    void run(QPDFObjectHandle start) {
        pending_.push_back(start);
        while (!pending_.empty()) {
            auto object = pending_.back();
            pending_.pop_back();
            if (object.isIndirect() && !visited_.insert(object.getObjGen()).second) {
                continue;
            }
            visit(object);
        }
    }

  private:
    // Scrubbing comes before descending, so nothing removed here is ever visited.
    void visit(QPDFObjectHandle object) {
        if (object.isStream()) {
            object = object.getDict();
        }
        if (object.isDictionary()) {
            scrubDictionary(object);
            for (const auto& key : object.getKeys()) {
                pending_.push_back(object.getKey(key));
            }
        } else if (object.isArray()) {
            scrubArray(object);
            for (const auto& item : object.aitems()) {
                pending_.push_back(item);
            }
        }
    }

    std::vector<QPDFObjectHandle> pending_;
    std::set<QPDFObjGen> visited_;
};

} // namespace

void DocumentScrubber::scrub(QPDF& qpdf) {
    Walk().run(qpdf.getTrailer());
}

} // namespace quillet
