#include "platform/PDFRenderer.hpp"

#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <qpdf/QUtil.hh>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <functional>
#include <limits>

namespace quillet {
namespace {

using test::corpus;
using test::PDFBuilder;
using test::TempDir;
using Reason = RenderError::Reason;
using Options = PDFRenderer::RenderOptions;

const std::string kEncrypted = "005-libreoffice-writer-password/libreoffice-writer-password.pdf";
const std::string kFourPages = "004-pdflatex-4-pages/pdflatex-4-pages.pdf";

std::uint8_t value(const Bitmap& bitmap, int x, int y) {
    return bitmap.pixels()[static_cast<std::size_t>(y) * bitmap.rowBytes() +
                           static_cast<std::size_t>(x * bitmap.bands())];
}

bool allWhite(const Bitmap& bitmap) {
    return std::all_of(bitmap.pixels().begin(), bitmap.pixels().end(),
                       [](std::uint8_t byte) { return byte == 255; });
}

Reason reasonOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const RenderError& error) {
        return error.reason();
    }
    ADD_FAILURE() << "no RenderError";
    return Reason::renderFailed;
}

struct SizeCase {
    std::array<double, 4> mediaBox;
    int rotate;
    double dpi;
    std::int64_t width;
    std::int64_t height;
};

class PageSizeTest : public testing::TestWithParam<SizeCase> {};

TEST_P(PageSizeTest, BitmapHasTruncatedSizeOfRotatedMediaBox) {
    const auto& c = GetParam();
    TempDir dir;
    PDFBuilder builder;
    auto [llx, lly, urx, ury] = c.mediaBox;
    builder.addPage().mediaBox(llx, lly, urx, ury).rotate(c.rotate);
    auto document = PDFRenderer().open(builder.write(dir / "page.pdf"));
    auto bitmap = document.render(0, {.scale = c.dpi / 72.0});
    EXPECT_EQ(bitmap.width(), c.width);
    EXPECT_EQ(bitmap.height(), c.height);
    auto size = PDFRenderer::pixelSize(document.pageSize(0), c.dpi / 72.0);
    EXPECT_EQ(size.width, c.width);
    EXPECT_EQ(size.height, c.height);
}

INSTANTIATE_TEST_SUITE_P(PDFRenderer, PageSizeTest,
                         testing::Values(SizeCase{{0, 0, 612, 792}, 0, 72, 612, 792},
                                         SizeCase{{0, 0, 612, 792}, 0, 144, 1224, 1584},
                                         SizeCase{{0, 0, 595.276, 841.89}, 0, 150, 1240, 1753},
                                         SizeCase{{0, 0, 612, 792}, 90, 72, 792, 612},
                                         SizeCase{{100, 200, 712, 992}, -90, 100, 1100, 850},
                                         SizeCase{{0, 0, 0.2, 0.2}, 0, 72, 1, 1}));

// A black square in the media box's lower-left corner must land in the corner a viewer shows,
// also when a crop box moves MuPDF's page origin away from the media box's.
struct CornerCase {
    int rotate;
    bool left;
    bool top;
};

class RotationTest : public testing::TestWithParam<CornerCase> {};

TEST_P(RotationTest, LowerLeftCornerFollowsRotation) {
    const auto& c = GetParam();
    TempDir dir;
    PDFBuilder builder;
    auto& page = builder.addPage().mediaBox(100, 200, 400, 600).rotate(c.rotate);
    page.content("0 g 100 200 60 60 re f");
    page.object().replaceKey("/CropBox", QPDFObjectHandle::parse("[200 300 400 600]"));
    auto bitmap = PDFRenderer().open(builder.write(dir / "corner.pdf")).render(0);
    const int w = bitmap.width();
    const int h = bitmap.height();
    ASSERT_EQ(w * h, 300 * 400);
    for (auto [x, y] : {std::pair{10, 10}, {w - 10, 10}, {10, h - 10}, {w - 10, h - 10}}) {
        const bool black = (x < w / 2) == c.left && (y < h / 2) == c.top;
        EXPECT_EQ(value(bitmap, x, y), black ? 0 : 255) << "at " << x << "," << y;
    }
}

