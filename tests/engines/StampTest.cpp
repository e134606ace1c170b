// Stamped marks land where the reader sees them, are real text in subset fonts embedded once, and
// bad marks are refused by name: checked with Poppler (pdftotext -bbox, pdffonts, pdftoppm) and
// qpdf, not with our own reading.
#include "engines/ContentNesting.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFStampEngine.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"
#include "tasks/TaskRunner.hpp"

#include <gtest/gtest.h>
#include <vips/vips8>

#include <regex>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using P = OperationParameters;
using test::PDFBuilder;
using test::TempDir;

P::StampMark mark(std::string kind, std::string text = {}) {
    P::StampMark m;
    m.kind = std::move(kind);
    if (m.kind == "pageNumber") {
        m.format = std::move(text);
    } else if (m.kind == "text") {
        m.text = std::move(text);
    } else if (m.kind == "bates") {
        m.prefix = std::move(text);
    } else {
        m.image = std::move(text);
    }
    return m;
}

struct Word {
    double xMin = 0, yMin = 0, xMax = 0, yMax = 0;
};

/// Where Poppler finds `word` on `page` (one-based), in the page as shown: y from the top.
std::optional<Word> locate(const fs::path& file, int page, const std::string& word) {
    const auto p = std::to_string(page);
    const auto out =
        test::runTool("pdftotext", {"-bbox", "-cropbox", "-f", p, "-l", p, file.string(), "-"}).out;
    Word found;
    std::smatch m;
    const std::regex line(R"re(<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)">)re" +
                          word + "</word>");
    if (!std::regex_search(out, m, line)) {
        return std::nullopt;
    }
    found.xMin = std::stod(m[1]);
    found.yMin = std::stod(m[2]);
    found.xMax = std::stod(m[3]);
    found.yMax = std::stod(m[4]);
    return found;
}

StampOutcome stamped(const fs::path& input, const fs::path& output, P::Stamp stamp) {
    StampContext context;
    context.date = "2026-11-24";
    return PDFStampEngine::stamp(input, output, stamp, context);
}

// A number at a corner sits `margin` points from that corner of the page as the reader sees it,
// on a turned page and on one whose crop box is offset in its media box; a second mark there
// stacks next to it.
TEST(Stamp, MarksLandAtTheCornerTheReaderSees) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage(612, 792).text("upright");
    builder.addPage(612, 792).rotate(90).text("turned");
    builder.addPage(612, 792).rotate(270).text("back");
    builder.addPage(612, 792).text("cropped", 150, 300);
    builder.page(3).object().replaceKey("/CropBox", QPDFObjectHandle::parse("[100 150 400 600]"));
    const auto input = builder.write(dir / "in.pdf");

    for (const auto& [position, corner] : {std::pair{"bottom-right", "NumBR"}, {"top-left", "NumTL"}}) {
        auto m = mark("pageNumber", std::string(corner) + "{n}");
        m.position = position;
        m.margin = 24;
        // A second mark at the same place stacks inwards instead of covering the first.
        auto second = mark("text", "Second");
        second.position = position;
        const auto output = dir / (std::string(corner) + ".pdf");
        EXPECT_EQ(stamped(input, output, {{m, second}}).pagesStamped, 4);
        EXPECT_TRUE(test::qpdfChecks(output));
        for (int page = 1; page <= 4; ++page) {
            SCOPED_TRACE(std::string(position) + " on page " + std::to_string(page));
            const auto word = locate(output, page, std::string(corner) + std::to_string(page));
            ASSERT_TRUE(word);
            // The page as shown (Poppler's words are in it; its page size is the unturned one).
            const double width = page == 2 || page == 3 ? 792 : page == 4 ? 300 : 612;
            const double height = page == 2 || page == 3 ? 612 : page == 4 ? 450 : 792;
            if (std::string(position) == "bottom-right") {
                EXPECT_NEAR(word->xMax, width - 24, 1.5);
                EXPECT_NEAR(word->yMax, height - 24, 3.5);
            } else {
                EXPECT_NEAR(word->xMin, 24, 1.5);
                EXPECT_NEAR(word->yMin, 24, 3.5);
            }
            EXPECT_LT(word->yMax - word->yMin, 16) << "the number is upright, not turned";
            const auto stackedOn = locate(output, page, "Second");
            ASSERT_TRUE(stackedOn);
            if (std::string(position) == "bottom-right") {
                EXPECT_LT(stackedOn->yMax, word->yMin);
            } else {
                EXPECT_GT(stackedOn->yMin, word->yMax);
            }
        }
    }
}

