#include "cli/CLIArgs.hpp"

#include "cli/CLIError.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <system_error>

namespace quillet {

CLIArgs CLIArgs::parse(const std::vector<std::string>& arguments) {
    CLIArgs args;
    std::optional<std::string> pending;
    const auto option = [&](std::string name) {
        if (std::find(valueOptions.begin(), valueOptions.end(), name) != valueOptions.end()) {
            pending = std::move(name);
        } else {
            args.flags.insert(std::move(name));
        }
    };
    for (const auto& argument : arguments) {
        if (argument.starts_with("--")) {
            option(argument.substr(2));
        } else if (argument.size() == 2 && argument[0] == '-') {
            option(argument.substr(1));
        } else if (pending) {
            args.values[*pending] = argument;
            args.allValues[*pending].push_back(argument);
            pending.reset();
        } else {
            args.positional.push_back(argument);
        }
    }
    return args;
}

std::optional<std::string> CLIArgs::value(const std::string& name) const {
    if (auto it = values.find(name); it != values.end()) {
        return it->second;
    }
    return std::nullopt;
}

std::vector<std::string> CLIArgs::all(const std::string& name) const {
    if (auto it = allValues.find(name); it != allValues.end()) {
        return it->second;
    }
    return {};
}

std::vector<std::filesystem::path> CLIArgs::inputs() const {
    if (positional.empty()) {
        throw CLIError("no input files");
    }
    std::vector<std::filesystem::path> paths(positional.begin(), positional.end());
    for (const auto& path : paths) {
        std::error_code error;
        if (!std::filesystem::exists(path, error)) {
            throw CLIError("file not found: " + path.string());
        }
    }
    return paths;
}

std::int64_t parseSize(std::string_view text) {
    const auto invalid = [&] {
        return CLIError("invalid size \"" + std::string(text) +
                        "\" (use a number and KB, MB or GB, for example 10MB)");
    };
    std::string upper;
    for (char c : text) {
        upper.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    }
    const auto first = upper.find_first_not_of(" \t\r\n");
    const auto last = upper.find_last_not_of(" \t\r\n");
    const std::string trimmed = first == std::string::npos ? "" : upper.substr(first, last - first + 1);

    const auto numberEnd = trimmed.find_first_not_of("0123456789.");
    const std::string number = trimmed.substr(0, numberEnd);
    std::string unit = numberEnd == std::string::npos ? "" : trimmed.substr(numberEnd);
    unit.erase(0, std::min(unit.find_first_not_of(' '), unit.size()));

    double value = 0;
    const auto parsed = std::from_chars(number.data(), number.data() + number.size(), value);
    if (number.empty() || parsed.ec != std::errc() || parsed.ptr != number.data() + number.size()) {
        throw invalid();
    }
    double factor = 0;
    if (unit == "GB" || unit == "G") {
        factor = 1073741824.0;
    } else if (unit == "MB" || unit == "M") {
        factor = 1048576.0;
    } else if (unit == "KB" || unit == "K") {
        factor = 1024.0;
    } else if (unit.empty() || unit == "B") {
        factor = 1.0;
    } else {
        throw invalid();
    }
    const double product = std::trunc(value * factor);
    // 2^63 is exactly representable; anything at or above it does not fit.
    if (!(product < 9223372036854775808.0)) {
        throw CLIError("size too large: \"" + std::string(text) + "\"");
    }
    return static_cast<std::int64_t>(product);
}

} // namespace quillet
