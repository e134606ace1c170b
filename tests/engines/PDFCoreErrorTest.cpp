#include "engines/PDFCoreError.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

TEST(PDFCoreErrorTest, EachCaseHasItsFixedEnglishText) {
    using Case = PDFCoreError::Case;
    const struct {
        PDFCoreError error;
        Case errorCase;
        const char* description;
    } cases[] = {
        {PDFCoreError::fileNotFound("/home/a/Reports/q3 report.pdf"), Case::fileNotFound,
         "File not found: q3 report.pdf"},
        {PDFCoreError::cannotOpen("/tmp/in/broken.pdf"), Case::cannotOpen,
         "Could not open broken.pdf."},
        {PDFCoreError::invalidInput("Enter an open password."), Case::invalidInput,
         "Enter an open password."},
        {PDFCoreError::writeFailed("out.pdf"), Case::writeFailed,
         "Writing the PDF failed: out.pdf"},
        {PDFCoreError::validationFailed("Page count mismatch (2 vs 3)."), Case::validationFailed,
         "Could not safely process this PDF. Page count mismatch (2 vs 3)."},
        {PDFCoreError::cannotReachTarget(1536), Case::cannotReachTarget,
         "This PDF cannot be compressed under 1.50 KB without unacceptable quality loss."},
        {PDFCoreError::wrongPassword(), Case::wrongPassword, "Incorrect password."},
        {PDFCoreError::emptyDocument(), Case::emptyDocument, "The document has no pages."},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.error.errorCase(), c.errorCase) << c.description;
        EXPECT_EQ(c.error.errorDescription(), c.description);
        EXPECT_STREQ(c.error.what(), c.description);
    }
    EXPECT_EQ(PDFCoreError::cannotReachTarget(123456).bytes(), 123456);
}

// A cancelled job must not be reported as a failed one by a handler of PDFCoreError.
TEST(PDFCoreErrorTest, CancellationIsNoPDFCoreError) {
    const std::exception& cancelled = CancellationError();
    EXPECT_EQ(dynamic_cast<const PDFCoreError*>(&cancelled), nullptr);
}

} // namespace
} // namespace quillet
