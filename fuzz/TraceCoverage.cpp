// Edge coverage for a GCC build: GCC calls __sanitizer_cov_trace_pc on every edge, and this
// hook counts the calling address, hashed, in libFuzzer's extra counters. Collisions only make
// the coverage a little coarser.
#include <cstdint>

namespace {

constexpr std::uintptr_t counterCount = 1 << 17;

__attribute__((section("__libfuzzer_extra_counters"), used)) std::uint8_t counters[counterCount];

} // namespace

extern "C" __attribute__((no_sanitize_coverage)) void __sanitizer_cov_trace_pc() {
    const auto pc = reinterpret_cast<std::uintptr_t>(__builtin_return_address(0));
    auto& counter = counters[(pc ^ (pc >> 17)) % counterCount];
    counter = static_cast<std::uint8_t>(counter + 1);
}

// GCC also traces floating-point comparisons, which libFuzzer does not take.
extern "C" __attribute__((no_sanitize_coverage)) void __sanitizer_cov_trace_cmpf(float, float) {}
extern "C" __attribute__((no_sanitize_coverage)) void __sanitizer_cov_trace_cmpd(double, double) {}
