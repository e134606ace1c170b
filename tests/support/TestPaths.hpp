// Where the tests find what the build made and what the checkout holds. The paths are compiled
// into one file only (TestPaths.cpp), so that every other test file compiles the same wherever
// the checkout lies, and a compiler cache filled by one clone serves another. Included into every
// test file by the build (-include), so QUILLET_BINARY reads like the constant it stands for.
#pragma once

namespace quillet::test {

/// The `quillet` program of this build.
const char* quilletBinary();
/// The `quillet-app` program of this build.
const char* quilletAppBinary();
/// The folder of the shared real-world corpus.
const char* corpusFolder();
/// The top folder of the checkout.
const char* sourceFolder();

} // namespace quillet::test

#define QUILLET_BINARY (::quillet::test::quilletBinary())
#define QUILLET_APP_BINARY (::quillet::test::quilletAppBinary())
