#include "platform/TextRecognizer.hpp"

#include "platform/UUID.hpp"

#include <tesseract/baseapi.h>
#include <tesseract/renderer.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace quillet {
namespace fs = std::filesystem;

namespace {

bool plainCode(const std::string& language) {
    return !language.empty() && std::all_of(language.begin(), language.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    });
}

std::vector<std::string> languageList(const std::string& languages) {
    std::vector<std::string> list;
    std::stringstream stream(languages);
    std::string language;
    while (std::getline(stream, language, '+')) {
        list.push_back(language);
    }
    if (languages.empty() || languages.back() == '+') {
        list.emplace_back();
    }
    return list;
}

std::string readWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace

fs::path TextRecognizer::dataFolder() {
    if (const char* prefix = std::getenv("TESSDATA_PREFIX"); prefix != nullptr && *prefix != '\0') {
        return prefix;
    }
    return "/usr/share/tesseract-ocr/5/tessdata";
}

std::vector<std::string> TextRecognizer::installedLanguages() {
    std::vector<std::string> languages;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(dataFolder(), error)) {
        const auto& path = entry.path();
        if (path.extension() == ".traineddata" && path.stem() != "osd") {
            languages.push_back(path.stem().string());
        }
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

std::vector<std::string> TextRecognizer::missingLanguages(const std::string& languages) {
    const auto installed = installedLanguages();
    std::vector<std::string> missing;
    for (const auto& language : languageList(languages)) {
        if (!plainCode(language) ||
            !std::binary_search(installed.begin(), installed.end(), language)) {
            missing.push_back(language);
        }
    }
    return missing;
}

// Tesseract parallelises with OpenMP, whose settings are read from the environment when the
// library loads, before any code of ours runs. What can still be changed afterwards is how deeply
// parallel regions may nest, per thread: at zero, every region runs on the thread that meets it.
// Pages already run side by side, one per core; team threads on top would only wait on each
// other for a core (a two-page scan took six times as long).
extern "C" void omp_set_max_active_levels(int levels);

TextRecognizer::TextRecognizer(const std::string& languages)
    : api_(std::make_unique<tesseract::TessBaseAPI>()) {
    if (const auto missing = missingLanguages(languages); !missing.empty()) {
        throw std::invalid_argument(missing.front());
    }
    const auto data = dataFolder().string();
    if (api_->Init(data.c_str(), languages.c_str(), tesseract::OEM_LSTM_ONLY) != 0) {
        throw std::runtime_error("Tesseract could not load " + languages);
    }
    api_->SetPageSegMode(tesseract::PSM_AUTO);
    scratch_ = fs::temp_directory_path() / ("quillet-ocr-" + newUUIDString());
    fs::create_directories(scratch_);
}

TextRecognizer::~TextRecognizer() {
    api_->End();
    std::error_code ignored;
    fs::remove_all(scratch_, ignored);
}

std::optional<std::string> TextRecognizer::textLayer(const Bitmap& picture, int dpi) {
    if (picture.format() != PixelFormat::gray || dpi < 1) {
        throw std::invalid_argument("text recognition needs a gray picture and its resolution");
    }
    omp_set_max_active_levels(0);
    api_->SetImage(picture.data(), picture.width(), picture.height(), 1,
                   static_cast<int>(picture.rowBytes()));
    api_->SetSourceResolution(dpi);
    if (api_->Recognize(nullptr) != 0) {
        api_->Clear();
        throw std::runtime_error("text recognition failed");
    }
    bool anyWord = false;
    if (const std::unique_ptr<char[]> text(api_->GetUTF8Text()); text) {
        anyWord = std::any_of(text.get(), text.get() + std::char_traits<char>::length(text.get()),
                              [](char c) { return c != ' ' && c != '\n' && c != '\t'; });
    }
    std::optional<std::string> layer;
    if (anyWord) {
        // Tesseract's PDF writer lays the words out with its glyph-less font and the text
        // matrix of each line; it writes a file only, so one in a folder of our own.
        const auto base = scratch_ / "layer";
        {
            tesseract::TessPDFRenderer renderer(base.c_str(), api_->GetDatapath(), true);
            if (!renderer.BeginDocument("") || !renderer.AddImage(api_.get()) ||
                !renderer.EndDocument()) {
                api_->Clear();
                throw std::runtime_error("the text layer could not be written");
            }
        }
        auto path = base;
        path += ".pdf";
        layer = readWhole(path);
        std::error_code ignored;
        fs::remove(path, ignored);
    }
    api_->Clear();
    return layer;
}

} // namespace quillet
