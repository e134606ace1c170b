// The one error of the font program readers and converters: the bytes are not a font program we
// can read, or they describe one that would make an interpreter run away (loops through
// subroutines, stacks past their limits, byte counts past the end of the data).
//
// Callers treat it as "keep the original font": it never means the document itself is damaged.
#pragma once

#include <stdexcept>
#include <string>

namespace quillet::fonts {

class FontProgramError : public std::runtime_error {
  public:
    explicit FontProgramError(const std::string& what) : std::runtime_error(what) {}
};

} // namespace quillet::fonts
