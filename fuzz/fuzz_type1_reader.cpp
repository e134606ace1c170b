// Type 1 font programs: any bytes either convert to a CFF that FreeType proves identical, come
// back refused (nullopt), or fail with FontProgramError; never a crash, a hang or a leak.
//
// Encrypted bytes hide the structure from mutation, so an input that starts with 0x01 is taken
// as a font whose bytes after `eexec` is still plain text, and is encrypted here first: the
// mutations then reach the Private dictionary and, with `/lenIV -1`, the charstrings.
#include "engines/fonts/FontProgramError.hpp"
#include "engines/fonts/Type1Reader.hpp"
#include "engines/fonts/Type1ToCFF.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

std::vector<std::uint8_t> encryptAfterEexec(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t eexec = text.find("eexec\n");
    std::vector<std::uint8_t> out(data, data + size);
    if (eexec == std::string_view::npos) {
        return out;
    }
    out.resize(eexec + 6);
    std::uint16_t r = 55665;
    for (std::size_t i = 0; i < 4 + size - eexec - 6; ++i) {
        const std::uint8_t plain = i < 4 ? 0 : data[eexec + 6 + i - 4];
        const auto cipher = static_cast<std::uint8_t>(plain ^ (r >> 8));
        out.push_back(cipher);
        r = static_cast<std::uint16_t>((cipher + r) * 52845u + 22719u);
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto program = size > 0 && data[0] == 0x01 ? encryptAfterEexec(data + 1, size - 1)
                                                     : std::vector<std::uint8_t>(data, data + size);
    try {
        quillet::fonts::Type1Reader::read(program, std::int64_t(size / 3), std::nullopt);
        quillet::fonts::Type1ToCFF::convert(program, std::nullopt, std::nullopt, std::nullopt);
        quillet::fonts::Type1ToCFF::convert(program, std::nullopt, std::nullopt,
                                            std::set<std::string>{"A", "a", "Aacute"});
    } catch (const quillet::fonts::FontProgramError&) {
    }
    return 0;
}
