#include "engines/PDFImageEngine.hpp"

#include "engines/ImageCodec.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFSplitEngine.hpp"
#include "platform/PDFRenderer.hpp"
#include "platform/TemporaryFile.hpp"

#include <fmt/format.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>

namespace quillet {
namespace fs = std::filesystem;
namespace {

struct EncodedImage {
    std::vector<std::uint8_t> bytes;
    std::string extension;
};

// What a worker hands back for one page: the image already written to a temporary file beside
// its destination (so the calling thread only renames), or why there is none.
struct PageImage {
    std::optional<TemporaryFile> file;
    fs::path destination;
    std::exception_ptr renderError;
};

// What every page of one export shares.
struct ImageJob {
    const fs::path& folder;
    const std::string& baseName;
    ImageOutputFormat format;
    double quality;
    int pageCount;
};

std::string extensionOf(ImageOutputFormat format) {
    // Without a HEIC encoder the codec writes JPEG bytes, and the name must say so.
    if (format == ImageOutputFormat::heic && ImageCodec::utType(format) != FileKind::heic) {
        return std::string(rawValue(ImageOutputFormat::jpeg));
    }
    return std::string(rawValue(format));
}

// HEIC before JPEG on purpose: it is the smaller of the two lossy fallbacks.
std::optional<EncodedImage> encodeWithFallback(const Bitmap& bitmap, ImageOutputFormat requested,
                                               double quality) {
    const ImageOutputFormat order[] = {requested, ImageOutputFormat::heic, ImageOutputFormat::jpeg};
    for (std::size_t i = 0; i < std::size(order); ++i) {
        if (std::find(order, order + i, order[i]) != order + i) {
            continue;
        }
        if (auto bytes = ImageCodec::data(bitmap, order[i], quality)) {
            return EncodedImage{std::move(*bytes), extensionOf(order[i])};
        }
    }
    return std::nullopt;
}

[[noreturn]] void failWrite(const fs::path& destination, int error) {
    throw fs::filesystem_error("cannot write the image", destination,
                               std::error_code(error, std::generic_category()));
}

// The data reaches the disk here, on a worker, so that the rename on the calling thread has
// nothing left to flush.
void writeDurably(const fs::path& temporary, const std::vector<std::uint8_t>& bytes,
                  const fs::path& destination) {
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0) {
        failWrite(destination, errno);
    }
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            const int error = n < 0 ? errno : ENOSPC;
            ::close(fd);
            failWrite(destination, error);
        }
        written += static_cast<std::size_t>(n);
    }
    const int synced = ::fdatasync(fd);
    const int error = errno;
    if (::close(fd) != 0 || (synced != 0 && error != EINVAL)) {
        failWrite(destination, synced != 0 ? error : errno);
    }
}

PDFRenderer::Document openForRendering(const PDFRenderer& renderer, const fs::path& input) {
    try {
        return renderer.open(input);
    } catch (const RenderError& error) {
        if (error.reason() == RenderError::Reason::wrongPassword) {
            throw PDFCoreError::wrongPassword();
        }
        throw PDFCoreError::cannotOpen(input);
    }
}

std::string tooLargeMessage(const fs::path& input, int index, int dpi,
                            PDFRenderer::PixelSize size) {
    return fmt::format(
        "{}, page {}: {} DPI would give {} x {} pixels ({:.0f} megapixels), more than "
        "the limit of {} megapixels; choose a lower resolution.",
        input.filename().string(), index + 1, dpi, size.width, size.height,
        size.width / 1'000'000.0 * size.height, PDFRenderer::maxPixels / 1'000'000);
}

// Every selected page is measured before the first image is written, so an oversized page late
// in the selection cannot leave a half-finished export behind.
void refuseOversizedPages(PDFRenderer::Document& document, const std::vector<int>& pages, int dpi,
                          const fs::path& input) {
    const double scale = dpi / 72.0;
    for (const int index : pages) {
        std::optional<PDFRenderer::PageSize> points;
        try {
            points = document.pageSize(index);
        } catch (const RenderError&) {
            continue; // a page that cannot be loaded is skipped when its turn comes
        }
        const auto size = PDFRenderer::pixelSize(*points, scale);
        if (size.width > PDFRenderer::maxPixels / size.height) {
            throw PDFCoreError::invalidInput(tooLargeMessage(input, index, dpi, size));
        }
    }
}

// A render failure skips its page, except a refused size, which would fail every other page of
// the request too and deserves to be said.
/// Why a page that failed to render is skipped; throws for a failure that must stop the run.
std::string skippedBecause(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const RenderError& renderError) {
        if (renderError.reason() == RenderError::Reason::tooLarge) {
            throw PDFCoreError::invalidInput(renderError.what());
        }
        return renderError.what();
    } catch (const std::exception& other) {
        return other.what();
    }
}

