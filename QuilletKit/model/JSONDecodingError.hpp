// The one error of every JSON decoder in the model and the layers that persist it.
//
// A decoder fails on the first problem it meets; `key()` names the object key at fault (empty
// when the value itself is not an object) and `what()` is a one-line English description that
// names that key. Callers that load persisted records decide whether a failure drops one record
// or the whole file.
#pragma once

#include <stdexcept>
#include <string>

namespace quillet {

class JSONDecodingError : public std::runtime_error {
  public:
    enum class Kind {
        keyNotFound,   ///< a required key is missing
        valueNotFound, ///< a required key holds null
        typeMismatch,  ///< the JSON type is not the one expected (string for a number, ...)
        dataCorrupted, ///< the type is right but the value is not allowed (unknown enum name)
    };

    JSONDecodingError(Kind kind, std::string key, const std::string& description)
        : std::runtime_error(description), kind_(kind), key_(std::move(key)) {}

    Kind kind() const noexcept { return kind_; }
    const std::string& key() const noexcept { return key_; }

  private:
    Kind kind_;
    std::string key_;
};

} // namespace quillet
