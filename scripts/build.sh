#!/usr/bin/env bash
# Installs what is missing, configures (Release, Ninja, ccache) and builds the given targets
# incrementally in build/. The build log is shown only when the build fails.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
./scripts/install-deps.sh
# Compiler cache keys relative to the checkout, so that a fresh clone elsewhere (as CI makes)
# reuses what an earlier build compiled.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=1

build_dir=${QUILLET_BUILD_DIR:-build}
mkdir -p "$build_dir"
log="$build_dir/build.log"
if [[ ! -f "$build_dir/build.ninja" ]]; then
    cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
fi
cmake --build "$build_dir" --parallel "$(nproc)" ${1:+--target "$@"} >"$log" 2>&1 || {
    grep -E -A5 'error|Error' "$log" | tail -60 >&2
    echo "build failed; the whole log is in $log" >&2
    exit 1
}
