// Broken and hostile files fed to every command of the real program. Whatever the file, a command
// ends with an "error: " line and status 1 or 2 (or, for damage qpdf can repair, a complete
// output), never with a signal, never after a long stall, never with a half-written output, and
// never with a changed input.
#include "support/PDFBuilder.hpp"
#include "support/Process.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>
#include <zlib.h>

#include <fmt/format.h>

#include <sys/mount.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <optional>
#include <set>

namespace quillet {
namespace {
namespace fs = std::filesystem;
using test::PDFBuilder;
using test::TempDir;

// Generous for a 2-core machine under load, far below what a decompression bomb or a loop needs.
constexpr std::chrono::seconds perRunTimeout{10};

void writeFile(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string bigEndian(std::uint32_t value) {
    return {char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
}

std::string zlibCompressed(const std::string& data) {
    uLongf size = compressBound(data.size());
    std::string out(size, '\0');
    compress2(reinterpret_cast<Bytef*>(out.data()), &size,
              reinterpret_cast<const Bytef*>(data.data()), data.size(), 9);
    out.resize(size);
    return out;
}

std::string streamObject(const std::string& dictionary, const std::string& data) {
    return fmt::format("<< {} /Length {} >>\nstream\n{}\nendstream", dictionary, data.size(), data);
}

// Objects numbered from 1 (the catalog) with an exact cross-reference table, so each file is
// broken only in the way a case intends.
std::string handMadePDF(const std::vector<std::string>& objects, const std::string& trailer = "") {
    std::string out = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        offsets.push_back(out.size());
        out += fmt::format("{} 0 obj\n{}\nendobj\n", i + 1, objects[i]);
    }
    const auto xref = out.size();
    out += fmt::format("xref\n0 {}\n0000000000 65535 f \n", objects.size() + 1);
    for (auto offset : offsets) {
        out += fmt::format("{:010} 00000 n \n", offset);
    }
    out += fmt::format("trailer\n<< /Size {} /Root 1 0 R {} >>\nstartxref\n{}\n%%EOF\n",
                       objects.size() + 1, trailer, xref);
    return out;
}

// Catalog, page tree, one page drawing `content` with `resources`; further objects start at 5.
std::string onePage(const std::string& content, const std::string& resources = "<< >>",
                    std::vector<std::string> more = {}, const std::string& contentFilter = "",
                    const std::string& trailer = "") {
    std::vector<std::string> objects{
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Resources " + resources +
            " /Contents 4 0 R >>",
        streamObject(contentFilter, content)};
    objects.insert(objects.end(), more.begin(), more.end());
    return handMadePDF(objects, trailer);
}

// The one image 5 0 R, drawn over the page.
std::string imagePage(const std::string& width, const std::string& height) {
    return onePage("q 200 0 0 200 0 0 cm /Im1 Do Q", "<< /XObject << /Im1 5 0 R >> >>",
                   {streamObject(fmt::format("/Type /XObject /Subtype /Image /Width {} /Height {} "
                                             "/ColorSpace /DeviceGray /BitsPerComponent 8 "
                                             "/Filter /FlateDecode",
                                             width, height),
                                 zlibCompressed(std::string(4096, '\x80')))});
}

// Kilobytes that two rounds of Flate expand to 4 GiB of zeros. Fully flushed blocks of zeros
// compress to identical bytes, so the inner stream is one block repeated rather than 4 GiB
// compressed here.
std::string flateBomb() {
    constexpr std::size_t chunk = std::size_t{1} << 20;
    constexpr std::size_t chunks = 4096;
    const std::string zeros(chunk, '\0');
    z_stream z{};
    deflateInit(&z, 9);
    std::string block(compressBound(chunk) + 64, '\0');
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(zeros.data()));
    z.avail_in = chunk;
    z.next_out = reinterpret_cast<Bytef*>(block.data());
    z.avail_out = block.size();
    deflate(&z, Z_FULL_FLUSH);
    block.resize(block.size() - z.avail_out);
    deflateEnd(&z);
    std::string inner = block.substr(0, 2); // zlib header
    const std::string body = block.substr(2);
    for (std::size_t i = 0; i < chunks; ++i) {
        inner += body;
    }
    // A final empty fixed block, then the Adler-32 of the zeros.
    inner += std::string("\x03\x00", 2) + bigEndian(((chunk * chunks) % 65521) << 16 | 1);
    return zlibCompressed(inner);
}

std::string chainedFilters(int rounds) {
    std::string data = "0 0 1 rg 10 10 100 100 re f";
    std::string filters;
    for (int i = 0; i < rounds; ++i) {
        data = zlibCompressed(data);
        filters += "/FlateDecode ";
    }
    return onePage(data, "<< >>", {}, "/Filter [" + filters + "]");
}

std::string pngChunk(const std::string& type, const std::string& data) {
    const auto typed = type + data;
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(typed.data()), typed.size());
    return bigEndian(data.size()) + typed + bigEndian(crc);
}

// A gray PNG whose header claims `width` x `height` and whose data holds a 1 x 1 image.
std::string png(std::uint32_t width, std::uint32_t height) {
    const auto header = bigEndian(width) + bigEndian(height) + std::string("\x08\0\0\0\0", 5);
    return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", header) +
           pngChunk("IDAT", zlibCompressed(std::string("\x00\x80", 2))) + pngChunk("IEND", "");
}

// A baseline JPEG header claiming 60000 x 60000 RGB, followed by a few bytes of nonsense.
std::string lyingJPEG() {
    std::string sof("\xFF\xC0\x00\x11\x08\xEA\x60\xEA\x60\x03"
                    "\x01\x11\x00\x02\x11\x00\x03\x11\x00",
                    19);
    return std::string("\xFF\xD8", 2) + sof +
           std::string("\xFF\xDA\x00\x0C\x03\x01\x00\x02\x11"
                       "\x03\x11\x00\x3F\x00",
                       14) +
           "garbage" + std::string("\xFF\xD9", 2);
}

std::string pagesWith(int count, int imageSize, int grain) {
    PDFBuilder b;
    for (int k = 0; k < count; ++k) {
        b.addPage(200, 200).image({.width = imageSize, .height = imageSize, .grain = grain}, 0, 0,
                                  200, 200);
    }
    return b.bytes();
}

std::string truncatedInStream() {
    const auto bytes = pagesWith(1, 300, 60);
    const auto start = bytes.rfind("stream\n", bytes.rfind("endstream")) + 7;
    return bytes.substr(0, start + (bytes.rfind("endstream") - start) / 2);
}

enum class Expect { refused, refusedOrDone, works };
// Where outputs go: a writable folder, below a regular file, a 64 KB file system, the input.
enum class Target { folder, belowFile, fullDisk, input };

struct HostileCase {
    const char* name;
    const char* fileName;
    std::function<void(const fs::path&)> make;
    Expect expect;
    std::vector<std::string> commands = {"info",  "compress", "split",     "convert",
                                         "clean", "protect",  "unprotect", "merge"};
    Target target = Target::folder;
};

std::function<void(const fs::path&)> bytes(std::function<std::string()> make) {
    return [make](const fs::path& path) { writeFile(path, make()); };
}

std::function<void(const fs::path&)> damaged(test::Damage damage) {
    return bytes([damage] { return PDFBuilder::damaged(pagesWith(2, 32, 0), damage); });
}

std::function<void(const fs::path&)> page(std::function<void(PDFBuilder::Page&)> draw) {
    return bytes([draw] {
        PDFBuilder b;
        draw(b.addPage(200, 200));
        return b.bytes();
    });
}

std::vector<std::string> arguments(const std::string& command, const fs::path& input,
                                   const fs::path& good, const fs::path& out) {
    const auto file = (out / "out.pdf").string();
    if (command == "info") {
        return {"info", input.string()};
    }
    if (command == "split" || command == "convert") {
        return {command, input.string(), "-o", out.string(), "--dpi", "36"};
    }
    if (command == "merge") {
        return {"merge", input.string(), good.string(), "-o", file};
    }
    if (command == "protect" || command == "unprotect") {
        return {command, input.string(), "--password", "pw", "-o", file};
    }
    return {command, input.string(), "-o", file};
}

std::set<std::string> namesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        names.insert(fs::relative(entry.path(), folder).string());
    }
    return names;
}

