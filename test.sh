#!/usr/bin/env bash
# ./test.sh   installs what is missing, builds everything and runs every test through CTest.
# ./test.sh --sanitize   the same with AddressSanitizer and UndefinedBehaviorSanitizer, in
#                        build-sanitize/. GCC, not clang: clang 14 with libstdc++ 12 rejects qpdf 11.3's
#                        JSON.hh in C++20 mode (a vector of a type still incomplete).
set -euo pipefail
root=$(cd "$(dirname "$0")" && pwd)
cd "$root"
start=$(date +%s)
if [[ "${1:-}" == "--sanitize" ]]; then
    export QUILLET_BUILD_DIR=build-sanitize
    export UBSAN_OPTIONS=print_stacktrace=1
    export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"
    ./scripts/install-deps.sh
    if [[ ! -f "$QUILLET_BUILD_DIR/build.ninja" ]]; then
        mkdir -p "$QUILLET_BUILD_DIR"
        cmake -S . -B "$QUILLET_BUILD_DIR" -G Ninja \
            -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLET_SANITIZE=ON \
            >"$QUILLET_BUILD_DIR/build.log" 2>&1 || { cat "$QUILLET_BUILD_DIR/build.log" >&2; exit 1; }
    fi
fi
./scripts/build.sh
echo "build finished in $(( $(date +%s) - start )) s"
cd "${QUILLET_BUILD_DIR:-build}"
ctest --output-on-failure --parallel "$(nproc)" --timeout 300
