#include "platform/CMYKConverter.hpp"

#include <lcms2.h>

#include <cstring>

namespace quillet {

namespace {

struct ProfileCloser {
    void operator()(void* profile) const noexcept { cmsCloseProfile(profile); }
};
using ProfilePtr = std::unique_ptr<void, ProfileCloser>;

} // namespace

std::unique_ptr<CMYKConverter> CMYKConverter::fromProfile(std::span<const std::uint8_t> profile) {
    if (profile.empty() || profile.size() > 0xFFFF'FFFFu) {
        return nullptr;
    }
    return through(
        cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())));
}

std::unique_ptr<CMYKConverter> CMYKConverter::through(void* profile) {
    ProfilePtr cmyk(profile);
    if (!cmyk || cmsGetColorSpace(cmyk.get()) != cmsSigCmykData ||
        cmsGetDeviceClass(cmyk.get()) == cmsSigLinkClass) {
        return nullptr;
    }
    ProfilePtr srgb(cmsCreate_sRGBProfile());
    if (!srgb) {
        return nullptr;
    }
    // The transform keeps what it needs of both profiles; they may be closed right after.
    void* transform = cmsCreateTransform(cmyk.get(), TYPE_CMYK_8, srgb.get(), TYPE_RGB_8,
                                         INTENT_RELATIVE_COLORIMETRIC,
                                         cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_NOCACHE);
    if (!transform) {
        return nullptr;
    }
    return std::unique_ptr<CMYKConverter>(new CMYKConverter(transform));
}

const std::vector<std::filesystem::path>& CMYKConverter::standardProfiles() {
    static const std::vector<std::filesystem::path> paths{
        "/usr/share/color/icc/ghostscript/default_cmyk.icc",
    };
    return paths;
}

std::unique_ptr<CMYKConverter> CMYKConverter::standard() {
    for (const auto& path : standardProfiles()) {
        if (auto converter = through(cmsOpenProfileFromFile(path.c_str(), "r"))) {
            return converter;
        }
    }
    return nullptr;
}

CMYKConverter::~CMYKConverter() {
    cmsDeleteTransform(transform_);
}

void CMYKConverter::toRGB(const std::uint8_t* cmyk, std::uint8_t* rgb,
                          std::size_t count) const noexcept {
    // A colour-managed pixel costs tens of nanoseconds, and print pages are mostly runs of one
    // colour (paper, flat tints): only a pixel that differs from the one before is converted,
    // a piece of the row at a time.
    constexpr std::size_t piece = 2048;
    std::uint8_t distinct[4 * piece];
    std::uint8_t converted[3 * piece];
    std::uint32_t previous = 0;
    bool havePrevious = false;
    std::size_t done = 0;
    while (done < count) {
        const std::size_t now = count - done < piece ? count - done : piece;
        const std::uint8_t* from = cmyk + 4 * done;
        std::size_t kept = 0;
        std::uint32_t last = previous;
        bool haveLast = havePrevious;
        for (std::size_t i = 0; i < now; ++i) {
            std::uint32_t value;
            std::memcpy(&value, from + 4 * i, 4);
            if (!haveLast || value != last) {
                std::memcpy(distinct + 4 * kept++, &value, 4);
                last = value;
                haveLast = true;
            }
        }
        cmsDoTransform(transform_, distinct, converted, static_cast<cmsUInt32Number>(kept));
        // Spread the converted colours back over their runs; a run continuing from the piece
        // before keeps that piece's colour, which `rgb` still holds just before this one.
        std::uint8_t* to = rgb + 3 * done;
        std::size_t next = 0;
        last = previous;
        haveLast = havePrevious;
        for (std::size_t i = 0; i < now; ++i) {
            std::uint32_t value;
            std::memcpy(&value, from + 4 * i, 4);
            if (!haveLast || value != last) {
                std::memcpy(to + 3 * i, converted + 3 * next++, 3);
                last = value;
                haveLast = true;
            } else {
                std::memmove(to + 3 * i, to + 3 * i - 3, 3);
            }
        }
        previous = last;
        havePrevious = haveLast;
        done += now;
    }
}

} // namespace quillet
