#include "output/OutputResolver.hpp"

#include "platform/FreeNames.hpp"

#include <ctime>
#include <system_error>

namespace quillet::OutputResolver {

namespace fs = std::filesystem;

namespace {

void replaceAll(std::string& text, std::string_view token, std::string_view replacement) {
    for (auto at = text.find(token); at != std::string::npos;
         at = text.find(token, at + replacement.size())) {
        text.replace(at, token.size(), replacement);
    }
}

bool occupied(const fs::path& url) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(url, ignored));
}

Resolution inTemporaryFolder(const char* name) {
    std::error_code error;
    auto folder = fs::temp_directory_path(error);
    return {(error ? fs::path("/tmp") : folder) / name, false};
}

} // namespace

std::string_view actionWord(PDFOperationKind operation) {
    switch (operation) {
    case PDFOperationKind::compress:
    case PDFOperationKind::targetSize: return "compressed";
    case PDFOperationKind::merge: return "merged";
    case PDFOperationKind::split: return "part";
    case PDFOperationKind::organize: return "organized";
    case PDFOperationKind::pdfToImages:
    case PDFOperationKind::imagesToPDF: return "";
    case PDFOperationKind::clean: return "clean";
    case PDFOperationKind::protect: return "protected";
    case PDFOperationKind::unprotect: return "unlocked";
    case PDFOperationKind::ocr: return "ocr";
    case PDFOperationKind::redact: return "redacted";
    case PDFOperationKind::stamp: return "stamped";
    }
    return "";
}

std::string timestamp(Clock::time_point now) {
    std::time_t seconds = Clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[32];
    auto length = std::strftime(text, sizeof text, "%Y%m%d-%H%M", &local);
    return std::string(text, length);
}

std::string applyTemplate(std::string_view nameTemplate, std::string_view stem,
                          PDFOperationKind operation, std::optional<int> part,
                          Clock::time_point now) {
    std::string text(nameTemplate.empty() ? "{name}-{action}" : nameTemplate);
    replaceAll(text, "{name}", stem);
    replaceAll(text, "{action}", actionWord(operation));
    replaceAll(text, "{date}", timestamp(now));
    // A fixed word on purpose: the size is not known before the output is written.
    replaceAll(text, "{size}", "sized");
    if (!part) {
        return text;
    }
    auto number = std::to_string(*part);
    if (text.find("{part}") != std::string::npos) {
        replaceAll(text, "{part}", number);
    } else {
        text += "-part" + number;
    }
    return text;
}

fs::path uniquify(const fs::path& url, Clock::time_point now) {
    // Past the numbered names comes the seconds name, unchecked: the write still never replaces.
    for (int index = 1; index <= 1000; ++index) {
        auto candidate = FreeNames::candidate(url, index, now);
        if (index == 1000 || !occupied(candidate)) {
            FreeNames::claim(candidate, url, index, now);
            return candidate;
        }
    }
    return url;
}

fs::path outputFolder(const fs::path& input, const OutputRule& rule) {
    switch (rule.location) {
    case OutputRule::Location::sameFolder: return input.parent_path();
    case OutputRule::Location::subfolder: return input.parent_path() / rule.subfolderName;
    case OutputRule::Location::custom: return fs::path(rule.customFolder);
    }
    return input.parent_path();
}

Resolution resolve(const fs::path& input, const OutputRule& rule, PDFOperationKind operation,
                   std::optional<int> part, std::string_view extension, Clock::time_point now) {
    auto name = applyTemplate(rule.nameTemplate, input.stem().string(), operation, part, now);
    if (!extension.empty() && extension.front() != '.') {
        name += '.';
    }
    name += extension;
    auto candidate = outputFolder(input, rule) / name;
    bool exists = occupied(candidate);
    if (rule.replaceOriginal) {
        // Asked to be replaced: an earlier free-name answer for it must not make the write
        // exclusive.
        FreeNames::release(candidate);
        return {candidate, exists && !part};
    }
    return {uniquify(candidate, now), false};
}

Resolution resolveMerge(const std::vector<fs::path>& inputs, const OutputRule& rule,
                        Clock::time_point now) {
    if (inputs.empty()) {
        return inTemporaryFolder("merged.pdf");
    }
    auto folder = outputFolder(inputs.front(), rule);
    return {uniquify(folder / ("merged-" + timestamp(now) + ".pdf"), now), false};
}

Resolution resolveImagesToPDF(const std::vector<fs::path>& inputs, const OutputRule& /*rule*/,
                              Clock::time_point now) {
    if (inputs.empty()) {
        return inTemporaryFolder("scan.pdf");
    }
    auto name = inputs.size() == 1 ? inputs.front().stem().string() + ".pdf"
                                   : "images-" + timestamp(now) + ".pdf";
    return {uniquify(inputs.front().parent_path() / name, now), false};
}

void ensureDirectory(const fs::path& url) {
    auto folder = url.parent_path();
    if (folder.empty() || occupied(folder)) {
        return;
    }
    fs::create_directories(folder);
}

} // namespace quillet::OutputResolver
