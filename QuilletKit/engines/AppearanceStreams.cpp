#include "engines/AppearanceStreams.hpp"

namespace quillet {

void forEachAppearanceStream(QPDF& qpdf, const std::function<void(QPDFObjectHandle)>& visit) {
    for (auto page : qpdf.getAllPages()) {
        auto annotations = page.getKey("/Annots");
        if (!annotations.isArray()) {
            continue;
        }
        for (auto annotation : annotations.getArrayAsVector()) {
            auto appearances = annotation.getKey("/AP");
            if (!appearances.isDictionary()) {
                continue;
            }
            for (const auto& kind : appearances.getKeys()) {
                auto appearance = appearances.getKey(kind);
                if (appearance.isStream()) {
                    visit(appearance);
                } else if (appearance.isDictionary()) {
                    for (const auto& state : appearance.getKeys()) {
                        if (auto stream = appearance.getKey(state); stream.isStream()) {
                            visit(stream);
                        }
                    }
                }
            }
        }
    }
}

} // namespace quillet
