#include "support/IndependentChecks.hpp"

#include "support/TempDir.hpp"

#include <qpdf/Pl_String.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjGen.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QUtil.hh>

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <unistd.h>

namespace quillet::test {
namespace {

std::filesystem::path onPath(const std::string& tool) {
    std::istringstream folders(std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin:/bin");
    std::string folder;
    while (std::getline(folders, folder, ':')) {
        const auto candidate = std::filesystem::path(folder) / tool;
        if (::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return {};
}

void record(QPDFObjectHandle dictionary, ObjectGraph& graph, bool isStream) {
    for (const auto& key : dictionary.getKeys()) {
        graph.keys.insert(key);
        auto value = dictionary.getKey(key);
        if ((key == "/S" || key == "/Subtype") && value.isName()) {
            graph.kinds.insert(value.getName());
        }
        if (isStream && key == "/Type" && value.isName()) {
            graph.streamTypes.insert(value.getName());
        }
    }
}

} // namespace

ProcessResult runTool(const std::string& tool, const std::vector<std::string>& arguments) {
    const auto program = onPath(tool);
    if (program.empty()) {
        return {127, "", tool + " is not installed (scripts/install-deps.sh installs it)"};
    }
    return runProcess(program, arguments);
}

ObjectGraph inspectObjectGraph(const std::filesystem::path& file, const std::string& password) {
    QPDF qpdf;
    qpdf.processFile(file.c_str(), password.c_str());
    ObjectGraph graph;
    auto trailer = qpdf.getTrailer();
    graph.trailerHasInfo = trailer.hasKey("/Info");
    if (auto id = trailer.getKey("/ID"); id.isArray()) {
        for (auto part : id.aitems()) {
            graph.documentID.push_back(QUtil::hex_encode(part.getStringValue()));
        }
    }
    std::vector<QPDFObjectHandle> pending{trailer};
    std::set<QPDFObjGen> seen;
    while (!pending.empty()) {
        auto object = pending.back();
        pending.pop_back();
        if (object.isIndirect() && !seen.insert(object.getObjGen()).second) {
            continue;
        }
        const bool isStream = object.isStream();
        auto dictionary = isStream ? object.getDict() : object;
        if (dictionary.isDictionary()) {
            record(dictionary, graph, isStream);
            for (const auto& key : dictionary.getKeys()) {
                pending.push_back(dictionary.getKey(key));
            }
        } else if (object.isArray()) {
            for (auto item : object.aitems()) {
                pending.push_back(item);
            }
        }
    }
    return graph;
}

bool qpdfChecks(const std::filesystem::path& file, const std::string& password) {
    return runTool("qpdf", {"--check", "--password=" + password, file.string()}).status == 0;
}

std::vector<int> pageWidths(const std::filesystem::path& file) {
    QPDF qpdf;
    qpdf.processFile(file.c_str());
    std::vector<int> widths;
    for (auto& page : QPDFPageDocumentHelper(qpdf).getAllPages()) {
        const auto box = page.getMediaBox().getArrayAsRectangle();
        widths.push_back(static_cast<int>(box.urx - box.llx));
    }
    return widths;
}

std::string pageContents(QPDFObjectHandle page) {
    std::string contents;
    Pl_String sink("contents", nullptr, contents);
    QPDFPageObjectHelper(page).pipeContents(&sink);
    return contents;
}

std::filesystem::path scannedThesis(const std::filesystem::path& pdf, int first, int last, int dpi,
                                    std::optional<int> jpegQuality) {
    TempDir pictures;
    std::vector<std::string> arguments{"-r", std::to_string(dpi), "-jpeg"};
    if (jpegQuality) {
        arguments.insert(arguments.end(), {"-jpegopt", "quality=" + std::to_string(*jpegQuality)});
    }
    arguments.insert(arguments.end(),
                     {"-f", std::to_string(first), "-l", std::to_string(last),
                      corpus("009-pdflatex-geotopo/GeoTopo-komprimiert.pdf").string(),
                      (pictures / "page").string()});
    const auto drawn = runTool("pdftoppm", arguments);
    EXPECT_EQ(drawn.status, 0) << drawn.err;
    std::vector<std::string> make{
        (std::filesystem::path(sourceFolder()) / "bench" / "make-scan.py").string(), pdf.string(),
        "--dpi", std::to_string(dpi)};
    for (const auto& name : fileNames(pictures.path())) {
        make.push_back((pictures / name).string());
    }
    const auto made = runTool("python3", make);
    EXPECT_EQ(made.status, 0) << made.err;
    return pdf;
}

int GrayPage::darkPixels(double left, double top, double right, double bottom, double dpi,
                         int threshold) const {
    const double scale = dpi / 72.0;
    int count = 0;
    for (int y = static_cast<int>(top * scale); y < static_cast<int>(bottom * scale); ++y) {
        for (int x = static_cast<int>(left * scale); x < static_cast<int>(right * scale); ++x) {
            if (x >= 0 && y >= 0 && x < width && y < height &&
                pixels[static_cast<std::size_t>(y * width + x)] < threshold) {
                ++count;
            }
        }
    }
    return count;
}

namespace {

GrayPage renderWith(const std::filesystem::path& file, int page, int dpi, bool gray) {
    TempDir dir;
    const auto prefix = (dir / "page").string();
    std::vector<std::string> arguments{"-r", std::to_string(dpi), "-f", std::to_string(page),
                                       "-l", std::to_string(page), "-singlefile",
                                       file.string(), prefix};
    if (gray) {
        arguments.insert(arguments.begin(), "-gray");
    }
    const auto result = runTool("pdftoppm", arguments);
    const std::string bytes = readFile(prefix + (gray ? ".pgm" : ".ppm"));
    GrayPage rendered;
    rendered.bands = gray ? 1 : 3;
    std::istringstream in(bytes);
    std::string magic;
    int maximum = 0;
    in >> magic >> rendered.width >> rendered.height >> maximum;
    in.get();
    if (result.status != 0 || magic != (gray ? "P5" : "P6") || maximum != 255) {
        ADD_FAILURE() << "pdftoppm could not render " << file << ": " << result.err;
        return {};
    }
    const auto offset = static_cast<std::size_t>(in.tellg());
    rendered.pixels.assign(bytes.begin() + static_cast<std::ptrdiff_t>(offset), bytes.end());
    if (rendered.pixels.size() !=
        static_cast<std::size_t>(rendered.width * rendered.height * rendered.bands)) {
        ADD_FAILURE() << "pdftoppm wrote a short image for " << file;
        return {};
    }
    return rendered;
}

} // namespace

GrayPage renderGray(const std::filesystem::path& file, int page, int dpi) {
    return renderWith(file, page, dpi, true);
}

GrayPage renderRGB(const std::filesystem::path& file, int page, int dpi) {
    return renderWith(file, page, dpi, false);
}

std::vector<int> GrayPage::at(int x, int y) const {
    const auto* pixel = pixels.data() + static_cast<std::size_t>((y * width + x) * bands);
    return std::vector<int>(pixel, pixel + bands);
}

} // namespace quillet::test