// Unmounts on every way out of a test, so a failure never leaves a mount under /tmp.
struct SmallFileSystem {
    explicit SmallFileSystem(fs::path at) : at(std::move(at)) {
        mounted = ::mount("tmpfs", this->at.c_str(), "tmpfs", 0, "size=64k") == 0;
    }
    ~SmallFileSystem() {
        if (mounted) {
            ::umount2(at.c_str(), MNT_DETACH);
        }
    }
    fs::path at;
    bool mounted = false;
};

// A PDF output that qpdf opens (with the password the protect command was given) and finds a
// page tree in, so "success" cannot hide a truncated file.
void expectCompletePDFs(const fs::path& folder) {
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() == ".pdf" && entry.is_regular_file()) {
            QPDF qpdf;
            EXPECT_NO_THROW(qpdf.processFile(entry.path().c_str(), "pw"); qpdf.getAllPages())
                << entry.path();
        }
    }
}

void PrintTo(const HostileCase& c, std::ostream* os) {
    *os << c.name;
}

class HostileInput : public testing::TestWithParam<HostileCase> {};

TEST_P(HostileInput, EndsWithAnErrorOrACompleteOutput) {
    const auto& c = GetParam();
    TempDir dir;
    const auto inputs = dir / "in ü";
    fs::create_directories(inputs);
    const auto input = inputs / c.fileName;
    c.make(input);
    const auto good = dir.write("good.pdf", pagesWith(1, 16, 0));
    const auto before = fs::is_regular_file(input) ? test::readFile(input) : std::string();

    auto out = dir / "out";
    fs::create_directories(out);
    std::optional<SmallFileSystem> disk;
    if (c.target == Target::fullDisk) {
        disk.emplace(out);
        if (!disk->mounted) {
            GTEST_SKIP() << "cannot mount a small file system here (needs root): "
                         << std::strerror(errno);
        }
        // Leaves a single 4 KB block free: every output is larger.
        writeFile(out / "filler", std::string(60 * 1024, 'f'));
    } else if (c.target == Target::belowFile) {
        writeFile(out / "file", "a regular file");
        out = out / "file";
    }
    const auto outFolder = c.target == Target::belowFile ? out.parent_path() : out;
    const auto outputsBefore = namesIn(outFolder);

    for (const auto& command : c.commands) {
        SCOPED_TRACE(command);
        auto args = arguments(command, input, good, out);
        if (c.target == Target::input) {
            args = {command, input.string(), "-o", input.string()};
        }
        const auto result = test::runProcess(QUILLET_BINARY, args, {}, perRunTimeout);
        EXPECT_FALSE(result.timedOut) << "still running after " << perRunTimeout.count() << " s";
        EXPECT_LT(result.status, 128) << "ended by signal " << result.status - 128;
        const bool failed = result.status == 1 || result.status == 2;
        const bool hasError =
            result.err.starts_with("error: ") || result.err.find("\nerror: ") != std::string::npos;
        if (c.expect == Expect::refused) {
            EXPECT_TRUE(failed) << "status " << result.status << "\n" << result.err;
        } else if (c.expect == Expect::works) {
            EXPECT_EQ(result.status, 0) << result.err;
        } else {
            EXPECT_TRUE(failed || result.status == 0) << "status " << result.status;
        }
        if (failed) {
            EXPECT_TRUE(hasError) << result.err;
            EXPECT_EQ(namesIn(outFolder), outputsBefore) << "output left behind";
        } else if (result.status == 0 && command != "info") {
            const auto names = namesIn(outFolder);
            const bool keptOriginal = result.out.find("original kept") != std::string::npos;
            EXPECT_TRUE(keptOriginal || names.size() > outputsBefore.size())
                << "success without an output";
            for (const auto& name : names) {
                EXPECT_NE(fs::path(name).filename().string().front(), '.') << "temporary " << name;
            }
            expectCompletePDFs(outFolder);
        }
        EXPECT_EQ(fs::is_regular_file(input) ? test::readFile(input) : std::string(), before)
            << "input changed";
        EXPECT_EQ(namesIn(inputs), std::set<std::string>{c.fileName}) << "stray file beside input";
        if (c.target == Target::folder) {
            fs::remove_all(out);
            fs::create_directories(out);
        } else if (disk) {
            for (const auto& entry : fs::directory_iterator(out)) {
                if (entry.path().filename() != "filler") {
                    fs::remove_all(entry.path());
                }
            }
        }
    }
}

