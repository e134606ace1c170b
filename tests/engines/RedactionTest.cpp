// Redaction removes what lies under its areas for good and nothing else: checked with Poppler's
// pdftotext and pdftoppm and with qpdf, never only with our own reading.
#include "engines/PDFCoreError.hpp"
#include "engines/PDFRedactionEngine.hpp"
#include "engines/RedactionFinder.hpp"
#include "support/CaughtError.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"
#include "support/TempDir.hpp"

#include <qpdf/QPDF.hh>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace quillet {
namespace {

namespace fs = std::filesystem;
using test::PDFBuilder;

std::string textOf(const fs::path& file, const std::vector<std::string>& extra = {}) {
    std::vector<std::string> arguments = extra;
    arguments.push_back(file.string());
    arguments.push_back("-");
    return test::runTool("pdftotext", arguments).out;
}

// Mean difference of two 72-DPI renders outside `boxes` (widened by 2 points), and the share of
// dark pixels inside them in the second.
struct Comparison {
    double outside = 0;
    double darkInside = 0;
    double blankInside = 0;
};
Comparison compared(const fs::path& before, const fs::path& after,
                    const std::vector<MuPDFEditor::Box>& boxes) {
    const auto a = test::renderGray(before, 1, 72);
    const auto b = test::renderGray(after, 1, 72);
    EXPECT_EQ(a.pixels.size(), b.pixels.size());
    double difference = 0, outside = 0, dark = 0, blank = 0, inside = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            const auto at = static_cast<std::size_t>(y) * a.width + x;
            const auto within = [&](double grow) {
                return std::any_of(boxes.begin(), boxes.end(), [&](const auto& box) {
                    return x + 0.5 > box.x0 - grow && x + 0.5 < box.x1 + grow &&
                           y + 0.5 > box.y0 - grow && y + 0.5 < box.y1 + grow;
                });
            };
            if (within(-1)) {
                ++inside;
                dark += b.pixels[at] < 64;
                blank += b.pixels[at] >= 250;
            } else if (!within(2)) {
                ++outside;
                difference += std::abs(a.pixels[at] - b.pixels[at]);
            }
        }
    }
    const double count = std::max(1.0, inside);
    return {difference / std::max(1.0, outside), dark / count, blank / count};
}

QPDFObjectHandle textForm(QPDF& qpdf, const std::string& operators) {
    auto form = QPDFObjectHandle::newStream(&qpdf, operators);
    form.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    form.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    form.getDict().replaceKey("/BBox", QPDFObjectHandle::parse("[0 0 612 792]"));
    form.getDict().replaceKey("/Resources", QPDFObjectHandle::parse(
        "<< /Font << /F1 << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> >>"));
    return form;
}

// "Jane Roe" shown in the ways text reaches a page; every time the name goes, the words around
// it stay text, and the page looks the same outside the boxes, which are filled.
TEST(Redaction, WordsGoWhereverTheyStandAndTheRestStaysAsItWas) {
    const struct {
        const char* name;
        std::function<void(PDFBuilder&, PDFBuilder::Page&)> build;
    } cases[] = {
        {"shown", [](auto&, auto& p) { p.text("Account holder Jane Roe, London", 72, 700); }},
        {"across a line break",
         [](auto&, auto& p) { p.text("Account holder Jane", 72, 700).text("Roe, London", 72, 686); }},
        {"in a form",
         [](auto& b, auto& p) {
             p.text("Account holder", 72, 720);
             p.object().getKey("/Resources").replaceKey(
                 "/XObject", QPDFObjectHandle::newDictionary());
             p.object().getKey("/Resources").getKey("/XObject").replaceKey(
                 "/Fm", textForm(b.qpdf(), "BT /F1 12 Tf 72 700 Td (Jane Roe, London) Tj ET"));
             p.content("q /Fm Do Q");
         }},
        {"in a scan's invisible layer",
         [](auto&, auto& p) {
             p.image({.width = 400, .height = 500, .grain = 24}, 0, 0, 612, 792);
             p.content("BT /F1 12 Tf 3 Tr 72 700 Td (Account holder Jane Roe, London) Tj ET");
             p.text("x", 10, 10, 1);
         }},
    };
    test::TempDir dir;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        PDFBuilder builder;
        c.build(builder, builder.addPage());
        const auto input = builder.write(dir / (std::string(c.name) + ".pdf"));
        RedactionRequest request;
        request.patterns = {{"jane roe"}};
        const auto hits = PDFRedactionEngine::find(input, request);
        ASSERT_EQ(hits.size(), 1u);
        const auto output = dir / (std::string(c.name) + "-redacted.pdf");
        const auto outcome = PDFRedactionEngine::redact(input, output, request);
        EXPECT_EQ(outcome.matchesByPattern.at("jane roe"), 1);

        const auto words = textOf(output);
        EXPECT_EQ(words.find("Jane"), std::string::npos) << words;
        EXPECT_EQ(words.find("Roe"), std::string::npos) << words;
        EXPECT_NE(words.find("London"), std::string::npos) << words;
        EXPECT_TRUE(test::qpdfChecks(output));
        const auto& box = hits.front().match.boxes.front();
        const auto under = textOf(output, {"-x", std::to_string(int(box.x0) + 1), "-y",
                                           std::to_string(int(box.y0) + 1), "-W",
                                           std::to_string(int(box.x1 - box.x0) - 2), "-H",
                                           std::to_string(int(box.y1 - box.y0) - 2)});
        EXPECT_EQ(under.find_first_not_of(" \n\f"), std::string::npos) << under;
        const auto look = compared(input, output, hits.front().match.boxes);
        EXPECT_LT(look.outside, 0.5);
        EXPECT_GT(look.darkInside, 0.9);
    }
}

