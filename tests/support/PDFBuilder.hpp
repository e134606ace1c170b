// Precise PDF fixtures made in code, through qpdf alone (no Quillet code), so that a test states
// exactly what its input contains:
//
//     PDFBuilder b;
//     b.addPage(612, 792).text("Hello").image({.width = 40, .height = 20}, 72, 500, 200, 100);
//     b.addPage(595, 842).rotate(90).link("https://example.org/");
//     b.info("Title", "Quarterly").encrypt({.user = "u", .owner = "o"});
//     auto path = b.write(dir / "fixture.pdf");
//
// Pages are handed out by reference and stay valid as long as the builder. Content is appended in
// call order; each page has its own content stream and resources (fonts /F1.., images /Im1..,
// forms /Fm1..). Annotations and fields are stacked down the page's left side. Files are written
// with a classic cross-reference table (so damaged variants can be derived from them) and
// Flate-compressed streams; DCT images keep the given JPEG bytes.
#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillet::test {

struct ImageSpec {
    enum class Color { gray, rgb, cmyk };
    int width = 16;
    int height = 16;
    Color color = Color::rgb;
    /// When not empty, the bytes of a JPEG file, stored unchanged with /DCTDecode (width, height
    /// and color must describe it). Otherwise a generated gradient is stored with /FlateDecode.
    std::string jpeg;
    /// Noise of up to ± this much per sample on the generated gradient (0: smooth).
    int grain = 0;
};

struct EncryptionSpec {
    enum class Method { aes256, aes128, rc4_128, rc4_40 };
    std::string user;
    std::string owner;
    Method method = Method::aes256; ///< aes256 = R6; aes128 = R4; rc4_128 = R3; rc4_40 = R2
};

enum class Damage {
    truncated,        ///< the first half of the file only: beyond repair
    missingXrefTable, ///< no cross-reference table, startxref points elsewhere: repairable
    wrongXrefOffsets, ///< every offset of the table off by a few bytes: repairable
    junkBeforeHeader, ///< 600 bytes of text before %PDF-: repairable
    zeroBytes,        ///< an empty file
    danglingPageTree, ///< the catalog's /Pages refers to no object; the pages are intact
};

class PDFBuilder {
  public:
    class Page {
      public:
        Page(QPDF& qpdf, QPDFObjectHandle page);

        /// /Rotate exactly as given (no normalisation, so odd values can be tested).
        Page& rotate(int degrees);
        Page& mediaBox(double llx, double lly, double urx, double ury);
        /// Raw content operators, appended on a line of their own.
        Page& content(const std::string& operators);
        /// BT /Fn size Tf x y Td (text) Tj ET with a standard Type1 font resource named after
        /// `baseFont` ("Helvetica", or a subset name such as "ABCDEF+Helvetica").
        Page& text(const std::string& text, double x = 72, double y = 720, double size = 12,
                   const std::string& baseFont = "Helvetica");
        /// An image XObject drawn at (x, y) with the given size in points (by `cm`).
        Page& image(const ImageSpec& spec, double x, double y, double width, double height);
        /// An inline image (BI ... ID ... EI) of mid-gray or mid-colour pixels.
        Page& inlineImage(int width, int height, ImageSpec::Color color, double x, double y,
                          double drawnWidth, double drawnHeight);
        /// `depth` nested form XObjects (the page draws form 1, which draws form 2, ...); the
        /// innermost draws `innermost` over its whole box, or fills a rectangle.
        Page& formChain(int depth, const std::optional<ImageSpec>& innermost, double x, double y,
                        double width, double height);
        /// Forms that draw each other in a ring of `length` (1: a form that draws itself).
        Page& cyclicForms(int length);
        /// A rendering bomb: forms `depth` deep, each drawing the next `fanOut` times, so the
        /// page fills fanOut^depth small squares.
        Page& formFanOut(int depth, int fanOut);
        Page& textNote(const std::string& contents);
        Page& link(const std::string& uri);
        Page& launch(const std::string& file);
        /// A text field (/FT /Tx) with a value and an appearance showing it, merged with its
        /// widget; listed in the catalog's /AcroForm /Fields.
        Page& textField(const std::string& name, const std::string& value);
        /// A signature field (/FT /Sig); `withSignature` adds a signature dictionary as its value.
        Page& signatureField(const std::string& name, bool withSignature = true);

