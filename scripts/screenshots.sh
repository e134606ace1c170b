#!/usr/bin/env bash
# scripts/screenshots.sh OUTDIR   draws every section of the window, the settings window and a
# queue with finished, failed, running and waiting jobs, in English and Chinese, light and dark,
# into OUTDIR/*.png (Qt's offscreen platform: no display needed). Look at every picture.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
out=$(realpath -m "${1:?usage: scripts/screenshots.sh OUTDIR}")
mkdir -p "$out"
"$root/scripts/build.sh" quillet_screenshots
tour="$root/${QUILLET_BUILD_DIR:-build}/tests/quillet_screenshots"
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
status=0
for language in en zh_CN; do
    for look in light dark; do
        HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
            QT_QPA_PLATFORM=offscreen LANG=C.UTF-8 \
            "$tour" "$out" "$language" "$look" || status=1
    done
done
ls "$out"/*.png | wc -l | xargs echo "pictures in $out:"
exit $status
