#!/usr/bin/env bash
# Times `quillet convert --dpi 150` (PNG) against `mutool draw -r 150` and `pdftoppm -r 150 -png`
# on the same 60 text pages (goal: at most 0.6x mutool's wall time, both cores), median of three
# runs each, with the peak memory and the size of what each wrote. Then converts the same pages
# repeated to 120 and 480 pages to show that our peak memory does not grow with the page count.
#
# The documents are cut from the shared corpus at run time; nothing is committed. mutool is only
# the yardstick here: it is installed for the comparison when missing.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
quillet_built
command -v mutool >/dev/null || { apt-get install -y -qq --no-install-recommends mupdf-tools >/dev/null; }
corpus="$root/../shared/corpus"
work_folder

thesis="$corpus/009-pdflatex-geotopo/GeoTopo-komprimiert.pdf"
qpdf --empty --pages "$thesis" 1-60 -- "$work/p60.pdf"
# The same 60 pages repeated: any growth in memory is then due to the page count alone.
qpdf --empty --pages "$work/p60.pdf" "$work/p60.pdf" -- "$work/p120.pdf"
qpdf --empty --pages "$work/p120.pdf" "$work/p120.pdf" "$work/p120.pdf" "$work/p120.pdf" \
    -- "$work/p480.pdf"

# "seconds peak-KB" of one run, each into an empty folder.
measure() {
    rm -rf "$work/out" && mkdir "$work/out"
    /usr/bin/time -o "$work/time" -f "%e %M" "$@" >/dev/null 2>&1
    cat "$work/time"
}
# Median wall time (and the peak memory of that run) of three runs.
median() {
    for _ in 1 2 3; do measure "$@"; done | sort -n | sed -n 2p
}
folderBytes() { du -sb "$work/out" | cut -f1; }
ratio() { echo "scale=2; $1 / $2" | bc; }

printf 'machine: %s cores, %s\n' "$(nproc)" "$(uname -m)"
printf 'input: 60 text pages, %s bytes\n\n' "$(stat -c %s "$work/p60.pdf")"

ours() { measure "$quillet" convert "$work/p60.pdf" --dpi 150 -o "$work/out"; }
mutool_draw() { measure mutool draw -q -r 150 -o "$work/out/out%d.png" "$work/p60.pdf"; }
read -r q_time q_mem m_time m_mem < <(in_turn 3 ours mutool_draw)
ours >/dev/null
q_bytes=$(folderBytes)
mutool_draw >/dev/null
m_bytes=$(folderBytes)
read -r p_time p_mem < <(median pdftoppm -r 150 -png "$work/p60.pdf" "$work/out/page")
p_bytes=$(folderBytes)

printf '%-9s %7s %9s %12s\n' tool seconds peak-KB png-bytes
printf '%-9s %7s %9s %12s\n' quillet "$q_time" "$q_mem" "$q_bytes"
printf '%-9s %7s %9s %12s\n' mutool "$m_time" "$m_mem" "$m_bytes"
printf '%-9s %7s %9s %12s\n' pdftoppm "$p_time" "$p_mem" "$p_bytes"
printf '\nquillet / mutool:   %s (goal <= 0.60)\n' "$(ratio "$q_time" "$m_time")"
printf 'quillet / pdftoppm: %s\n' "$(ratio "$q_time" "$p_time")"
row "convert, 60 text pages at 150 DPI to PNG" "$q_time" "$q_mem" "mutool draw -r 150" "$m_time" "$m_mem" "<= 0.60"
row "convert, 60 text pages at 150 DPI to PNG" "$q_time" "$q_mem" "pdftoppm -r 150 -png" "$p_time" "$p_mem" "-"

printf '\npeak memory of quillet by page count (one run each; must not grow with the count):\n'
printf '  60 pages: %sKB\n' "$q_mem"
for pages in 120 480; do
    read -r l_time l_mem < <(measure "$quillet" convert "$work/p$pages.pdf" --dpi 150 -o "$work/out")
    printf '  %s pages: %sKB (%ss)\n' "$pages" "$l_mem" "$l_time"
done
