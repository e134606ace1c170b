// The parsed arguments of one command (everything after the command word).
//
// Parsing rules users may trip over, kept on purpose:
// - The names in `valueOptions` take a value; every other option is a flag.
// - "-x" (exactly two characters) and "--x" are the same option.
// - There is no "--" end-of-options marker ("--" is a flag with an empty name) and no
//   "--name=value" form (that is a flag whose name contains "=").
// - A flag between a value option and its value leaves the option pending; a value option at the
//   very end is dropped; a repeated value option keeps its last value in `value` (`all` has
//   every one, for options that may be given many times).
// - A value that looks like an option (such as "-5") is read as an option, not as the value.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quillet {

struct CLIArgs {
    static constexpr std::array<std::string_view, 32> valueOptions{
        "o",        "t",      "under",          "ranges", "extract",  "every",    "by-size",
        "format",   "dpi",    "pages",          "page-size", "fit",   "margin",   "preset",
        "password", "lang",   "render-timeout", "text",   "regex",    "area",     "fill",
        "page-numbers", "bates", "start",       "digits", "image",    "width",    "position",
        "size",     "color",  "opacity",        "rotation"};

    std::vector<std::string> positional;
    std::set<std::string> flags;
    std::map<std::string, std::string> values;
    std::map<std::string, std::vector<std::string>> allValues;

    static CLIArgs parse(const std::vector<std::string>& arguments);

    bool flag(const std::string& name) const { return flags.contains(name); }
    std::optional<std::string> value(const std::string& name) const;
    /// Every value given to `name`, in order.
    std::vector<std::string> all(const std::string& name) const;

    /// The positional arguments as paths, each taken as it stands. Throws CLIError "no input
    /// files" when there are none, and "file not found: " + path for the first that does not exist.
    std::vector<std::filesystem::path> inputs() const;
};

/// "10MB", " 2 gb ", "1.5k" -> bytes. The unit is GB/G, MB/M, KB/K (binary multiples), B, or
/// none (bytes); case and surrounding blanks do not matter; the product is truncated. Throws
/// CLIError naming the text when there is no number, the unit is unknown, or the size does not fit
/// in 64 bits.
std::int64_t parseSize(std::string_view text);

} // namespace quillet