        QPDFObjectHandle object() const { return page_; }

      private:
        QPDFObjectHandle resource(const std::string& category, const std::string& prefix,
                                  QPDFObjectHandle value);
        QPDFObjectHandle addAnnotation(QPDFObjectHandle annotation);
        std::string fontResource(const std::string& baseFont);

        QPDF& qpdf_;
        QPDFObjectHandle page_;
        QPDFObjectHandle contents_;
        std::string operators_;
        std::map<std::string, std::string> fonts_;
        int annotationCount_ = 0;
    };

    PDFBuilder();
    PDFBuilder(const PDFBuilder&) = delete;
    PDFBuilder& operator=(const PDFBuilder&) = delete;
    ~PDFBuilder();

    Page& addPage(double width = 612, double height = 792);
    Page& page(int index) { return *pages_.at(static_cast<std::size_t>(index)); }

    /// An entry of the trailer's Info dictionary, stored as PDFDocEncoding when possible and as
    /// UTF-16BE with a byte-order mark otherwise.
    PDFBuilder& info(const std::string& key, const std::string& text);
    /// An Info entry with exactly these string bytes (dates, hand-made encodings).
    PDFBuilder& infoBytes(const std::string& key, const std::string& bytes);
    /// An entry of an /Info dictionary in the catalog, where a few producers put it.
    PDFBuilder& catalogInfo(const std::string& key, const std::string& text);
    /// XMP packet as the catalog's /Metadata stream.
    PDFBuilder& xmp(const std::string& xml);
    PDFBuilder& attachment(const std::string& name, const std::string& bytes);
    /// A script in the catalog's /Names /JavaScript name tree.
    PDFBuilder& javascript(const std::string& name, const std::string& code);
    PDFBuilder& openActionJavaScript(const std::string& code);
    /// /Rotate and /MediaBox on the page tree's root, inherited by pages without their own.
    PDFBuilder& inheritedRotation(int degrees);
    PDFBuilder& inheritedMediaBox(double width, double height);
    PDFBuilder& encrypt(const EncryptionSpec& encryption);
    /// The header version to write, e.g. "1.4" or "2.0" (qpdf raises it if encryption needs).
    PDFBuilder& version(const std::string& version);

    std::string bytes() const;
    std::string bytes(Damage damage) const;
    /// Writes the file (creating folders) and answers `path`.
    std::filesystem::path write(const std::filesystem::path& path) const;
    std::filesystem::path write(const std::filesystem::path& path, Damage damage) const;

    /// The document being built, for whatever the methods above do not cover.
    QPDF& qpdf() { return *qpdf_; }

    /// Damages the bytes of a PDF written with a classic cross-reference table.
    static std::string damaged(std::string bytes, Damage damage);

  private:
    QPDFObjectHandle namesTree(const std::string& key);
    QPDFObjectHandle infoDictionary(QPDFObjectHandle holder);

    std::shared_ptr<QPDF> qpdf_;
    std::vector<std::unique_ptr<Page>> pages_;
    std::optional<EncryptionSpec> encryption_;
    std::string version_;
};

/// Escapes text for a PDF literal string: "(a)" for "a", with \, ( and ) escaped.
std::string pdfLiteral(const std::string& text);

/// `count` pages saying "page 1", "page 2", ...; page k (from 0) is `width + k * widthStep` points
/// wide, so that pages can be told apart by their media boxes wherever they end up.
std::filesystem::path numberedPDF(const std::filesystem::path& path, int count, double width = 612,
                                  double widthStep = 0, double height = 792);

/// One page saying "secret", encrypted (AES-256) with these passwords; an empty `user` makes a
/// file that opens without one.
std::filesystem::path lockedPDF(const std::filesystem::path& path, const std::string& user = "u",
                                const std::string& owner = "o");

} // namespace quillet::test
