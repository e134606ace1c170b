#!/usr/bin/env bash
# ./run.sh ARGS...   builds Quillet (installing what is missing) and runs `quillet ARGS...`.
# ./run.sh           a short demo on the sample PDF that ships with the repository.
set -euo pipefail
root=$(cd "$(dirname "$0")" && pwd)
"$root/scripts/build.sh" quillet
quillet="$root/${QUILLET_BUILD_DIR:-build}/QuilletKit/quillet"

if (($# > 0)); then
    exec "$quillet" "$@"
fi

sample="$root/samples/sample.pdf"
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
echo "\$ quillet info samples/sample.pdf"
"$quillet" info "$sample" || true
echo "\$ quillet compress samples/sample.pdf -o $out/sample-compressed.pdf"
"$quillet" compress "$sample" -o "$out/sample-compressed.pdf" || true
