// What an engine call throws, for tests that check the kind of failure.
#pragma once

#include "engines/PDFCoreError.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace quillet::test {

/// The PDFCoreError `work` throws. When it throws none the test fails, and an arbitrary error
/// (wrongPassword) stands in so the caller's checks fail too.
inline PDFCoreError caughtCoreError(const std::function<void()>& work) {
    try {
        work();
    } catch (const PDFCoreError& error) {
        return error;
    }
    ADD_FAILURE() << "no PDFCoreError thrown";
    return PDFCoreError::wrongPassword();
}

/// The case of the PDFCoreError `work` throws; see `caughtCoreError`.
inline PDFCoreError::Case caughtCase(const std::function<void()>& work) {
    return caughtCoreError(work).errorCase();
}

} // namespace quillet::test
