// The JSON decoder of PDFMetadataInfo: any JSON either decodes or fails with JSONDecodingError, and a
// decoded value survives its own encoding unchanged.
#include "engines/PDFMetadataInfo.hpp"
#include "model/JSONDecodingError.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto json = nlohmann::ordered_json::parse(data, data + size, nullptr, false);
    if (json.is_discarded()) {
        return 0;
    }
    try {
        const auto decoded = quillet::PDFMetadataInfo::fromJSON(json);
        if (quillet::PDFMetadataInfo::fromJSON(quillet::toJSON(decoded)) != decoded) {
            std::abort();
        }
    } catch (const quillet::JSONDecodingError&) {
    }
    return 0;
}