INSTANTIATE_TEST_SUITE_P(PDFRenderer, RotationTest,
                         testing::Values(CornerCase{0, true, false}, CornerCase{90, true, true},
                                         CornerCase{180, false, true},
                                         CornerCase{270, false, false}));

TEST(PDFRenderer, CorpusPageRendersInGrayAndExactSizes) {
    auto document = PDFRenderer().open(corpus("001-trivial/minimal-document.pdf"));
    ASSERT_EQ(document.pageCount(), 1);
    auto gray = document.render(0, {.scale = 150 / 72.0, .format = PixelFormat::gray});
    EXPECT_EQ(gray.bands(), 1);
    EXPECT_EQ(gray.width(), 1240);
    EXPECT_FALSE(allWhite(gray)); // the page has text
    auto exact = document.render(0, {.size = {{40, 10}}});
    EXPECT_EQ(exact.width(), 40);
    EXPECT_EQ(exact.height(), 10);
}

TEST(PDFRenderer, EmptyPageIsWhiteAndFormsNeedAnnotations) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().textField("name", "Filled in"); // placed near the top of the page
    auto document = PDFRenderer().open(builder.write(dir / "form.pdf"));
    EXPECT_FALSE(allWhite(document.render(0)));
    EXPECT_TRUE(allWhite(document.render(0, {.annotations = false})));
    EXPECT_TRUE(allWhite(document.render(0, {.format = PixelFormat::gray, .annotations = false})));
}

TEST(PDFRenderer, PasswordsAreCheckedOnlyWhenNeeded) {
    PDFRenderer renderer;
    for (const char* password : {"openpassword", "permissionpassword"}) {
        auto document = renderer.open(corpus(kEncrypted), password);
        EXPECT_FALSE(allWhite(document.render(0, {.scale = 0.5})));
    }
    EXPECT_EQ(reasonOf([&] { renderer.open(corpus(kEncrypted)); }), Reason::wrongPassword);
    EXPECT_EQ(reasonOf([&] { renderer.open(corpus(kEncrypted), "guess"); }), Reason::wrongPassword);
    EXPECT_EQ(renderer.open(corpus(kFourPages), "unneeded").pageCount(), 4);
}

class UnopenableTest : public testing::TestWithParam<std::string> {};