// A photo with an area over part of it, a signature drawn as paths and a note, with no fill
// painted: the photo's own pixels under the area are blanked, the signature's paths are gone from
// the content, a line crossing the area's edge keeps its part outside, and the note goes.
TEST(Redaction, PixelsAndDrawingsUnderAnAreaAreGone) {
    test::TempDir dir;
    PDFBuilder builder;
    auto& page = builder.addPage();
    page.image({.width = 300, .height = 200, .grain = 40}, 100, 400, 300, 200);
    page.textNote("initialled here"); // at the top left, under the third area
    page.content("q 2 w 120 120 m 150 160 170 100 200 140 c S Q");
    page.content("q 1 w 50 110 m 400 110 l S Q");
    const auto input = builder.write(dir / "signed.pdf");
    RedactionRequest request;
    request.areas = {{1, 150, 250, 100, 80}, {1, 110, 625, 100, 75}, {1, 40, 40, 20, 10}};
    request.fill = "none";
    const auto output = dir / "signed-redacted.pdf";
    PDFRedactionEngine::redact(input, output, request);
    EXPECT_TRUE(test::qpdfChecks(output));

    QPDF qpdf;
    qpdf.processFile(output.c_str());
    const auto content = test::pageContents(qpdf.getAllPages().front());
    EXPECT_EQ(content.find("200 140 c"), std::string::npos) << content;
    EXPECT_NE(content.find("400 110 l"), std::string::npos) << content;
    auto annots = QPDFObjectHandle(qpdf.getAllPages().front()).getKey("/Annots");
    EXPECT_FALSE(annots.isArray() && annots.getArrayNItems() > 0);

    const std::vector<MuPDFEditor::Box> photo{{150, 250, 250, 330}};
    const std::vector<MuPDFEditor::Box> signature{{110, 625, 210, 700}};
    EXPECT_LT(compared(input, input, photo).blankInside, 0.05);
    EXPECT_GT(compared(input, output, photo).blankInside, 0.95);
    EXPECT_EQ(compared(input, output, signature).blankInside, 1.0);
    EXPECT_LT(compared(input, output, {photo[0], signature[0]}).outside, 0.5);
}

// The name also leaves the title, a note, a form field's value and an attachment's name.
TEST(Redaction, MatchesLeaveTheRestOfTheFile) {
    test::TempDir dir;
    PDFBuilder builder;
    builder.info("Title", "Statement for Jane Roe").attachment("Jane Roe.txt", "data");
    builder.addPage().text("Dear Jane Roe,", 72, 600).textNote("Call Jane Roe").textField(
        "holder", "Jane Roe");
    const auto input = builder.write(dir / "statement.pdf");
    RedactionRequest request;
    request.patterns = {{"Jane Roe"}};
    const auto output = dir / "statement-redacted.pdf";
    const auto outcome = PDFRedactionEngine::redact(input, output, request);
    EXPECT_EQ(outcome.matchesElsewhere, 6); // the attachment's name three times: key, /F, /UF
    const auto dump = test::runTool("qpdf", {"--qdf", "--object-streams=disable", output.string(), "-"}).out;
    EXPECT_EQ(dump.find("Jane"), std::string::npos);
    EXPECT_NE(dump.find("Statement for"), std::string::npos);
}

