#!/usr/bin/env bash
# ./run.sh ARGS...   builds Quillet (installing what is missing) and runs `quillet ARGS...`.
# ./run.sh           starts the desktop app when there is a display; without one, a short demo of
#                    the command line on the sample PDF that ships with the repository.
set -euo pipefail
root=$(cd "$(dirname "$0")" && pwd)
build="$root/${QUILLET_BUILD_DIR:-build}/QuilletKit"

if (($# > 0)); then
    "$root/scripts/build.sh" quillet
    exec "$build/quillet" "$@"
fi

"$root/scripts/build.sh" quillet quillet-app
if [[ -n "${DISPLAY:-}" || -n "${WAYLAND_DISPLAY:-}" ]]; then
    exec "$build/quillet-app"
fi
echo "No display (neither DISPLAY nor WAYLAND_DISPLAY is set): showing the command line instead of the app."
quillet="$build/quillet"

sample="$root/samples/sample.pdf"
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
echo "\$ quillet info samples/sample.pdf"
"$quillet" info "$sample" || true
echo "\$ quillet compress samples/sample.pdf -o $out/sample-compressed.pdf"
"$quillet" compress "$sample" -o "$out/sample-compressed.pdf" || true