// A page whose content leaves a transform on the stack, or restores more than it saved, still
// gets its mark where it belongs, in a file read by repair; a page range past the end of the
// file marks nothing there.
TEST(Stamp, UnbalancedPageContentCannotMoveTheMark) {
    const struct {
        const char* content;
        ContentNesting nesting;
    } nestings[] = {
        {"q 1 0 0 1 300 400 cm", {0, 1}},
        {"Q Q q (a Q in a string \\) Q q) Tj Q", {2, 0}},
        {"% Q in a comment\nq BI /W 1 /H 1 ID Q q EI Q <51> Tj", {0, 0}},
        {"qQ q", {0, 1}},
    };
    for (const auto& n : nestings) {
        const auto found = ContentNesting::of(n.content);
        EXPECT_EQ(found.unmatchedRestores, n.nesting.unmatchedRestores) << n.content;
        EXPECT_EQ(found.openSaves, n.nesting.openSaves) << n.content;
    }

    TempDir dir;
    PDFBuilder builder;
    builder.addPage(612, 792).content("q 1 0 0 1 300 400 cm 3 Tr");
    builder.addPage(612, 792).content("Q Q 0.5 0 0 0.5 0 0 cm");
    builder.addPage(612, 792).text("plain");
    // And a trailer without /Size, which a reader repairs (and a writer must not copy).
    std::string bytes = builder.bytes();
    const auto size = bytes.rfind("/Size");
    ASSERT_NE(size, std::string::npos);
    bytes.replace(size, bytes.find_first_of("/>", size + 1) - size, std::string(bytes.find_first_of("/>", size + 1) - size, ' '));
    const auto input = dir.write("in.pdf", bytes);
    auto m = mark("pageNumber", "Mark{n}");
    m.position = "bottom-right";
    m.pages = "1-2, 9";
    const auto output = dir / "out.pdf";
    EXPECT_EQ(stamped(input, output, {{m}}).pagesStamped, 2);
    EXPECT_TRUE(test::qpdfChecks(output));
    for (int page = 1; page <= 2; ++page) {
        const auto word = locate(output, page, "Mark" + std::to_string(page));
        ASSERT_TRUE(word) << "page " << page;
        EXPECT_NEAR(word->xMax, 612 - 24, 1.5) << "page " << page;
        EXPECT_NEAR(word->yMax, 792 - 24, 3.5) << "page " << page;
    }
    EXPECT_FALSE(locate(output, 3, "Mark3"));
}

// A watermark longer than the page is shrunk to fit inside the margins, not cut at the edges.
TEST(Stamp, AMarkTooLargeForThePageShrinksToFit) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage(300, 400).text("small page");
    const auto input = builder.write(dir / "in.pdf");
    auto m = mark("text", "Overwhelmingly");
    m.position = "center";
    m.fontSize = 90;
    const auto output = dir / "out.pdf";
    stamped(input, output, {{m}});
    const auto word = locate(output, 1, "Overwhelmingly");
    ASSERT_TRUE(word);
    EXPECT_NEAR(word->xMin, 24, 1.5);
    EXPECT_NEAR(word->xMax, 300 - 24, 1.5);
}

