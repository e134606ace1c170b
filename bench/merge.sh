#!/usr/bin/env bash
# Merge and images-to-PDF against their peers, on the same files in one run:
#   - `merge` of a ~1,170-page and a ~350-page document against `qpdf --empty --pages`
#     (goal: at most 1.2x qpdf's wall time);
#   - `images` of 20 scanned JPEGs against img2pdf (goal: at most 1.0x img2pdf's wall time, with
#     the JPEG bytes inside both PDFs identical to the input files).
# Median wall time of five runs each, taken in turns, with the peak memory of that run. The inputs are made at
# run time from the shared corpus (copies of its 117-page thesis joined; its pages rendered to
# JPEG at 300 DPI); nothing is committed.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
quillet_built
command -v img2pdf >/dev/null || apt-get install -y -qq --no-install-recommends img2pdf >/dev/null
thesis="$root/../shared/corpus/009-pdflatex-geotopo/GeoTopo-komprimiert.pdf"
work_folder

copies() { for _ in $(seq "$1"); do echo "$thesis"; done; }
qpdf --empty --pages $(copies 10) -- "$work/big.pdf"
qpdf --empty --pages $(copies 3) -- "$work/small.pdf"
pdftoppm -r 300 -jpeg -jpegopt quality=90 -f 1 -l 20 "$thesis" "$work/scan"
scans=("$work"/scan-*.jpg)

# "seconds peak-KB" of one run; the output named first is removed before it (merge and images
# refuse to overwrite a file).
measure() {
    local output=$1
    shift
    rm -f "$output"
    /usr/bin/time -o "$work/time" -f "%e %M" "$@" >/dev/null 2>&1
    cat "$work/time"
}
ratio() { echo "scale=2; $1 / $2" | bc; }
pages() { pdfinfo "$1" | awk '/^Pages:/ {print $2}'; }

# "yes" when the raw data of the image on each page equals the JPEG file given for that page.
same_jpegs() {
    local pdf=$1
    shift
    local ids
    mapfile -t ids < <(pdfimages -list "$pdf" | awk 'NR > 2 {print $11}')
    [[ ${#ids[@]} -eq $# ]] || { echo "no (${#ids[@]} images for $# files)"; return; }
    local k=0
    for file in "$@"; do
        qpdf --show-object="${ids[$k]}" --raw-stream-data "$pdf" | cmp -s - "$file" ||
            { echo "no ($(basename "$file") differs)"; return; }
        k=$((k + 1))
    done
    echo yes
}

printf 'machine: %s cores, %s\n' "$(nproc)" "$(uname -m)"
printf 'merge inputs: %s + %s pages; images: %s JPEGs, %s bytes\n\n' "$(pages "$work/big.pdf")" \
    "$(pages "$work/small.pdf")" "${#scans[@]}" "$(cat "${scans[@]}" | wc -c)"

ours_merge() { measure "$work/q.pdf" "$quillet" merge "$work/big.pdf" "$work/small.pdf" -o "$work/q.pdf"; }
qpdf_merge() { measure "$work/p.pdf" qpdf --empty --pages "$work/big.pdf" "$work/small.pdf" -- "$work/p.pdf"; }
read -r q_time q_mem p_time p_mem < <(in_turn 5 ours_merge qpdf_merge)
printf 'merge vs qpdf:     quillet %ss %sKB -> %s pages | qpdf %ss %sKB -> %s pages | time ratio %s (goal <= 1.2)\n' \
    "$q_time" "$q_mem" "$(pages "$work/q.pdf")" "$p_time" "$p_mem" "$(pages "$work/p.pdf")" \
    "$(ratio "$q_time" "$p_time")"
row "merge, $(pages "$work/q.pdf") pages from two files" "$q_time" "$q_mem" "qpdf --empty --pages" "$p_time" "$p_mem" "<= 1.20"

ours_images() { measure "$work/qi.pdf" "$quillet" images "${scans[@]}" -o "$work/qi.pdf"; }
their_images() { measure "$work/i.pdf" img2pdf -o "$work/i.pdf" "${scans[@]}"; }
read -r qi_time qi_mem i_time i_mem < <(in_turn 5 ours_images their_images)
printf 'images vs img2pdf: quillet %ss %sKB | img2pdf %ss %sKB | time ratio %s (goal <= 1.0)\n' \
    "$qi_time" "$qi_mem" "$i_time" "$i_mem" "$(ratio "$qi_time" "$i_time")"
printf '                   JPEG bytes identical: quillet %s, img2pdf %s\n' \
    "$(same_jpegs "$work/qi.pdf" "${scans[@]}")" "$(same_jpegs "$work/i.pdf" "${scans[@]}")"
row "images, ${#scans[@]} JPEGs (bytes kept: $(same_jpegs "$work/qi.pdf" "${scans[@]}"))" "$qi_time" "$qi_mem" "img2pdf" "$i_time" "$i_mem" "<= 1.00"
