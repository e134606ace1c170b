// A MuPDF device that draws print colours through a colour profile.
//
// The MuPDF we link has no colour management: CMYK reaches the screen through the naive formula
// (red = 1 - cyan - black), which turns a press's orange-red into a flat saturated red. This
// device sits in front of the draw device and hands it sRGB instead: fill and stroke colours,
// image masks, transparency-group and soft-mask backdrops are converted one colour at a time,
// images pixel by pixel, and shadings are painted in CMYK and converted as an image. Colours in
// separation, DeviceN and indexed spaces whose base is CMYK go through the same conversion after
// their tint transform. Every other colour passes untouched.
//
// Like the rest of the MuPDF boundary this code is C-like: it runs inside MuPDF's interpreter,
// where an error is a longjmp, so no function here holds an object with a destructor.
#pragma once

#include "platform/CMYKConverter.hpp"

#include <mupdf/fitz.h>

namespace quillet::mupdf {

/// Supplies the conversion, typically made on first use (reading the document's output intent).
/// Called from inside MuPDF's interpreter: it must not throw.
class CMYKSource {
  public:
    /// Null when no conversion can be had; the device then leaves colours as MuPDF converts
    /// them.
    virtual const CMYKConverter* converter(fz_context* ctx) noexcept = 0;

  protected:
    ~CMYKSource() = default;
};

/// Wraps `target`, which draws into pixels covering `area` (device space). Throws as MuPDF does,
/// so it is called inside fz_try. The new device borrows `target` and `source`: both outlive it,
/// and closing and dropping `target` stays with the caller.
fz_device* newColourManagedDevice(fz_context* ctx, fz_device* target, fz_irect area,
                                  CMYKSource* source);

} // namespace quillet::mupdf