// Latin and Chinese marks on every page: each face is one subset font for the whole file, the
// text is found where it stands, and Poppler draws the glyphs (ink where the marks are).
TEST(Stamp, TextIsRealTextInOneSubsetFontPerFace) {
    TempDir dir;
    PDFBuilder builder;
    for (int i = 0; i < 3; ++i) {
        builder.addPage(612, 792).text("Body text");
    }
    const auto input = builder.write(dir / "in.pdf");
    auto chinese = mark("pageNumber", "第 {n} 页");
    chinese.fontSize = 14;
    auto latin = mark("text", "Page {n} of {total} · {name} · {date}");
    latin.position = "top-center";
    const auto output = dir / "out.pdf";
    stamped(input, output, {{chinese, latin}});
    EXPECT_TRUE(test::qpdfChecks(output));

    // Raw order: the layout mode joins CJK characters without their spaces.
    const auto text = test::runTool("pdftotext", {"-raw", "-f", "2", "-l", "2", output.string(), "-"}).out;
    EXPECT_NE(text.find("第 2 页"), std::string::npos) << text;
    EXPECT_NE(text.find("Page 2 of 3 · in.pdf · 2026-11-24"), std::string::npos) << text;

    const auto fonts = test::runTool("pdffonts", {output.string()}).out;
    const auto count = [&](const std::string& pattern) {
        const std::regex re(pattern);
        return std::distance(std::sregex_iterator(fonts.begin(), fonts.end(), re), std::sregex_iterator());
    };
    EXPECT_EQ(count(R"([A-Z]{6}\+NotoSansCJKsc-Regular +CID Type 0C +Identity-H +yes yes yes)"), 1) << fonts;
    EXPECT_EQ(count(R"([A-Z]{6}\+DejaVuSans +CID TrueType +Identity-H +yes yes yes)"), 1) << fonts;
    EXPECT_LT(fs::file_size(output) - fs::file_size(input), 40'000u) << "only the glyphs used";

    // Ink at the bottom centre (the Chinese number) and the top centre, drawn by Poppler.
    const auto before = test::renderGray(input, 2, 72);
    const auto after = test::renderGray(output, 2, 72);
    const auto inkIn = [](const test::GrayPage& page, int y0, int y1) {
        int dark = 0;
        for (int y = y0; y < y1; ++y) {
            for (int x = 250; x < 362; ++x) {
                dark += page.pixels[static_cast<std::size_t>(y * page.width + x)] < 128;
            }
        }
        return dark;
    };
    EXPECT_EQ(inkIn(before, 752, 776), 0);
    EXPECT_GT(inkIn(after, 752, 776), 20);
    EXPECT_GT(inkIn(after, 16, 40), 20);
}

// Bates numbers run on from one file of a job to the next, in input order, and the notes give
// the first and last of each file.
TEST(Stamp, BatesNumbersRunOnAcrossTheFilesOfAJob) {
    TempDir dir;
    PDFBuilder first;
    first.addPage().text("one");
    first.addPage().text("two");
    PDFBuilder second;
    for (int i = 0; i < 3; ++i) {
        second.addPage().text("more");
    }
    auto bates = mark("bates", "ACME-");
    bates.start = 98;
    bates.digits = 4;
    const auto spec = TaskSpec::make(
        PDFOperationKind::stamp,
        {first.write(dir / "a.pdf").string(), second.write(dir / "b.pdf").string()}, {},
        P::Stamp{{bates}});
    const auto result = TaskRunner::run(spec, {}, {});
    ASSERT_EQ(result.outputs.size(), 2u);
    EXPECT_EQ(result.outputs[1].filename(), "b-stamped.pdf");
    EXPECT_EQ(result.note, "2 pages stamped, Bates ACME-0098–ACME-0099 · "
                           "3 pages stamped, Bates ACME-0100–ACME-0102");
    const auto text = test::runTool("pdftotext", {result.outputs[1].string(), "-"}).out;
    for (const char* number : {"ACME-0100", "ACME-0101", "ACME-0102"}) {
        EXPECT_NE(text.find(number), std::string::npos) << number;
    }
}

// Under the content, a watermark shows around the page's text; over it with an opacity, it is
// blended; a picture keeps its transparency.
TEST(Stamp, LayersOpacityAndPictures) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage(612, 792).content("0 0 1 rg 0 0 612 396 re f").text("Text page");
    const auto input = builder.write(dir / "in.pdf");
    // A 20 x 10 picture: a red left half, a transparent right half.
    auto picture = vips::VImage::black(20, 10, vips::VImage::option()->set("bands", 4)).copy();
    picture = picture.new_from_image({255, 0, 0, 255});
    picture = picture.insert(picture.new_from_image({0, 0, 0, 0}).crop(0, 0, 10, 10), 10, 0);
    picture.pngsave((dir / "logo.png").c_str());

    auto under = mark("text", "UNDER");
    under.position = "center";
    under.fontSize = 120;
    under.color = "#FF0000";
    under.layer = "under";
    auto over = under;
    over.text = "OVER";
    over.layer = "over";
    over.position = "top-center";
    over.opacity = 0.25;
    auto logo = mark("picture", (dir / "logo.png").string());
    logo.width = 100;
    logo.position = "top-left";
    logo.margin = 0;
    const auto output = dir / "out.pdf";
    stamped(input, output, {{under, over, logo}});
    EXPECT_TRUE(test::qpdfChecks(output));
    const auto page = test::renderRGB(output, 1, 72);
    // Where no text is drawn, the page's own fill hides the watermark under it: all blue.
    EXPECT_EQ(page.at(306, 700), (std::vector<int>{0, 0, 255}));
    // The watermark under the content shows on white paper, full red.
    int red = 0;
    for (int x = 100; x < 512; ++x) {
        const auto pixel = page.at(x, 370);
        red += pixel[0] > 200 && pixel[1] < 60;
    }
    EXPECT_GT(red, 40) << "the watermark under the text shows through";
    // The quarter-opaque text over white is pink, not red.
    int pink = 0;
    for (int y = 24; y < 160; ++y) {
        for (int x = 150; x < 462; ++x) {
            const auto pixel = page.at(x, y);
            pink += pixel[0] > 240 && pixel[1] > 170 && pixel[1] < 215;
        }
    }
    EXPECT_GT(pink, 100);
    EXPECT_EQ(page.at(20, 20), (std::vector<int>{255, 0, 0}));
    EXPECT_EQ(page.at(80, 20), (std::vector<int>{255, 255, 255})) << "transparent stays paper";
}

