// Colour-managed conversion of CMYK to sRGB, for drawing pages whose colours were chosen for
// print.
//
// A CMYK value means "this much ink on this press"; what it looks like on a screen depends on the
// press, which the document names in its output intent (an ICC profile of the printing
// condition) or which a standard coated-paper profile stands in for. LittleCMS carries the value
// through that profile to sRGB, relative colorimetric with black-point compensation, the
// conversion that print previews use. Without it, orange-red ink (0/94/81/6) would come out as a
// saturated red with no green at all.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace quillet {

class CMYKConverter {
  public:
    /// The conversion through `profile` (the bytes of an ICC profile). Absent when the bytes are
    /// not a profile LittleCMS can read or when it describes something other than CMYK.
    static std::unique_ptr<CMYKConverter> fromProfile(std::span<const std::uint8_t> profile);

    /// The conversion through the first standard CMYK profile found in `standardProfiles()`;
    /// absent when none is installed.
    static std::unique_ptr<CMYKConverter> standard();

    /// Where the standard profile is looked for, in order: a SWOP-like coated-paper profile
    /// shipped by a Debian data package.
    static const std::vector<std::filesystem::path>& standardProfiles();

    ~CMYKConverter();
    CMYKConverter(const CMYKConverter&) = delete;
    CMYKConverter& operator=(const CMYKConverter&) = delete;

    /// Converts `count` pixels of 4 bytes (ink amounts, 255 = full ink) to 3 bytes of sRGB.
    /// Safe to call from several threads at once.
    void toRGB(const std::uint8_t* cmyk, std::uint8_t* rgb, std::size_t count) const noexcept;

  private:
    /// Takes an opened profile (or null) and closes it.
    static std::unique_ptr<CMYKConverter> through(void* profile);
    explicit CMYKConverter(void* transform) noexcept : transform_(transform) {}
    void* transform_; // cmsHTRANSFORM
};

} // namespace quillet
