#!/usr/bin/env bash
# Times `quillet info` against `pdfimages -list` + `pdffonts` (run one after the other, as the
# two together give what our one report shows) on a 1,053-page document built from the shared
# corpus, and prints the median of five runs of each and their ratio.
#
#   bench/info.sh [PDF]     (default: nine copies of the corpus's 117-page thesis, joined)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
quillet_built
work_folder

pdf=${1:-}
if [[ -z "$pdf" ]]; then
    source_pdf="$root/../shared/corpus/009-pdflatex-geotopo/GeoTopo-komprimiert.pdf"
    pdf="$work/manual.pdf"
    qpdf --empty --pages $(for _ in 1 2 3 4 5 6 7 8 9; do echo "$source_pdf"; done) -- "$pdf"
fi
pages=$(pdfinfo "$pdf" | awk '/^Pages:/ {print $2}')

# Median wall time in seconds of five runs of the command given as arguments.
median() {
    local times=()
    for _ in 1 2 3 4 5; do
        local start end
        start=$(date +%s.%N)
        "$@" >/dev/null 2>&1
        end=$(date +%s.%N)
        times+=("$(echo "$end - $start" | bc)")
    done
    printf '%s\n' "${times[@]}" | sort -n | sed -n 3p
}
peers() { pdfimages -list "$1" && pdffonts "$1"; }

ours=$(median "$quillet" info "$pdf")
theirs=$(median peers "$pdf")
ours_kb=$( { /usr/bin/time -f %M "$quillet" info "$pdf" >/dev/null; } 2>&1 | tail -1)
printf 'document: %s (%s pages, %s bytes), %s cores\n' "$(basename "$pdf")" "$pages" "$(stat -c %s "$pdf")" "$(nproc)"
printf 'quillet info:                %6.3f s  (peak %s KB)\n' "$ours" "$ours_kb"
printf 'pdfimages -list + pdffonts:  %6.3f s\n' "$theirs"
printf 'ratio quillet / peers:       %6.2f (goal: at most 1.00)\n' "$(echo "$ours / $theirs" | bc -l)"
row "info, $pages pages" "$ours" "$ours_kb" "pdfimages -list + pdffonts" "$theirs" "-" "<= 1.00"
