#include "model/OperationParameters.hpp"

#include "model/JSONObjectReader.hpp"

namespace quillet {

using Json = nlohmann::ordered_json;
using P = OperationParameters;
using IntList = std::vector<std::int64_t>;

namespace {

// Encoders: each writes its case's keys, in the order of the case's fields.

void encode(Json& json, const P::Compress& c) {
    json["tier"] = rawValue(c.tier);
}
void encode(Json& json, const P::TargetSize& c) {
    json["bytes"] = c.bytes;
}
void encode(Json& json, const P::Merge& c) {
    json["insertBlank"] = c.insertBlankBetween;
}

void encode(Json& json, const P::Split& c) {
    json["mode"] = rawValue(c.mode);
    json["ranges"] = c.ranges;
    json["everyN"] = c.everyN;
    json["maxBytes"] = c.maxBytes;
}

void encode(Json& json, const P::Organize& c) {
    json["rotatePages"] = c.rotatePages;
    json["rotations"] = c.rotations;
    json["deletePages"] = c.deletePages;
    // Always written, so a reader sees "keep the order" spelled out rather than forgotten.
    json["newOrder"] = c.newOrder ? Json(*c.newOrder) : Json(nullptr);
}

void encode(Json& json, const P::PDFToImages& c) {
    json["format"] = c.format;
    json["dpi"] = c.dpi;
    json["pages"] = c.pages;
    json["jpegQuality"] = c.jpegQuality;
    json["renderTimeout"] = c.renderTimeout;
}

void encode(Json& json, const P::ImagesToPDF& c) {
    json["pageSize"] = c.pageSize;
    json["fit"] = c.fit;
    json["marginPT"] = c.marginPT;
}

void encode(Json& json, const P::Clean& c) {
    json["preset"] = rawValue(c.preset);
}

void encode(Json& json, const P::Protect& c) {
    json["userPassword"] = c.userPassword;
    json["ownerPassword"] = c.ownerPassword;
}

void encode(Json& json, const P::Unprotect& c) {
    json["password"] = c.password;
}

void encode(Json& json, const P::OCR& c) {
    json["languages"] = c.languages;
}

void encode(Json& json, const P::Redact& c) {
    json["areas"] = Json::array();
    for (const auto& area : c.areas) {
        json["areas"].push_back({{"page", area.page}, {"rect", area.rect}});
    }
    json["patterns"] = Json::array();
    for (const auto& pattern : c.patterns) {
        json["patterns"].push_back(
            {{"text", pattern.text}, {"regex", pattern.regex}, {"matchCase", pattern.matchCase}});
    }
    json["presets"] = c.presets;
    json["fill"] = c.fill;
    json["password"] = c.password;
}

P::Redact decodeRedact(const JSONObjectReader& r) {
    P::Redact redact;
    for (const auto& area : r.objects("areas")) {
        redact.areas.push_back({area.require<std::int64_t>("page"),
                                area.require<std::vector<double>>("rect")});
    }
    for (const auto& pattern : r.objects("patterns")) {
        redact.patterns.push_back({pattern.require<std::string>("text"),
                                   pattern.value("regex", false), pattern.value("matchCase", false)});
    }
    redact.presets = r.value<std::vector<std::string>>("presets", {});
    redact.fill = r.value<std::string>("fill", "black");
    redact.password = r.value<std::string>("password", "");
    return redact;
}

void encode(Json& json, const P::Stamp& c) {
    json["marks"] = Json::array();
    for (const auto& m : c.marks) {
        json["marks"].push_back({{"kind", m.kind},         {"format", m.format},
                                 {"start", m.start},       {"digits", m.digits},
                                 {"prefix", m.prefix},     {"suffix", m.suffix},
                                 {"text", m.text},         {"image", m.image},
                                 {"width", m.width},       {"pages", m.pages},
                                 {"skipFirst", m.skipFirst}, {"position", m.position},
                                 {"margin", m.margin},     {"fontSize", m.fontSize},
                                 {"color", m.color},       {"opacity", m.opacity},
                                 {"rotation", m.rotation}, {"layer", m.layer}});
    }
}

P::Stamp decodeStamp(const JSONObjectReader& r) {
    P::Stamp stamp;
    const P::StampMark d;
    for (const auto& m : r.objects("marks")) {
        stamp.marks.push_back({m.require<std::string>("kind"), m.value("format", d.format),
                               m.value("start", d.start), m.value("digits", d.digits),
                               m.value("prefix", d.prefix), m.value("suffix", d.suffix),
                               m.value("text", d.text), m.value("image", d.image),
                               m.value("width", d.width), m.value("pages", d.pages),
                               m.value("skipFirst", d.skipFirst), m.value("position", d.position),
                               m.value("margin", d.margin), m.value("fontSize", d.fontSize),
                               m.value("color", d.color), m.value("opacity", d.opacity),
                               m.value("rotation", d.rotation), m.value("layer", d.layer)});
    }
    return stamp;
}

// Decoders, one per kind: required keys through `require`, the rest with their defaults.

P decodeCase(PDFOperationKind kind, const JSONObjectReader& r) {
    switch (kind) {
    case PDFOperationKind::compress: return P::Compress{r.require<CompressionQualityTier>("tier")};
    case PDFOperationKind::targetSize: return P::TargetSize{r.require<std::int64_t>("bytes")};
    case PDFOperationKind::merge: return P::Merge{r.value("insertBlank", false)};
    case PDFOperationKind::split:
        return P::Split{r.require<SplitMode>("mode"), r.value<std::string>("ranges", ""),
                        r.value<std::int64_t>("everyN", 1), r.value<std::int64_t>("maxBytes", 0)};
    case PDFOperationKind::organize:
        return P::Organize{r.value<IntList>("rotatePages", {}), r.value<IntList>("rotations", {}),
                           r.value<IntList>("deletePages", {}), r.ifPresent<IntList>("newOrder")};
    case PDFOperationKind::pdfToImages:
        return P::PDFToImages{r.value<std::string>("format", "png"),
                              r.value<std::int64_t>("dpi", 150), r.value<std::string>("pages", ""),
                              r.value("jpegQuality", 0.85),
                              r.value<std::int64_t>("renderTimeout", 30)};
    case PDFOperationKind::imagesToPDF:
        return P::ImagesToPDF{r.value<std::string>("pageSize", "auto"),
                              r.value<std::string>("fit", "fit"), r.value("marginPT", 0.0)};
    case PDFOperationKind::clean: return P::Clean{r.require<CleanPreset>("preset")};
    case PDFOperationKind::protect:
        return P::Protect{r.require<std::string>("userPassword"),
                          r.value<std::string>("ownerPassword", "")};
    case PDFOperationKind::unprotect: return P::Unprotect{r.value<std::string>("password", "")};
    case PDFOperationKind::ocr: return P::OCR{r.value<std::string>("languages", "eng")};
    case PDFOperationKind::redact: return decodeRedact(r);
    case PDFOperationKind::stamp: return decodeStamp(r);
    }
    return {};
}

} // namespace

Json toJSON(const OperationParameters& parameters) {
    Json json = Json::object();
    json["type"] = rawValue(parameters.kind());
    std::visit([&json](const auto& alternative) { encode(json, alternative); }, parameters.value);
    return json;
}

OperationParameters OperationParameters::fromJSON(const Json& json) {
    JSONObjectReader reader(json);
    auto type = reader.require<std::string>("type");
    auto kind = fromRawValue<PDFOperationKind>(type);
    if (!kind) {
        throw JSONDecodingError(JSONDecodingError::Kind::dataCorrupted, "type",
                                "Unknown parameters type " + type);
    }
    return decodeCase(*kind, reader);
}

void to_json(Json& json, const OperationParameters& parameters) {
    json = toJSON(parameters);
}

void from_json(const Json& json, OperationParameters& parameters) {
    parameters = OperationParameters::fromJSON(json);
}

} // namespace quillet
