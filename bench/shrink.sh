#!/usr/bin/env bash
# bench/shrink.sh [QUILLET]: compresses the born-digital set of bench/shrink-set.sh with
# Quillet's lossless and balanced tiers (QUILLET_SHRINK_TIERS="lossless balanced high smallest"
# for all four), Ghostscript's /ebook and qpdf, and prints the comparison that
# docs/benchmarks.md shows (bench/shrink.py says what each column means). Needs ghostscript,
# poppler-utils, python3-numpy and, to build the office documents, libreoffice-writer-nogui.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
quillet=${1:-$root/build/QuilletKit/quillet}
set_dir=$("$root/bench/shrink-set.sh")
exec /usr/bin/python3 "$root/bench/shrink.py" "$set_dir" "$quillet"
