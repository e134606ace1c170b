#include "platform/ContentDigest.hpp"

#include <fmt/format.h>

#include <cstdint>
#include <functional>

namespace quillet {

std::string contentDigest(std::string_view bytes) {
    std::uint64_t fnv = 0xcbf29ce484222325ull;
    for (const unsigned char byte : bytes) {
        fnv = (fnv ^ byte) * 0x100000001b3ull;
    }
    const std::uint64_t murmur = std::hash<std::string_view>{}(bytes);
    return fmt::format("{:08x}{:016x}{:016x}", static_cast<std::uint32_t>(bytes.size()), fnv,
                       murmur);
}

} // namespace quillet
