#include "engines/PDFCoreError.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

struct ErrorCase {
    PDFCoreError error;
    int number;
    const char* description;
};

class PDFCoreErrorDescription : public testing::TestWithParam<ErrorCase> {};

TEST_P(PDFCoreErrorDescription, IsTheFixedEnglishText) {
    const auto& [error, number, description] = GetParam();
    EXPECT_EQ(static_cast<int>(error.errorCase()), number);
    EXPECT_EQ(error.errorDescription(), description);
    EXPECT_STREQ(error.what(), description);
}

INSTANTIATE_TEST_SUITE_P(
    PDFCoreErrorTest, PDFCoreErrorDescription,
    testing::Values(
        ErrorCase{PDFCoreError::fileNotFound("/home/a/Reports/q3 report.pdf"), 0,
                  "File not found: q3 report.pdf"},
        ErrorCase{PDFCoreError::cannotOpen("/tmp/in/broken.pdf"), 1, "Could not open broken.pdf."},
        ErrorCase{PDFCoreError::invalidInput("Enter an open password."), 2,
                  "Enter an open password."},
        ErrorCase{PDFCoreError::writeFailed("out.pdf"), 3, "Writing the PDF failed: out.pdf"},
        ErrorCase{PDFCoreError::validationFailed("Page count mismatch (2 vs 3)."), 4,
                  "Could not safely process this PDF. Page count mismatch (2 vs 3)."},
        ErrorCase{PDFCoreError::cannotReachTarget(5 * 1048576), 5,
                  "This PDF cannot be compressed under 5.00 MB without unacceptable quality "
                  "loss."},
        ErrorCase{PDFCoreError::cannotReachTarget(1536), 5,
                  "This PDF cannot be compressed under 1.50 KB without unacceptable quality "
                  "loss."},
        ErrorCase{PDFCoreError::cannotReachTarget(900), 5,
                  "This PDF cannot be compressed under 900 B without unacceptable quality loss."},
        ErrorCase{PDFCoreError::wrongPassword(), 6, "Incorrect password."},
        ErrorCase{PDFCoreError::emptyDocument(), 7, "The document has no pages."}));

TEST(PDFCoreErrorTest, PayloadsAreKept) {
    EXPECT_EQ(PDFCoreError::cannotOpen("/a/b.pdf").url(), "/a/b.pdf");
    EXPECT_EQ(PDFCoreError::writeFailed("disk full").text(), "disk full");
    EXPECT_EQ(PDFCoreError::cannotReachTarget(123456).bytes(), 123456);
    EXPECT_TRUE(PDFCoreError::wrongPassword().url().empty());
}

TEST(PDFCoreErrorTest, CancellationIsNoPDFCoreError) {
    const std::exception& cancelled = CancellationError();
    EXPECT_EQ(dynamic_cast<const PDFCoreError*>(&cancelled), nullptr);
}

} // namespace
} // namespace quillet
