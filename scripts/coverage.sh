#!/usr/bin/env bash
# scripts/coverage.sh   line coverage of QuilletKit/ by the whole test suite: builds in
# build-coverage/ (GCC --coverage, no optimisation), runs every test through CTest, and prints
# gcovr's summary. The figure is the "lines:" percentage; run it before and after a change to tests.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
./scripts/install-deps.sh
command -v gcovr >/dev/null || apt-get install -y -qq --no-install-recommends gcovr >/dev/null
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=1
dir=build-coverage
if [[ ! -f "$dir/build.ninja" ]]; then
    cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
        -DCMAKE_CXX_FLAGS="--coverage -O0" -DCMAKE_C_FLAGS="--coverage -O0" \
        -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage >/dev/null
fi
cmake --build "$dir" --parallel "$(nproc)" >"$dir/build.log" 2>&1 || { tail -40 "$dir/build.log" >&2; exit 1; }
find "$dir" -name '*.gcda' -delete
(cd "$dir" && ctest --parallel "$(nproc)" --timeout 600 >ctest.log 2>&1) || echo "some tests failed; see $dir/ctest.log" >&2
gcovr --root "$root" --filter "$root/QuilletKit/" --object-directory "$dir" --print-summary \
    --exclude-unreachable-branches -o "$dir/coverage.txt" "$dir" | tail -3
