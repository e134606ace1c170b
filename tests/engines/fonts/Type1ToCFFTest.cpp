// Type 1 to CFF conversion: whole real fonts must pass FreeType's proof and shrink, subsets must
// hold exactly what was asked for (plus what seac needs), and hostile programs must fail cleanly
// instead of crashing or hanging.
#include "engines/fonts/Type1ToCFF.hpp"
#include "engines/fonts/CFFStandardStrings.hpp"
#include "engines/fonts/CFFWriter.hpp"
#include "engines/fonts/FontProgramError.hpp"
#include "engines/fonts/FontVerifier.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace quillet::fonts {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

std::span<const std::uint8_t> spanOf(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::size_t deflatedSize(std::span<const std::uint8_t> data) {
    uLongf size = compressBound(data.size());
    Bytes out(size);
    compress2(out.data(), &size, data.data(), data.size(), 9);
    return size;
}

std::set<std::string> namesIn(std::span<const std::uint8_t> font) {
    std::set<unsigned> all;
    for (unsigned i = 0; i < 4096; ++i) {
        all.insert(i);
    }
    return FontVerifier::glyphNames(font, all);
}

// --- Synthetic Type 1 programs, written the way font tools write them ---------------------------

std::string num(int value) {
    return {char(255), char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
}
const std::string hsbw = "\x0d", rmoveto = "\x15", rlineto = "\x05", rrcurveto = "\x08",
                  closepath = "\x09", endchar = "\x0e", callsubr = "\x0a", ret = "\x0b",
                  hstem = "\x01", vstem = "\x03", callothersubr = "\x0c\x10", pop = "\x0c\x11",
                  setcurrentpoint = "\x0c\x21", seac = "\x0c\x06", div = "\x0c\x0c";

std::string encrypt(const std::string& plain, std::uint16_t r) {
    std::string cipher;
    for (const char c : std::string(4, '\0') + plain) {
        const auto byte = static_cast<std::uint8_t>(static_cast<std::uint8_t>(c) ^ (r >> 8));
        cipher.push_back(static_cast<char>(byte));
        r = static_cast<std::uint16_t>((byte + r) * 52845u + 22719u);
    }
    return cipher;
}

struct Program {
    std::vector<std::pair<std::string, std::string>> glyphs;
    std::vector<std::string> subrs;
    std::string encoding = "StandardEncoding";
    std::string privateExtra;
    /// Added to every charstring's declared byte count.
    long long countBias = 0;
};

std::string square(int left, int size) {
    return num(left) + num(0) + rmoveto + num(size) + num(0) + rlineto + num(0) + num(size) +
           rlineto + num(-size) + num(0) + rlineto + closepath;
}

// The subroutines every hinted font starts with: flex (0-2), hint replacement (3, 4).
std::vector<std::string> standardSubrs() {
    return {num(3) + num(0) + callothersubr + pop + pop + setcurrentpoint + ret,
            num(0) + num(1) + callothersubr + ret, num(0) + num(2) + callothersubr + ret, ret,
            num(1) + num(3) + callothersubr + pop + callsubr + ret};
}

std::string type1(const Program& program) {
    std::string clear = "%!PS-AdobeFont-1.0: Test 001\n11 dict begin\n/FontType 1 def\n"
                        "/FontName /Test def\n/PaintType 0 def\n"
                        "/FontInfo 2 dict dup begin /FullName (Test Font) def end readonly def\n"
                        "/FontMatrix [0.001 0 0 0.001 0 0] readonly def\n"
                        "/FontBBox {0 0 1000 1000} readonly def\n/Encoding " +
                        program.encoding + " def\ncurrentfile eexec\n";
    std::string body = "dup /Private 8 dict dup begin\n/RD{string currentfile exch readstring pop}"
                       "executeonly def\n/ND{noaccess def}executeonly def\n/NP{noaccess put}"
                       "executeonly def\n/BlueValues [-10 0 500 510] def\n" +
                       program.privateExtra + "/Subrs " + std::to_string(program.subrs.size()) +
                       " array\n";
    for (std::size_t i = 0; i < program.subrs.size(); ++i) {
        const std::string cs = encrypt(program.subrs[i], 4330);
        body +=
            "dup " + std::to_string(i) + " " + std::to_string(cs.size()) + " RD " + cs + " NP\n";
    }
    body +=
        "ND\n2 index /CharStrings " + std::to_string(program.glyphs.size()) + " dict dup begin\n";
    for (const auto& [name, charstring] : program.glyphs) {
        const std::string cs = encrypt(charstring, 4330);
        body += "/" + name + " " + std::to_string(cs.size() + program.countBias) + " RD " + cs +
                " ND\n";
    }
    body += "end\nend\nreadonly put\nnoaccess put\ndup/FontName get exch definefont pop\n"
            "mark currentfile closefile\n";
    return clear + encrypt(body, 55665) + "\n" + std::string(512, '0') + "\ncleartomark\n";
}

// A font that uses every construct the converter rewrites.
Program featureFont() {
    Program font;
    font.subrs = standardSubrs();
    font.subrs.push_back(num(100) + num(50) + hstem + ret); // 5: a replacement hint set
    const std::string flex =
        num(1) + callsubr + num(100) + num(10) + rmoveto + num(2) + callsubr +
        [] {
            std::string points;
            for (int i = 0; i < 6; ++i) {
                points += num(50) + num(i < 3 ? 20 : -20) + rmoveto + num(2) + callsubr;
            }
            return points;
        }() +
        num(50) + num(450) + num(0) + num(0) + callsubr;
    font.glyphs = {
        {".notdef", num(0) + num(0) + hsbw + endchar},
        {"A", num(20) + num(600) + hsbw + num(0) + num(20) + hstem + num(10) + num(30) + vstem +
                  square(0, 500) + num(5) + num(4) + callsubr + num(0) + num(600) + rmoveto +
                  num(100) + num(0) + rlineto + closepath + endchar},
        {"B", num(10) + num(1000) + num(3) + div + hsbw + num(0) + num(0) + rmoveto + flex +
                  num(0) + num(300) + rlineto + closepath + endchar},
        {"acute", num(30) + num(300) + hsbw + square(0, 100) + endchar},
        {"Aacute",
         num(20) + num(600) + hsbw + num(30) + num(150) + num(600) + num(65) + num(194) + seac},
        {"C", num(0) + num(500) + hsbw + num(0) + num(0) + rmoveto + num(10) + num(20) + num(30) +
                  num(40) + num(50) + num(60) + rrcurveto + closepath + endchar},
    };
    return font;
}

std::optional<ConvertedFont> convert(const std::string& program,
                                     std::optional<std::set<std::string>> keep = std::nullopt) {
    return Type1ToCFF::convert(spanOf(program), std::nullopt, std::nullopt, keep);
}

TEST(Type1ToCFF, EveryRewrittenConstructPassesTheProof) {
    const std::string program = type1(featureFont());
    const auto converted = convert(program);
    ASSERT_TRUE(converted);
    EXPECT_EQ(converted->fontName, "Test");
    EXPECT_EQ(namesIn(spanOf(converted->cff)),
              (std::set<std::string>{".notdef", "A", "B", "acute", "Aacute", "C"}));
}

TEST(Type1ToCFF, SeveralCodesForOneGlyphAllSurvive) {
    Program font = featureFont();
    font.encoding = "256 array 0 1 255 {1 index exch /.notdef put} for dup 65 /A put "
                    "dup 66 /B put dup 97 /A put dup 200 /A put dup 201 /C put readonly";
    // The proof compares every code's glyph name through FreeType's custom charmap.
    EXPECT_TRUE(convert(type1(font)));
}

TEST(Type1ToCFF, SubsetKeepsWhatWasAskedAndWhatSeacNeeds) {
    const auto converted = convert(type1(featureFont()), std::set<std::string>{"Aacute", "C"});
    ASSERT_TRUE(converted);
    EXPECT_EQ(namesIn(spanOf(converted->cff)),
              (std::set<std::string>{".notdef", "A", "acute", "Aacute", "C"}));
}

// The forms a /FontFile takes in the wild all read as the same font: the eexec section in hex,
// the trailer of zeros missing, PFB segments, /Length1 pointing elsewhere.
struct ProgramForm {
    const char* name;
    std::string (*make)(const std::string& binaryForm);
    std::optional<std::int64_t> length1;
};

std::string hexForm(const std::string& program) {
    const std::size_t start = program.find("eexec\n") + 6, end = program.find("\n0000");
    std::string hex;
    for (std::size_t i = start; i < end; ++i) {
        static const char digits[] = "0123456789abcdef";
        hex += {digits[static_cast<std::uint8_t>(program[i]) >> 4], digits[program[i] & 15]};
        hex += (i - start) % 32 == 31 ? "\n" : "";
    }
    return program.substr(0, start) + hex + program.substr(end);
}

std::string pfbForm(const std::string& program) {
    const std::size_t start = program.find("eexec\n") + 6, end = program.find("\n0000");
    const auto segment = [](char type, const std::string& data) {
        const auto size = static_cast<std::uint32_t>(data.size());
        return std::string{char(0x80),      type, char(size), char(size >> 8), char(size >> 16),
                           char(size >> 24)} +
               data;
    };
    return segment(1, program.substr(0, start)) + segment(2, program.substr(start, end - start)) +
           segment(1, program.substr(end)) + std::string{char(0x80), 3};
}

class ProgramForms : public testing::TestWithParam<ProgramForm> {};

TEST_P(ProgramForms, ReadAsTheSameFont) {
    const std::string binary = type1(featureFont());
    const auto expected = convert(binary);
    const std::string form = GetParam().make(binary);
    const auto converted =
        Type1ToCFF::convert(spanOf(form), GetParam().length1, std::int64_t(7), std::nullopt);
    ASSERT_TRUE(expected && converted);
    EXPECT_EQ(converted->cff, expected->cff);
}

INSTANTIATE_TEST_SUITE_P(
    Type1ToCFF, ProgramForms,
    testing::Values(
        ProgramForm{"HexWithWrongLength1", hexForm, 3}, ProgramForm{"Pfb", pfbForm, std::nullopt},
        ProgramForm{"NoTrailer",
                    [](const std::string& p) { return p.substr(0, p.find("\n0000") + 1); },
                    std::nullopt},
        ProgramForm{"Length1PastTheEnd", [](const std::string& p) { return p; }, 1 << 30}),
    [](const auto& info) { return std::string(info.param.name); });

// --- Hostile programs ---------------------------------------------------------------------------

struct HostileCase {
    const char* name;
    std::string program;
};

Program withGlyph(const std::string& charstring) {
    Program font = featureFont();
    font.glyphs.emplace_back("X", charstring);
    return font;
}

std::vector<HostileCase> hostileCases() {
    const std::string good = type1(featureFont());
    Program loop = featureFont();
    loop.subrs.push_back(num(6) + callsubr + ret); // 6 calls itself
    loop.glyphs.emplace_back("X", num(0) + num(500) + hsbw + num(6) + callsubr + endchar);
    std::string overflow = num(0) + num(500) + hsbw;
    for (int i = 0; i < 30; ++i) {
        overflow += num(i);
    }
    return {
        {"Empty", ""},
        {"TruncatedEexec", good.substr(0, good.find("eexec") + 300)},
        {"SubrLoop", type1(loop)},
        {"StackOverflow", type1(withGlyph(overflow + endchar))},
        {"SeacOfItself", type1(withGlyph(num(0) + num(0) + num(0) + num(88) + num(88) + seac))},
        {"SeacOfMissingGlyph",
         type1(withGlyph(num(0) + num(0) + num(0) + num(90) + num(65) + seac))},
        {"AbsurdByteCount", type1([] {
             Program font = featureFont();
             font.countBias = 99999999;
             return font;
         }())},
        {"NegativeLenIV", type1([] {
             Program font = featureFont();
             font.privateExtra = "/lenIV -7 def\n";
             return font;
         }())},
        {"HugeLenIV", type1([] {
             Program font = featureFont();
             font.privateExtra = "/lenIV 2000000000 def\n";
             return font;
         }())},
        {"DivisionByZero", type1(withGlyph(num(0) + num(1) + num(0) + div + hsbw + endchar))},
        {"PopWithoutOtherSubr", type1(withGlyph(num(0) + num(500) + hsbw + pop + endchar))},
        {"FlexWithoutPoints", type1(withGlyph(num(0) + num(500) + hsbw + num(50) + num(0) + num(0) +
                                              num(3) + num(0) + callothersubr + endchar))},
    };
}

class HostileProgram : public testing::TestWithParam<HostileCase> {};

TEST_P(HostileProgram, FailsCleanly) {
    try {
        EXPECT_FALSE(convert(GetParam().program));
    } catch (const FontProgramError&) {
    }
}

INSTANTIATE_TEST_SUITE_P(Type1ToCFF, HostileProgram, testing::ValuesIn(hostileCases()),
                         [](const auto& info) { return std::string(info.param.name); });

// --- Real fonts ---------------------------------------------------------------------------------

const std::filesystem::path urw = "/usr/share/fonts/X11/Type1";
const std::filesystem::path lm = "/usr/share/texmf/fonts/type1/public/lm";

class WholeFont : public testing::TestWithParam<std::filesystem::path> {};

// Latin Modern builds glyphs from shared subroutines, which the conversion inlines and then
// shares again: without that second step those fonts would grow.
TEST_P(WholeFont, PassesTheProofAndShrinks) {
    const Bytes program = readFile(GetParam());
    if (program.empty()) {
        GTEST_SKIP() << GetParam() << " is not installed";
    }
    const auto converted = Type1ToCFF::convert(program, std::nullopt, std::nullopt, std::nullopt);
    ASSERT_TRUE(converted);
    EXPECT_LT(converted->cff.size() * 10, program.size() * 7);
    // What a PDF stores: both programs deflated.
    EXPECT_LT(deflatedSize(spanOf(converted->cff)), deflatedSize(program));
}

INSTANTIATE_TEST_SUITE_P(Type1ToCFF, WholeFont,
                         testing::Values(urw / "NimbusSans-BoldItalic.pfb",
                                         urw / "StandardSymbolsPS.pfb",
                                         urw / "Z003-MediumItalic.pfb", lm / "lmr10.pfb",
                                         lm / "lmex10.pfb"),
                         [](const auto& info) {
                             std::string name = info.param.stem().string();
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace quillet::fonts