TEST_P(UnopenableTest, FailsWithTheFileNameAndPrintsNothing) {
    TempDir dir;
    auto path = GetParam() == "missing" ? dir / "missing.pdf" : dir.write("bad.pdf", GetParam());
    testing::internal::CaptureStderr();
    try {
        PDFRenderer().open(path);
        ADD_FAILURE() << "opened " << GetParam();
    } catch (const RenderError& error) {
        EXPECT_EQ(error.reason(), Reason::cannotOpen);
        EXPECT_NE(std::string(error.what()).find(path.string()), std::string::npos);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

INSTANTIATE_TEST_SUITE_P(PDFRenderer, UnopenableTest,
                         testing::Values("missing", "", "Plain notes, not a document.\n",
                                         "%PDF-1.7\n%%EOF\n"));

struct Refusal {
    int index;
    Options options;
    Reason reason;
};

class RefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(RefusalTest, IsRefusedWithTheFileNameBeforeRendering) {
    const auto& c = GetParam();
    auto document = PDFRenderer().open(corpus("001-trivial/minimal-document.pdf"));
    try {
        document.render(c.index, c.options);
        ADD_FAILURE() << "rendered";
    } catch (const RenderError& error) {
        const std::string message = error.what();
        EXPECT_EQ(error.reason(), c.reason) << message;
        EXPECT_NE(message.find("minimal-document.pdf"), std::string::npos);
        EXPECT_EQ(c.reason == Reason::tooLarge,
                  message.find("400 megapixels") != std::string::npos);
    }
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    PDFRenderer, RefusalTest,
    testing::Values(Refusal{0, {.scale = 29}, Reason::tooLarge}, // 17261 x 24394 = 421 MP
                    Refusal{0, {.scale = 1e12}, Reason::tooLarge},
                    Refusal{0, {.size = {{20'001, 20'000}}}, Reason::tooLarge},
                    Refusal{0, {.size = {{std::int64_t{1} << 40, 2}}}, Reason::tooLarge},
                    Refusal{0, {.scale = 0}, Reason::invalidRequest},
                    Refusal{0, {.scale = kNaN}, Reason::invalidRequest},
                    Refusal{0, {.size = {{0, 10}}}, Reason::invalidRequest},
                    Refusal{-1, {}, Reason::pageOutOfRange},
                    Refusal{1, {}, Reason::pageOutOfRange}));

TEST(PDFRenderer, ParallelRenderingMatchesSerialRendering) {
    auto document = PDFRenderer().open(corpus(kFourPages));
    // Scrambled, repeated and one missing page, so any reordering or lost failure shows.
    const std::vector<int> pages{3, 0, 2, 9, 1, 0, 3, 2};
    auto requests = PDFRenderer::Document::requests(pages, {.scale = 0.4});
    std::vector<std::optional<Bitmap>> serial;
    for (int page : pages) {
        serial.push_back(page < 4 ? std::optional(document.render(page, {.scale = 0.4}))
                                  : std::nullopt);
    }
    for (unsigned threads : {0u, 1u, 2u, 3u, 8u}) {
        std::vector<int> order;
        std::vector<std::optional<Bitmap>> parallel;
        document.renderPagesInOrder(
            requests,
            [&](PDFRenderer::RenderedPage&& page) {
                order.push_back(page.pageIndex);
                parallel.push_back(std::move(page.bitmap));
                EXPECT_EQ(page.error != nullptr, !parallel.back().has_value());
            },
            threads);
        EXPECT_EQ(order, pages) << threads << " threads";
        EXPECT_EQ(parallel, serial) << threads << " threads";
    }
}

TEST(PDFRenderer, TransformRunsPerPageAndConsumerCanStopTheRun) {
    auto document = PDFRenderer().open(corpus(kFourPages));
    std::vector<std::int64_t> sizes;
    auto requests = PDFRenderer::Document::requests({0, 1, 2, 3, 0, 1, 2, 3}, {.scale = 0.25});
    auto pixels = [](PDFRenderer::RenderedPage&& page) { return page.bitmap->pixelCount(); };
    auto consume = [&](std::int64_t count) {
        sizes.push_back(count);
        if (sizes.size() == 3) {
            throw std::runtime_error("cancelled");
        }
    };
    EXPECT_THROW(document.renderPagesInOrder(requests, pixels, consume, 2), std::runtime_error);
    EXPECT_EQ(sizes, (std::vector<std::int64_t>(3, 148 * 210)));
}

// A page whose forms fill 10^9 squares would draw for many minutes: its time limit or its caller's
// cancel stops it, and the document's other pages still draw.
TEST(PDFRenderer, SlowPageStopsAtItsTimeLimitOrOnCancel) {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().formFanOut(9, 10);
    builder.addPage();
    const auto path = dir.write("bomb.pdf", builder.bytes());
    auto document = PDFRenderer().open(path);
    try {
        (void)document.render(0, {.scale = 0.1, .timeout = std::chrono::milliseconds(300)});
        ADD_FAILURE() << "the bomb was drawn";
    } catch (const RenderError& error) {
        EXPECT_EQ(error.reason(), Reason::tooSlow);
        EXPECT_EQ(std::string(error.what()), path.string() + ": Page 1 takes too long to draw");
    }
    std::atomic<int> asked{0};
    const Options cancelling{.scale = 0.1, .timeout = {}, .isCancelled = [&] { return ++asked > 2; }};
    EXPECT_EQ(reasonOf([&] { (void)document.render(0, cancelling); }), Reason::cancelled);
    EXPECT_TRUE(allWhite(document.render(1, {.scale = 0.1})));
}

// Print colours drawn through a colour profile: a press's orange-red (0/94/81/6) as a flat fill,
// as a spot colour, in an image and in a shading, each beside what an independent renderer with
// colour management draws. The naive formula (red = 1 - cyan - black) would give 240/1/34.
TEST(PDFRenderer, PrintColoursAreDrawnThroughAPressProfile) {
    TempDir dir;
    auto build = [&](const std::string& name, bool ownPress) {
        PDFBuilder builder;
        auto& page = builder.addPage(200, 40);
        page.content("0 0.94 0.81 0.06 k 0 0 40 40 re f "
                     "/Spot cs 1 scn 40 0 40 40 re f "
                     "q 120 0 40 40 re W n /Ramp sh Q "
                     "1 0 0 rg 160 0 40 40 re f");
        page.image({.width = 8, .height = 8, .color = test::ImageSpec::Color::cmyk}, 80, 0, 40,
                   40);
        auto& qpdf = builder.qpdf();
        auto resources = page.object().getKey("/Resources");
        resources.replaceKey("/ColorSpace", QPDFObjectHandle::parse(
            "<< /Spot [/Separation /Orange /DeviceCMYK << /FunctionType 2 /Domain [0 1] "
            "/C0 [0 0 0 0] /C1 [0 0.94 0.81 0.06] /N 1 >>] >>"));
        resources.replaceKey("/Shading", QPDFObjectHandle::parse(
            "<< /Ramp << /ShadingType 2 /ColorSpace /DeviceCMYK /Coords [120 0 160 0] "
            "/Function << /FunctionType 2 /Domain [0 1] /C0 [0 0.94 0.81 0.06] "
            "/C1 [1 0 0 0] /N 1 >> >> >>"));
        if (ownPress) {
            // A press that prints 0/94/81/6 as pink: the document's own choice wins.
            std::ifstream in("/usr/share/color/icc/ghostscript/ps_cmyk.icc", std::ios::binary);
            std::string profile{std::istreambuf_iterator<char>(in), {}};
            EXPECT_FALSE(profile.empty());
            auto stream = QPDFObjectHandle::newStream(&qpdf, profile);
            stream.getDict().replaceKey("/N", QPDFObjectHandle::newInteger(4));
            auto intent = QPDFObjectHandle::parse(
                "<< /Type /OutputIntent /S /GTS_PDFX /OutputConditionIdentifier (Test) >>");
            intent.replaceKey("/DestOutputProfile", stream);
            qpdf.getRoot().replaceKey("/OutputIntents", QPDFObjectHandle::newArray({intent}));
        }
        return builder.write(dir / name);
    };
    auto ours = [](const std::filesystem::path& file, int x) {
        auto bitmap = PDFRenderer().open(file).render(0, {});
        const auto* pixel = bitmap.data() + 20 * bitmap.rowBytes() + 3 * static_cast<std::size_t>(x);
        return std::vector<int>{pixel[0], pixel[1], pixel[2]};
    };
    auto distance = [](const std::vector<int>& a, const std::vector<int>& b) {
        return std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2]);
    };

    const auto standard = build("standard.pdf", false);
    const auto reference = test::renderRGB(standard);
    ASSERT_EQ(reference.width, 200);
    for (int x : {20, 60, 100, 130, 140, 150}) {
        SCOPED_TRACE(x);
        EXPECT_LE(distance(ours(standard, x), reference.at(x, 20)), 40);
    }
    EXPECT_GE(ours(standard, 20)[1], 25); // the naive formula leaves no green at all
    EXPECT_EQ(ours(standard, 180), (std::vector<int>{255, 0, 0})); // RGB stays as it is

    const auto ownPress = build("own-press.pdf", true);
    EXPECT_GE(distance(ours(ownPress, 20), ours(standard, 20)), 60);
    EXPECT_EQ(ours(ownPress, 180), (std::vector<int>{255, 0, 0}));
}

} // namespace
} // namespace quillet
