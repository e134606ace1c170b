// Random (version 4) identifiers in canonical upper-case text, e.g. for temporary file names.
#pragma once

#include <string>

namespace quillet {

/// "E621E1F8-C36C-495A-93FC-0C247A3E6E5F": 36 characters, upper case, version 4, variant 1.
std::string newUUIDString();

} // namespace quillet
