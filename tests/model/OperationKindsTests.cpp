#include "model/ImageToPDFOptions.hpp"
#include "model/OperationKinds.hpp"

#include <gtest/gtest.h>

namespace quillet {
namespace {

TEST(ImageOutputFormat, OnlyLossyFormatsSupportQuality) {
    const std::pair<ImageOutputFormat, bool> table[] = {{ImageOutputFormat::png, false},
                                                        {ImageOutputFormat::jpeg, true},
                                                        {ImageOutputFormat::tiff, false},
                                                        {ImageOutputFormat::heic, true}};
    for (auto [format, expected] : table) {
        EXPECT_EQ(supportsQuality(format), expected) << rawValue(format);
    }
}

TEST(RawValues, ImageToPDFEnumsUseTheirCaseNames) {
    EXPECT_EQ(rawValue(ImageToPDFOptions::PageSize::letter), "letter");
    EXPECT_EQ(rawValue(ImageToPDFOptions::Fit::fill), "fill");
    // "auto" is a page size of the parameters' text form only, never a case.
    EXPECT_EQ(fromRawValue<ImageToPDFOptions::PageSize>("auto"), std::nullopt);
}

} // namespace
} // namespace quillet
