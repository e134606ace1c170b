#include "engines/StreamDeduplicator.hpp"

#include "engines/AppearanceStreams.hpp"
#include "platform/ContentDigest.hpp"

#include <qpdf/Buffer.hh>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>

namespace quillet {
namespace {

using Replacements = std::map<QPDFObjGen, QPDFObjectHandle>;

// Points every reference held directly (not through another indirect object) by `container` to
// its replacement. Answers whether anything changed.
bool relink(QPDFObjectHandle container, const Replacements& replacements, int depth = 0) {
    if (depth > 64) {
        return false;
    }
    bool changed = false;
    const auto replaced = [&](QPDFObjectHandle item) -> std::optional<QPDFObjectHandle> {
        if (item.isIndirect()) {
            const auto found = replacements.find(item.getObjGen());
            if (found != replacements.end()) {
                return found->second;
            }
            return std::nullopt;
        }
        if (item.isArray() || item.isDictionary()) {
            changed |= relink(item, replacements, depth + 1);
        }
        return std::nullopt;
    };
    if (container.isArray()) {
        const int count = container.getArrayNItems();
        for (int i = 0; i < count; ++i) {
            if (auto target = replaced(container.getArrayItem(i))) {
                container.setArrayItem(i, *target);
                changed = true;
            }
        }
    } else if (container.isDictionary()) {
        for (const auto& key : container.getKeys()) {
            if (auto target = replaced(container.getKey(key))) {
                container.replaceKey(key, *target);
                changed = true;
            }
        }
    }
    return changed;
}

// The dictionary as text, /Length included, with references to duplicates written as the stream
// kept, so that two images whose soft masks were merged compare equal in the next round.
std::string dictionaryKey(QPDFObjectHandle stream, const Replacements& replacements) {
    auto dictionary = stream.getDict().shallowCopy();
    relink(dictionary, replacements);
    return dictionary.unparse();
}

bool isWriterStream(QPDFObjectHandle stream) {
    auto type = stream.getDict().getKey("/Type");
    return type.isNameAndEquals("/XRef") || type.isNameAndEquals("/ObjStm");
}

std::string rawBytes(QPDFObjectHandle stream) {
    const auto buffer = stream.getRawStreamData();
    return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

// Streams that an editor rewrites in place, for one page or one field: a page's content and
// annotation appearances (a viewer filling a form redraws the field's own appearance stream).
// Shared, a change to one would show on all.
std::set<QPDFObjGen> editedInPlace(QPDF& qpdf) {
    std::set<QPDFObjGen> streams;
    const auto add = [&](QPDFObjectHandle object) {
        if (object.isStream()) {
            streams.insert(object.getObjGen());
        }
    };
    for (auto page : qpdf.getAllPages()) {
        auto contents = page.getKey("/Contents");
        add(contents);
        if (contents.isArray()) {
            for (auto& item : contents.getArrayAsVector()) {
                add(item);
            }
        }
    }
    forEachAppearanceStream(qpdf, add);
    return streams;
}

} // namespace

int StreamDeduplicator::deduplicate(QPDF& qpdf) {
    const auto excluded = editedInPlace(qpdf);
    std::vector<QPDFObjectHandle> streams;
    for (auto& object : qpdf.getAllObjects()) {
        if (object.isStream() && !isWriterStream(object) && !excluded.count(object.getObjGen())) {
            streams.push_back(object);
        }
    }
    // Only streams whose dictionaries (and so lengths) agree are read, once each; a round's
    // merges can make their users' dictionaries agree in the next round.
    std::map<QPDFObjGen, std::string> digests;
    const auto digestOf = [&](QPDFObjectHandle stream) -> const std::string& {
        auto [entry, fresh] = digests.try_emplace(stream.getObjGen());
        if (fresh) {
            entry->second = contentDigest(rawBytes(stream));
        }
        return entry->second;
    };
    Replacements replacements;
    for (int round = 0; round < 4; ++round) {
        std::unordered_map<std::string, std::vector<std::size_t>> byDictionary;
        for (std::size_t i = 0; i < streams.size(); ++i) {
            if (!replacements.count(streams[i].getObjGen())) {
                byDictionary[dictionaryKey(streams[i], replacements)].push_back(i);
            }
        }
        const auto before = replacements.size();
        for (const auto& [key, members] : byDictionary) {
            if (members.size() < 2) {
                continue;
            }
            std::unordered_map<std::string, std::size_t> first;
            for (const auto i : members) {
                const auto [kept, fresh] = first.try_emplace(digestOf(streams[i]), i);
                // Equal digests are confirmed byte for byte before anything is relinked.
                if (!fresh && rawBytes(streams[kept->second]) == rawBytes(streams[i])) {
                    replacements.emplace(streams[i].getObjGen(), streams[kept->second]);
                }
            }
        }
        if (replacements.size() == before) {
            break;
        }
    }
    if (replacements.empty()) {
        return 0;
    }
    for (auto& object : qpdf.getAllObjects()) {
        relink(object.isStream() ? object.getDict() : object, replacements);
    }
    relink(qpdf.getTrailer(), replacements);
    return static_cast<int>(replacements.size());
}

} // namespace quillet