const HostileCase cases[] = {
    {"ZeroBytes", "x.pdf", damaged(test::Damage::zeroBytes), Expect::refused},
    {"TextNamedPDF", "x.pdf", bytes([] { return std::string("just some words\n"); }),
     Expect::refused},
    {"PNGNamedPDF", "x.pdf", bytes([] { return png(1, 1); }), Expect::refused},
    {"TruncatedInAStream", "x.pdf", bytes(truncatedInStream), Expect::refusedOrDone},
    {"WrongXrefOffsets", "x.pdf", damaged(test::Damage::wrongXrefOffsets), Expect::refusedOrDone},
    {"JunkBeforeHeader", "x.pdf", damaged(test::Damage::junkBeforeHeader), Expect::refusedOrDone},
    {"PageTreeLoop", "x.pdf", bytes([] {
         return handMadePDF({"<< /Type /Catalog /Pages 2 0 R >>",
                             "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 >>",
                             "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] >>",
                             "<< /Type /Pages /Parent 2 0 R /Kids [2 0 R] /Count 1 >>"});
     }),
     Expect::works,
     {"info", "compress", "split", "convert", "clean", "merge"}},
    {"CountThatLies", "x.pdf", bytes([] {
         return handMadePDF({"<< /Type /Catalog /Pages 2 0 R >>",
                             "<< /Type /Pages /Kids [3 0 R] /Count 100000 >>",
                             "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] >>"});
     }),
     Expect::refusedOrDone},
    {"ZeroPages", "x.pdf", bytes([] {
         return handMadePDF(
             {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [] /Count 0 >>"});
     }),
     Expect::refusedOrDone},
    {"TenThousandNestedArrays", "x.pdf", bytes([] {
         return onePage("0 0 10 10 re f",
                        "<< /Deep " + std::string(10000, '[') + std::string(10000, ']') + " >>");
     }),
     Expect::refusedOrDone},
    {"FormDrawsItself", "x.pdf", page([](auto& p) { p.cyclicForms(1); }), Expect::refusedOrDone},
    {"FormsDrawEachOther", "x.pdf", page([](auto& p) { p.cyclicForms(2); }), Expect::refusedOrDone},
    {"FlateBomb", "x.pdf",
     bytes([] { return onePage(flateBomb(), "<< >>", {}, "/Filter [/FlateDecode /FlateDecode]"); }),
     Expect::refusedOrDone},
    {"ThirtyChainedFilters", "x.pdf", bytes([] { return chainedFilters(30); }),
     Expect::refusedOrDone},
    {"ImageWidthZero", "x.pdf", bytes([] { return imagePage("0", "64"); }), Expect::refusedOrDone},
    {"ImageWidthNegative", "x.pdf", bytes([] { return imagePage("-64", "64"); }),
     Expect::refusedOrDone},
    {"ImageTenGigapixels", "x.pdf", bytes([] { return imagePage("100000", "100000"); }),
     Expect::refusedOrDone},
    {"UnknownEncryptionHandler", "x.pdf", bytes([] {
         return onePage("0 0 10 10 re f", "<< >>",
                        {"<< /Filter /NoSuchHandler /V 1 /R 2 /P -4 /O <" + std::string(64, 'a') +
                         "> /U <" + std::string(64, 'b') + "> >>"},
                        "", "/Encrypt 5 0 R /ID [<0123456789abcdef> <0123456789abcdef>]");
     }),
     Expect::refused},
    {"RC4FortyBit", "x.pdf", bytes([] {
         PDFBuilder b;
         b.addPage(200, 200).text("old");
         b.encrypt({.user = "", .owner = "o", .method = test::EncryptionSpec::Method::rc4_40});
         return b.bytes();
     }),
     Expect::refusedOrDone},
    {"PNGWithLyingHeader",
     "x.png",
     bytes([] { return png(100000, 100000); }),
     Expect::refused,
     {"images", "merge"}},
    {"JPEGWithLyingHeader", "x.jpg", bytes(lyingJPEG), Expect::refused, {"images", "merge"}},
    {"UnreadableInput", "x.pdf", [](const fs::path& p) { fs::create_directories(p); },
     Expect::refused},
    {"OutputBelowARegularFile",
     "x.pdf",
     bytes([] { return pagesWith(1, 16, 0); }),
     Expect::refused,
     {"compress", "split", "convert", "clean", "protect", "merge"},
     Target::belowFile},
    {"FullDisk",
     "x.pdf",
     bytes([] { return pagesWith(2, 200, 120); }),
     Expect::refusedOrDone,
     {"compress", "split", "convert", "clean", "protect", "merge"},
     Target::fullDisk},
    {"SpacesAndNonASCIIInPaths",
     "a b ünï 名前.pdf",
     bytes([] { return pagesWith(1, 16, 0); }),
     Expect::works,
     {"info", "compress", "split", "convert", "clean", "protect", "merge"}},
    {"OutputIsTheInput",
     "x.pdf",
     bytes([] { return pagesWith(1, 16, 0); }),
     Expect::refused,
     {"compress", "clean", "protect"},
     Target::input},
};

INSTANTIATE_TEST_SUITE_P(Hostile, HostileInput, testing::ValuesIn(cases),
                         [](const auto& info) { return std::string(info.param.name); });

// A file that is refused says why in plain words, whichever command read it.
TEST(HostileMessages, RefusalsSayWhy) {
    const struct {
        std::string file;
        std::string bytes;
        std::string error;
    } rows[] = {
        {"bomb.pdf", onePage(flateBomb(), "<< >>", {}, "/Filter [/FlateDecode /FlateDecode]"),
         "error: bomb.pdf is not processed: its streams expand to more than 256 MB when "
         "decoded.\n"},
        {"odd.pdf", onePage("0 0 10 10 re f", "<< >>", {}, "", "/Encrypt 42"),
         "error: Could not open odd.pdf: /Encrypt in trailer dictionary is not a dictionary.\n"},
    };
    test::TempDir dir;
    for (const auto& row : rows) {
        const auto path = dir.write(row.file, row.bytes);
        for (const char* command : {"info", "compress", "split", "merge"}) {
            std::vector<std::string> args{command, path.string(), "-o", (dir / "o").string()};
            if (args[0] == "merge") {
                args.push_back(path.string());
            }
            const auto result = test::runProcess(QUILLET_BINARY, args, {}, perRunTimeout);
            EXPECT_EQ(result.status, 1) << command;
            EXPECT_EQ(result.err, row.error) << command;
        }
    }
}

} // namespace
} // namespace quillet