// Runs on a worker, right after the page was rendered there.
PageImage writePageImage(PDFRenderer::RenderedPage&& page, const ImageJob& job) {
    PageImage image;
    if (!page.bitmap) {
        image.renderError = page.error;
        return image;
    }
    auto encoded = encodeWithFallback(*page.bitmap, job.format, job.quality);
    page.bitmap.reset();
    if (encoded) {
        image.destination =
            job.folder / PDFImageEngine::fileName(job.baseName, page.pageIndex + 1, job.pageCount,
                                                  encoded->extension);
        image.file.emplace(TemporaryFile::beside(image.destination));
        writeDurably(image.file->path(), encoded->bytes, image.destination);
    }
    return image;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

std::vector<int> PDFImageEngine::selectedPages(std::string_view pagesText, int pageCount) {
    const std::string_view text = trimmed(pagesText);
    std::vector<int> pages;
    if (text.empty()) {
        for (int index = 0; index < pageCount; ++index) {
            pages.push_back(index);
        }
        return pages;
    }
    std::vector<bool> seen(static_cast<std::size_t>(std::max(pageCount, 1)), false);
    for (const PageRange& range : PDFSplitEngine::parseRanges(text, pageCount)) {
        for (int number = range.lower; number <= range.upper; ++number) {
            if (!seen[static_cast<std::size_t>(number - 1)]) {
                seen[static_cast<std::size_t>(number - 1)] = true;
                pages.push_back(number - 1);
            }
        }
    }
    if (pages.empty()) {
        throw PDFCoreError::invalidInput("No pages matched \"" + std::string(pagesText) + "\".");
    }
    std::sort(pages.begin(), pages.end());
    return pages;
}

std::string PDFImageEngine::fileName(const std::string& baseName, int pageNumber, int pageCount,
                                     std::string_view extension) {
    const auto digits = std::max<std::size_t>(2, std::to_string(std::max(pageCount, 0)).size());
    return fmt::format("{}-page-{:0{}}.{}", baseName, pageNumber, digits, extension);
}

PDFImageEngine::Result PDFImageEngine::pdfToImages(
    const fs::path& input, const fs::path& outputDirectory, const std::string& baseName,
    ImageOutputFormat format, int dpi, std::string_view pagesText, double jpegQuality,
    const Progress& progress, const CancellationTest& isCancelled, unsigned threads,
    std::chrono::milliseconds renderTimeout) {
    const int pageCount = PDFDocumentEngine::openCG(input).pageCount();
    const std::vector<int> pages = selectedPages(pagesText, pageCount);
    if (dpi < 1) {
        throw PDFCoreError::invalidInput(
            fmt::format("The resolution must be at least 1 DPI, not {}.", dpi));
    }
    const PDFRenderer renderer;
    PDFRenderer::Document document = openForRendering(renderer, input);
    refuseOversizedPages(document, pages, dpi, input);
    // A folder made for this run goes again if the run ends without an image in it.
    struct MadeFolder {
        fs::path path;
        ~MadeFolder() {
            std::error_code ignored;
            if (!path.empty() && fs::is_empty(path, ignored)) {
                fs::remove(path, ignored);
            }
        }
    } made;
    if (!outputDirectory.empty() && fs::create_directories(outputDirectory)) {
        made.path = outputDirectory;
    }

    Result result;
    std::size_t done = 0;
    // Runs on the calling thread, in page order.
    auto keepImage = [&](PageImage&& image) {
        if (isCancelled && isCancelled()) {
            throw CancellationError();
        }
        if (image.renderError) {
            result.skipped.push_back(skippedBecause(image.renderError));
        }
        if (image.file) {
            image.file->commit(image.destination);
            result.files.push_back(image.destination);
        }
        ++done;
        if (progress) {
            progress(static_cast<double>(done) / static_cast<double>(pages.size()));
        }
    };

    const ImageJob job{outputDirectory, baseName, format, jpegQuality, pageCount};
    PDFRenderer::RenderOptions options;
    options.scale = dpi / 72.0;
    options.timeout = renderTimeout;
    document.renderPagesInOrder(
        PDFRenderer::Document::requests(pages, options),
        [&job](PDFRenderer::RenderedPage&& page) { return writePageImage(std::move(page), job); },
        keepImage, threads);
    if (result.files.empty() && !result.skipped.empty()) {
        throw PDFCoreError::invalidInput(result.skipped.front());
    }
    if (result.files.empty()) {
        throw PDFCoreError::writeFailed("no images produced");
    }
    return result;
}

} // namespace quillet
