#include "support/TestPaths.hpp"

namespace quillet::test {

const char* quilletBinary() { return QUILLET_BINARY_PATH; }
const char* quilletAppBinary() { return QUILLET_APP_BINARY_PATH; }
const char* corpusFolder() { return QUILLET_CORPUS_PATH; }
const char* sourceFolder() { return QUILLET_SOURCE_PATH; }

} // namespace quillet::test
