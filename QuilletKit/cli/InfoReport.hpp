// The human-readable report of `quillet info`, one block per file.
#pragma once

#include "engines/PDFAnalysis.hpp"

#include <string>

namespace quillet {

/// The block for one file: a "── name ──" heading, the labelled lines, and an empty line.
std::string infoReport(const std::string& fileName, const PDFAnalysis& analysis);

/// The page-size note of the pages line, from the first page only: " (A4)", " (US Letter)" or
/// " (W×H pt)"; empty without pages. Width and height are not swapped, so a landscape A4 page
/// shows its numbers.
std::string dominantSize(const PDFAnalysis& analysis);

} // namespace quillet
