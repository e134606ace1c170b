// Reads printed text in a page picture with Tesseract and answers it as a one-page PDF holding
// only invisible text, each word laid where it stands in the picture (a page as wide as the
// picture at its resolution), ready to be placed over the page it came from.
//
// One recognizer holds one Tesseract instance with its languages loaded; it is used by one
// thread at a time, and a job keeps one per worker thread. Tesseract's own threads are not used:
// pages run side by side instead.
#pragma once

#include "platform/Bitmap.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tesseract {
class TessBaseAPI;
}

namespace quillet {

class TextRecognizer {
  public:
    /// The folder of the installed language data: TESSDATA_PREFIX when set, otherwise Debian's.
    static std::filesystem::path dataFolder();

    /// The languages whose data is installed ("chi_sim", "eng", ...), sorted.
    static std::vector<std::string> installedLanguages();

    /// The languages of `languages` ("eng", "eng+chi_sim") that are not installed, in the order
    /// given; a name that is not a plain language code counts as not installed. Empty when all
    /// are there.
    static std::vector<std::string> missingLanguages(const std::string& languages);

    /// Loads `languages`. Throws std::invalid_argument when a language is missing (see
    /// `missingLanguages`) and std::runtime_error when Tesseract cannot load the data.
    explicit TextRecognizer(const std::string& languages);
    ~TextRecognizer();
    TextRecognizer(const TextRecognizer&) = delete;
    TextRecognizer& operator=(const TextRecognizer&) = delete;

    /// The text layer of an 8-bit gray picture of `dpi` pixels per inch: a one-page PDF, or
    /// absent when no word was found. Throws std::runtime_error when recognition fails.
    std::optional<std::string> textLayer(const Bitmap& picture, int dpi);

  private:
    std::unique_ptr<tesseract::TessBaseAPI> api_;
    std::filesystem::path scratch_; // a private folder for the layer Tesseract writes
};

} // namespace quillet
