// For the files that call MuPDF functions that can fail (MuPDFBoundary.cpp, MuPDFEditor.cpp):
// how an error leaves a C-like function and becomes an exception.
//
// No object with a destructor may be alive while MuPDF can longjmp, so errors are copied into
// the plain struct below and thrown only after the function has returned. Results assigned
// inside fz_try are volatile so that a longjmp cannot leave them in a stale register.
#pragma once

#include "platform/MuPDFBoundary.hpp"

namespace quillet::mupdf::detail {

struct Caught {
    int code = 0;
    char message[256] = {};
};

/// Inside fz_catch: keeps MuPDF's error.
inline void remember(fz_context* ctx, Caught* caught) {
    caught->code = fz_caught(ctx);
    fz_strlcpy(caught->message, fz_caught_message(ctx), sizeof caught->message);
}

/// After the C-like function has returned: the error as an exception.
[[noreturn]] inline void raise(const Caught& caught) {
    throw Error(caught.code, caught.message);
}

} // namespace quillet::mupdf::detail
