// The JSON decoder of OperationParameters: any JSON either decodes or fails with JSONDecodingError, and a
// decoded value survives its own encoding unchanged.
#include "model/OperationParameters.hpp"
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
        const auto decoded = quillet::OperationParameters::fromJSON(json);
        if (quillet::OperationParameters::fromJSON(quillet::toJSON(decoded)) != decoded) {
            std::abort();
        }
    } catch (const quillet::JSONDecodingError&) {
    }
    return 0;
}
