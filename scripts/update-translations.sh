#!/usr/bin/env bash
# Collects every tr() text of the app and its screens into translations/*.ts (Qt Linguist), keeping
# the translations already there. Translate the new entries, then build: CMake compiles the .ts
# files into the app.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
lupdate=$(command -v lupdate6 || echo /usr/lib/qt6/bin/lupdate)
"$lupdate" -no-obsolete -locations none -I "$root/QuilletKit" "$root/QuilletKit/app" "$root/QuilletKit/screens" \
    -ts "$root/translations/quillet_en.ts" "$root/translations/quillet_zh_CN.ts"
