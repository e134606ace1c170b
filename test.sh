#!/usr/bin/env bash
# ./test.sh   installs what is missing, builds everything and runs every test through CTest.
set -euo pipefail
root=$(cd "$(dirname "$0")" && pwd)
cd "$root"
start=$(date +%s)
./scripts/build.sh
echo "build finished in $(( $(date +%s) - start )) s"
cd "${QUILLET_BUILD_DIR:-build}"
ctest --output-on-failure --parallel "$(nproc)" --timeout 300