// A mark that cannot work is refused before anything is read, naming what is wrong.
TEST(Stamp, BadMarksAreRefusedByName) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().text("x");
    const auto input = builder.write(dir / "in.pdf");
    auto colour = mark("text", "x");
    colour.color = "#12345";
    auto opacity = mark("text", "x");
    opacity.opacity = 1.5;
    auto position = mark("pageNumber", "{n}");
    position.position = "middle";
    auto pages = mark("pageNumber", "{n}");
    pages.pages = "abc";
    const struct {
        P::Stamp stamp;
        std::string says;
    } cases[] = {
        {{}, "Nothing to stamp"},
        {{{mark("pageNumber", " ")}}, "Mark 1: the page number format is empty."},
        {{{mark("text", "ok"), colour}}, "Mark 2: the colour \"#12345\" is not #RRGGBB."},
        {{{mark("picture", (dir / "missing.png").string())}}, "missing.png cannot be read"},
        {{{opacity}}, "opacity 1.5"},
        {{{position}}, "unknown position \"middle\""},
        {{{pages}}, "the pages \"abc\" name no page"},
        {{{mark("stamp", "x")}}, "unknown kind \"stamp\""},
        {{{mark("text", "two\tcolumns")}}, "control character U+0009"},
    };
    for (const auto& c : cases) {
        const auto error = test::caughtCoreError([&] { stamped(input, dir / "out.pdf", c.stamp); });
        EXPECT_NE(error.errorDescription().find(c.says), std::string::npos)
            << error.errorDescription();
        EXPECT_FALSE(fs::exists(dir / "out.pdf"));
    }
}

} // namespace
} // namespace quillet
