// An environment variable set for the life of a scope (TZ, TMPDIR, XDG_DATA_HOME, ...) and put
// back as it was afterwards, so a test never leaves its settings to the next.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace quillet::test {

class ScopedEnv {
  public:
    ScopedEnv(const char* name, const std::string& value) : name_(name) {
        if (const char* current = std::getenv(name)) {
            saved_ = current;
        }
        ::setenv(name, value.c_str(), 1);
        ::tzset(); // a changed TZ reaches localtime and mktime only through tzset
    }
    ~ScopedEnv() {
        saved_ ? ::setenv(name_, saved_->c_str(), 1) : ::unsetenv(name_);
        ::tzset();
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

  private:
    const char* name_;
    std::optional<std::string> saved_;
};

} // namespace quillet::test
