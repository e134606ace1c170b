#include "platform/FileTypes.hpp"

#include "platform/ImageIO.hpp"
#include "support/TempDir.hpp"

#include <gtest/gtest.h>
#include <vips/vips8>

namespace quillet {
namespace {

struct KindCase {
    const char* path;
    std::optional<FileKind> kind;
};

class FileKindTest : public testing::TestWithParam<KindCase> {};

TEST_P(FileKindTest, JudgesByLastExtensionIgnoringCase) {
    const auto& c = GetParam();
    EXPECT_EQ(fileKind(c.path), c.kind);
    EXPECT_EQ(isPDF(c.path), c.kind == FileKind::pdf);
    EXPECT_EQ(isImage(c.path), c.kind.has_value() && c.kind != FileKind::pdf);
}

INSTANTIATE_TEST_SUITE_P(
    FileTypes, FileKindTest,
    testing::Values(KindCase{"/a/B/REPORT.PDF", FileKind::pdf}, KindCase{"x.JPG", FileKind::jpeg},
                    KindCase{"x.jfif", FileKind::jpeg}, KindCase{"x.Tif", FileKind::tiff},
                    KindCase{"x.HEIF", FileKind::heic}, KindCase{"x.pdf.png", FileKind::png},
                    KindCase{"x.tar.gz", std::nullopt}, KindCase{"README", std::nullopt},
                    KindCase{".pdf", std::nullopt}, KindCase{"folder.pdf/", std::nullopt},
                    KindCase{"x.", std::nullopt}, KindCase{"x.svg", std::nullopt},
                    KindCase{"x.bmp", std::nullopt}));

// Every extension called an image must really load with the untrusted loaders blocked, quietly.
TEST(FileTypes, EveryImageExtensionDecodes) {
    ASSERT_TRUE(ImageIO::initialise());
    test::TempDir dir;
    auto image = (vips::VImage::black(8, 6, vips::VImage::option()->set("bands", 3)) + 128)
                     .cast(VIPS_FORMAT_UCHAR);
    const std::vector<std::pair<FileKind, const char*>> savers{
        {FileKind::png, ".png"},   {FileKind::jpeg, ".jpg"},  {FileKind::tiff, ".tif"},
        {FileKind::heic, ".heic"}, {FileKind::avif, ".avif"}, {FileKind::webp, ".webp"},
        {FileKind::gif, ".gif"}};
    testing::internal::CaptureStderr();
    for (const auto& [kind, suffix] : savers) {
        void* buffer = nullptr;
        std::size_t size = 0;
        image.write_to_buffer(suffix, &buffer, &size);
        const std::string bytes(static_cast<const char*>(buffer), size);
        g_free(buffer);
        for (auto extension : extensions(kind)) {
            auto decoded = ImageIO::decode(dir.write("image." + std::string(extension), bytes));
            EXPECT_EQ(decoded ? decoded->width() : 0, 8) << extension;
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace quillet
