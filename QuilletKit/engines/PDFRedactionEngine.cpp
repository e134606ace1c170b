#include "engines/PDFRedactionEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/ContentMatrix.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/RedactedDrawing.hpp"
#include "engines/RedactedExtras.hpp"
#include "engines/ValidatedWrite.hpp"
#include "platform/MuPDFBoundary.hpp"
#include "platform/MuPDFEditor.hpp"
#include "platform/TemporaryFile.hpp"

#include <qpdf/Pl_String.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <exception>
#include <optional>
#include <thread>

namespace quillet {
namespace fs = std::filesystem;
namespace {

using Box = MuPDFEditor::Box;
using Area = RedactedDrawing::Area;

std::optional<RedactedDrawing::Colour> fillColour(const std::string& fill) {
    if (fill == "black") {
        return RedactedDrawing::Colour{0, 0, 0};
    }
    if (fill == "white") {
        return RedactedDrawing::Colour{1, 1, 1};
    }
    if (fill == "none") {
        return std::nullopt;
    }
    const bool hex = fill.size() == 7 && fill[0] == '#' &&
                     std::all_of(fill.begin() + 1, fill.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
    if (!hex) {
        throw PDFCoreError::invalidInput("Unknown fill \"" + fill +
                                             "\" (black, white, none or #RRGGBB).");
    }
    const auto channel = [&](int at) { return std::stoi(fill.substr(static_cast<std::size_t>(at), 2), nullptr, 16) / 255.0; };
    return RedactedDrawing::Colour{channel(1), channel(3), channel(5)};
}

void report(const PDFRedactionEngine::Progress& progress, double fraction) {
    if (progress) {
        progress(fraction);
    }
}

void checkCancelled(const PDFRedactionEngine::Cancelled& cancelled) {
    if (cancelled && cancelled()) {
        throw CancellationError();
    }
}

// The input opened for MuPDF, with the errors a user understands.
MuPDFEditor openEditor(const fs::path& input, const std::string& password) {
    std::error_code missing;
    if (!fs::is_regular_file(input, missing)) {
        throw PDFCoreError::fileNotFound(input);
    }
    try {
        return MuPDFEditor::open(input, password);
    } catch (const MuPDFEditor::PasswordRequired&) {
        throw PDFCoreError::wrongPassword();
    } catch (const mupdf::Error& error) {
        throw PDFCoreError::cannotOpen(input, error.what());
    }
}

// Each page's matches, found on all cores: every thread reads its share of the pages with an
// editor of its own (MuPDF contexts are not shared). Only the calling thread reports progress
// and asks whether to stop; the others follow its word.
std::vector<std::vector<RedactionMatch>> matchesOnPages(
    const fs::path& input, const std::string& password, const RedactionFinder& finder, int count,
    const PDFRedactionEngine::Progress& progress, const PDFRedactionEngine::Cancelled& cancelled,
    double share) {
    std::vector<std::vector<RedactionMatch>> found(static_cast<std::size_t>(count));
    if (finder.empty() || count == 0) {
        return found;
    }
    const int threads = static_cast<int>(
        std::clamp<unsigned>(std::thread::hardware_concurrency(), 1u, static_cast<unsigned>(count)));
    std::atomic<int> done{0};
    std::atomic<bool> stop{false};
    std::vector<std::exception_ptr> failures(static_cast<std::size_t>(threads));
    const auto work = [&](int thread) {
        try {
            auto editor = MuPDFEditor::open(input, password);
            for (int index = thread; index < count && !stop; index += threads) {
                found[static_cast<std::size_t>(index)] = finder.find(editor.lines(index));
                const int finished = ++done;
                if (thread == 0) {
                    if (cancelled && cancelled()) {
                        stop = true;
                    }
                    report(progress, share * finished / count);
                }
            }
        } catch (...) {
            failures[static_cast<std::size_t>(thread)] = std::current_exception();
            stop = true;
        }
    };
    std::vector<std::thread> helpers;
    for (int thread = 1; thread < threads; ++thread) {
        helpers.emplace_back(work, thread);
    }
    work(0);
    for (auto& helper : helpers) {
        helper.join();
    }
    for (const auto& failure : failures) {
        if (failure) {
            try {
                std::rethrow_exception(failure);
            } catch (const mupdf::Error& error) {
                throw PDFCoreError::invalidInput(input.filename().string() + ": " + error.what());
            }
        }
    }
    checkCancelled(cancelled);
    return found;
}

// `areas` grown over every glyph they touch: a glyph is removed whole or not at all, so an area
// drawn across a word takes the letters it cuts, and their place is filled too.
std::vector<Box> wholeGlyphs(std::vector<Box> areas, const std::vector<MuPDFEditor::Line>& lines) {
    for (Box& area : areas) {
        const Box drawn = area;
        for (const auto& line : lines) {
            for (const auto& glyph : line) {
                const Box& g = glyph.box;
                if (g.x0 < drawn.x1 && drawn.x0 < g.x1 && g.y0 < drawn.y1 && drawn.y0 < g.y1) {
                    area = {std::min(area.x0, g.x0), std::min(area.y0, g.y0),
                            std::max(area.x1, g.x1), std::max(area.y1, g.y1)};
                }
            }
        }
    }
    return areas;
}

Box boxOf(const RedactionArea& area) {
    return {area.x, area.y, area.x + area.width, area.y + area.height};
}

Area inUserSpace(const Box& box, const std::array<double, 6>& m) {
    Area area{1e300, 1e300, -1e300, -1e300};
    for (const auto& [x, y] : {std::pair{box.x0, box.y0}, std::pair{box.x1, box.y0},
                               std::pair{box.x0, box.y1}, std::pair{box.x1, box.y1}}) {
        const auto [ux, uy] = transformed(x, y, m);
        area = {std::min(area.x0, ux), std::min(area.y0, uy), std::max(area.x1, ux),
                std::max(area.y1, uy)};
    }
    return area;
}

std::string contentOf(QPDFPageObjectHelper page) {
    std::string content;
    Pl_String sink("page content", nullptr, content);
    page.pipeContents(&sink);
    return content;
}

// The written file read again: nothing under an area, no match anywhere.
void prove(const fs::path& input, const fs::path& written,
           const std::map<int, std::vector<Box>>& boxes, const RedactionFinder& finder) {
    const auto fail = [&input](const std::string& why) {
        throw PDFCoreError::validationFailed(input.filename().string() +
                                             ": the redaction could not be proven: " + why +
                                             ". Nothing was written.");
    };
    std::optional<MuPDFEditor> reopened;
    try {
        reopened.emplace(MuPDFEditor::open(written));
    } catch (const std::exception& error) {
        fail(std::string("the written file cannot be read (") + error.what() + ")");
    }
    auto& editor = *reopened;
    // Only the redacted pages changed: every other page shows the text it showed, in which
    // nothing matched.
    for (const auto& [index, pageBoxes] : boxes) {
        const auto lines = editor.lines(index);
        for (const auto& line : lines) {
            for (const auto& glyph : line) {
                const double cx = (glyph.box.x0 + glyph.box.x1) / 2;
                const double cy = (glyph.box.y0 + glyph.box.y1) / 2;
                for (const Box& box : pageBoxes) {
                    if (cx > box.x0 && cx < box.x1 && cy > box.y0 && cy < box.y1) {
                        fail(fmt::format("text remains under an area on page {}", index + 1));
                    }
                }
            }
        }
        if (const auto left = finder.find(lines); !left.empty()) {
            fail(fmt::format("\"{}\" still matches on page {}", left.front().text, index + 1));
        }
    }
    auto document = PDFDocumentEngine::openCG(written);
    if (RedactedExtras::countMatches(document.qpdf(), finder) > 0) {
        fail("a match remains in the document's metadata, outline, annotations or forms");
    }
}

} // namespace

void PDFRedactionEngine::validate(const RedactionRequest& request) {
    if (request.areas.empty() && request.patterns.empty() && request.presets.empty()) {
        throw PDFCoreError::invalidInput(
            "Nothing to redact: give an area, some words, an expression or a preset.");
    }
    for (const auto& area : request.areas) {
        if (area.page < 1) {
            throw PDFCoreError::invalidInput(
                fmt::format("Redaction area on page {}: pages are numbered from 1.", area.page));
        }
        if (!(area.width > 0) || !(area.height > 0)) {
            throw PDFCoreError::invalidInput(fmt::format(
                "Redaction area {}:{},{},{},{} has no width or height.", area.page, area.x,
                area.y, area.width, area.height));
        }
    }
    (void)fillColour(request.fill);
    (void)RedactionFinder(request.patterns, request.presets);
}

std::vector<RedactionHit> PDFRedactionEngine::find(const fs::path& input,
                                                   const RedactionRequest& request,
                                                   const Progress& progress,
                                                   const Cancelled& cancelled) {
    validate(request);
    const RedactionFinder finder(request.patterns, request.presets);
    const int count = openEditor(input, request.password).pageCount();
    auto found = matchesOnPages(input, request.password, finder, count, progress, cancelled, 1.0);
    std::vector<RedactionHit> hits;
    for (int index = 0; index < count; ++index) {
        for (auto& match : found[static_cast<std::size_t>(index)]) {
            hits.push_back({index + 1, std::move(match)});
        }
    }
    return hits;
}

RedactionOutcome PDFRedactionEngine::redact(const fs::path& input, const fs::path& output,
                                            const RedactionRequest& request,
                                            const Progress& progress, const Cancelled& cancelled) {
    validate(request);
    const RedactionFinder finder(request.patterns, request.presets);
    const auto fill = fillColour(request.fill);
    auto editor = openEditor(input, request.password);
    const int count = editor.pageCount();
    if (count < 1) {
        throw PDFCoreError::cannotOpen(input, "no page of it can be read");
    }
    RedactionOutcome outcome;
    for (const auto& area : request.areas) {
        if (area.page > count) {
            throw PDFCoreError::invalidInput(
                fmt::format("Redaction area on page {}: {} has {} pages.", area.page,
                            input.filename().string(), count));
        }
    }

    // MuPDF takes the glyphs and pixels out from under every area, page by page.
    const auto found = matchesOnPages(input, request.password, finder, count, progress, cancelled, 0.5);
    std::map<int, std::vector<Box>> boxes;
    std::map<int, std::array<double, 6>> toUser;
    try {
        for (int index = 0; index < count; ++index) {
            auto& page = boxes[index];
            std::vector<Box> drawn;
            for (const auto& area : request.areas) {
                if (area.page == index + 1) {
                    drawn.push_back(boxOf(area));
                    ++outcome.areas;
                }
            }
            if (!drawn.empty()) {
                page = wholeGlyphs(drawn, editor.lines(index));
            }
            for (const auto& match : found[static_cast<std::size_t>(index)]) {
                page.insert(page.end(), match.boxes.begin(), match.boxes.end());
                ++outcome.matchesByPattern[match.label];
                ++outcome.areas;
            }
            if (page.empty()) {
                boxes.erase(index);
                continue;
            }
            checkCancelled(cancelled);
            ++outcome.pages;
            toUser[index] = editor.toUserSpace(index);
            editor.redact(index, page);
        }
        report(progress, 0.6);
    } catch (const mupdf::Error& error) {
        throw PDFCoreError::invalidInput(input.filename().string() + ": " + error.what());
    }

    auto stage = TemporaryFile::inSystemTemporaryFolder(".pdf");
    try {
        editor.save(stage.path());
    } catch (const mupdf::Error& error) {
        throw PDFCoreError::writeFailed(output.filename().string() + ": " + error.what());
    }
    checkCancelled(cancelled);

    // qpdf removes the drawing under the areas, paints them, and clears what lies elsewhere.
    auto document = PDFDocumentEngine::openCG(stage.path());
    auto pages = QPDFPageDocumentHelper(document.qpdf()).getAllPages();
    for (const auto& [index, pageBoxes] : boxes) {
        if (index >= static_cast<int>(pages.size())) {
            break;
        }
        std::vector<Area> areas;
        for (const Box& box : pageBoxes) {
            areas.push_back(inUserSpace(box, toUser.at(index)));
        }
        auto& page = pages[static_cast<std::size_t>(index)];
        int removed = 0;
        const std::string content = RedactedDrawing::clipBefore(areas) +
                                    RedactedDrawing::withoutPathsUnder(contentOf(page), areas,
                                                                       removed) +
                                    RedactedDrawing::fillAfter(areas, fill);
        page.getObjectHandle().replaceKey(
            "/Contents", QPDFObjectHandle::newStream(&document.qpdf(), content));
        RedactedExtras::removeAnnotationsUnder(document.qpdf(), page.getObjectHandle(), areas);
        page.getObjectHandle().removeKey("/Thumb"); // a picture of the page as it was
    }
    outcome.matchesElsewhere = RedactedExtras::eraseMatches(document.qpdf(), finder);
    if (outcome.areas == 0 && outcome.matchesElsewhere == 0) {
        throw PDFCoreError::invalidInput(input.filename().string() + ": nothing to redact");
    }
    report(progress, 0.8);
    writeValidated(document, output, count, nullptr, {},
                   [&](const fs::path& written) { prove(input, written, boxes, finder); });
    report(progress, 1.0);
    return outcome;
}

} // namespace quillet