TEST(Redaction, RefusesWhatItCannotDoAndWritesNothing) {
    test::TempDir dir;
    PDFBuilder builder;
    builder.addPage().text("Nothing personal here", 72, 700);
    const auto plain = builder.write(dir / "plain.pdf");
    const auto locked = test::corpus("005-libreoffice-writer-password/libreoffice-writer-password.pdf");
    const auto with = [](auto change) {
        RedactionRequest request;
        request.patterns = {{"personal"}};
        change(request);
        return request;
    };
    const struct {
        const char* name;
        fs::path input;
        RedactionRequest request;
        const char* said;
    } cases[] = {
        {"nothing asked", plain, RedactionRequest{}, "Nothing to redact"},
        {"bad expression", plain, with([](auto& r) { r.patterns = {{"(unclosed", true}}; }), "(unclosed"},
        {"unknown preset", plain, with([](auto& r) { r.presets = {"shoe size"}; }), "shoe size"},
        {"unknown fill", plain, with([](auto& r) { r.fill = "purple"; }), "purple"},
        {"page out of range", plain, with([](auto& r) { r.areas = {{9, 0, 0, 10, 10}}; }), "page 9"},
        {"empty area", plain, with([](auto& r) { r.areas = {{1, 0, 0, 0, 10}}; }), "no width"},
        {"no match", plain, with([](auto& r) { r.patterns = {{"Jane"}}; }), "nothing to redact"},
        {"locked", locked, with([](auto&) {}), "password"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto output = dir / "out.pdf";
        const auto error = test::caughtCoreError(
            [&] { PDFRedactionEngine::redact(c.input, output, c.request); });
        EXPECT_NE(error.errorDescription().find(c.said), std::string::npos)
            << error.errorDescription();
        EXPECT_FALSE(fs::exists(output));
    }
    // An area drawn across letters takes them whole (the proof would refuse a half-removed one).
    RedactionRequest across;
    across.areas = {{1, 80, 85, 5, 6}};
    const auto cut = dir / "cut.pdf";
    PDFRedactionEngine::redact(plain, cut, across);
    const auto left = textOf(cut);
    EXPECT_EQ(left.find("Nothing"), std::string::npos) << left;
    EXPECT_NE(left.find("personal"), std::string::npos) << left;

    // With its password the locked file is redacted, and the result opens without one.
    RedactionRequest request;
    request.areas = {{1, 50, 50, 200, 100}};
    request.password = "openpassword";
    const auto output = dir / "unlocked-redacted.pdf";
    PDFRedactionEngine::redact(locked, output, request);
    EXPECT_TRUE(test::qpdfChecks(output));
}

TEST(RedactionFinder, PresetsFindWhatTheyNameAndNothingElse) {
    const struct {
        const char* preset;
        const char* text;
        int matches;
    } cases[] = {
        {"email", "write to jane.roe@example.org today", 1},
        {"email", "jane at example dot org", 0},
        {"iban", "IBAN DE89 3704 0044 0532 0130 00, thanks", 1},
        {"iban", "IBAN DE89 3704 0044 0532 0130 01", 0},
        {"iban", "DE89 3704 0044 0532 0130 00 Commerzbank Frankfurt", 1}, // not run into the bank
        {"card", "4111 1111 1111 1111 4012 8888 8888 1881", 2},           // two, one after the other
        {"card", "card 4111 1111 1111 1111 exp", 1},
        {"card", "card 4111 1111 1111 1112 exp", 0},
        {"phone", "call +49 30 1234567 now", 1},
        {"phone", "in 2024 we", 0},
        {"date", "on 2024-03-15, 15.03.2024 and March 15, 2024", 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        int found = 0;
        RedactionFinder({}, {c.preset}).erased(c.text, found);
        EXPECT_EQ(found, c.matches);
    }
    // Words stand whole, and a hyphenated word joins across its line break, hyphen and all.
    int found = 0;
    EXPECT_EQ(RedactionFinder({{"Ann"}}, {}).erased("Ann's Annual report", found),
              "'s Annual report");
    const auto line = [](const std::string& text, double y) {
        MuPDFEditor::Line glyphs;
        for (std::size_t i = 0; i < text.size(); ++i) {
            glyphs.push_back({static_cast<char32_t>(text[i]), {10.0 * i, y, 10.0 * i + 9, y + 10}});
        }
        return glyphs;
    };
    const auto matches =
        RedactionFinder({{"confidential"}}, {}).find({line("strictly confi-", 0), line("dential data", 20)});
    ASSERT_EQ(matches.size(), 1u);
    ASSERT_EQ(matches[0].boxes.size(), 2u);
    // An expression that matches only the space joining two lines finds nothing to box.
    for (const auto& match : RedactionFinder({{"\\s", true}}, {}).find({line("a", 0), line("b", 20)})) {
        EXPECT_FALSE(match.boxes.empty());
    }
    EXPECT_EQ(matches[0].boxes[0].x1, 149); // through the hyphen
    EXPECT_EQ(matches[0].boxes[1].x1, 69);
}

} // namespace
} // namespace quillet
