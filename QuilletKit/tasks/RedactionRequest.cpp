#include "tasks/RedactionRequest.hpp"

#include "engines/PDFCoreError.hpp"

#include <fmt/format.h>

namespace quillet {

RedactionRequest redactionRequest(const OperationParameters::Redact& parameters) {
    RedactionRequest request;
    for (const auto& area : parameters.areas) {
        if (area.rect.size() != 4) {
            throw PDFCoreError::invalidInput(fmt::format(
                "Redaction area on page {}: its rectangle needs x, y, width and height.",
                area.page));
        }
        request.areas.push_back({static_cast<int>(area.page), area.rect[0], area.rect[1],
                                 area.rect[2], area.rect[3]});
    }
    for (const auto& pattern : parameters.patterns) {
        request.patterns.push_back({pattern.text, pattern.regex, pattern.matchCase});
    }
    request.presets = parameters.presets;
    request.fill = parameters.fill;
    request.password = parameters.password;
    return request;
}

std::string redactionNote(const RedactionOutcome& outcome) {
    std::string note = fmt::format("{} areas on {} pages redacted", outcome.areas, outcome.pages);
    if (outcome.matchesElsewhere > 0) {
        note += fmt::format(", {} matches removed from the rest of the file",
                            outcome.matchesElsewhere);
    }
    return note;
}

} // namespace quillet
