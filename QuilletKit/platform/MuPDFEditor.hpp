// A PDF opened with MuPDF to read where its text is and to take text and image pixels out from
// under given boxes, then written again. One context of its own: an editor belongs to one thread.
//
// Every position is in the page as a reader sees it: points from the top-left corner of the crop
// box, y downwards, the page's rotation applied (MuPDF's page space).
//
// Failures throw mupdf::Error (a damaged page, a full disk); opening throws it too, and answers
// a wrong or missing password with PasswordRequired.
#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillet {

class MuPDFEditor {
  public:
    struct Box {
        double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    };
    struct Glyph {
        char32_t c = 0;
        Box box;
    };
    /// A line of text as MuPDF's structured text reads it: ligatures split into their letters,
    /// invisible text (a scan's text layer) included, text in forms where the form draws it.
    using Line = std::vector<Glyph>;

    class PasswordRequired : public std::runtime_error {
      public:
        using std::runtime_error::runtime_error;
    };

    /// Opens `path`, with `password` when it is encrypted.
    static MuPDFEditor open(const std::filesystem::path& path, const std::string& password = {});

    MuPDFEditor(MuPDFEditor&&) noexcept;
    MuPDFEditor& operator=(MuPDFEditor&&) noexcept;
    ~MuPDFEditor();

    int pageCount() const;

    /// The page's visible box: (0, 0) to its width and height.
    Box pageBox(int index);

    /// Every line of text the page shows, in MuPDF's reading order.
    std::vector<Line> lines(int index);

    /// The matrix [a b c d e f] that takes a point of the page as seen to the page's own PDF
    /// coordinates (its user space).
    std::array<double, 6> toUserSpace(int index);

    /// Removes every glyph under `boxes` and turns the pixels of images under them black (the
    /// image is re-encoded); the rest of the page is untouched.
    void redact(int index, const std::vector<Box>& boxes);

    /// Writes the whole document to `path`, unencrypted, without the objects nothing uses any
    /// more (so a replaced image or content stream is gone from the file).
    void save(const std::filesystem::path& path);

  private:
    struct Impl;
    explicit MuPDFEditor(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

} // namespace quillet
