#!/usr/bin/env bash
# Compression against its peers, on the same files in one run:
#   - `compress -t balanced` against Ghostscript's /ebook on a 20-page 300-DPI scan
#     (goal: at most half of Ghostscript's wall time, both cores, and a peak under 120 MB);
#   - `compress -t lossless` on the 1,158-page Octave manual against `qpdf --object-streams=generate
#     --recompress-flate --compression-level=9` (sizes; qpdf only rewrites) and against
#     Ghostscript's /ebook, which like the lossless tier converts Type 1 fonts to CFF and keeps
#     only the glyphs shown (goal: no more time than Ghostscript; peak memory within 1.5x qpdf's).
# The scan is made at run time from the shared corpus (pages rendered to JPEG at 300 DPI, stored
# unchanged in a PDF, as a scanner does); the manual comes from Debian's octave-doc package
# (bench/manuals.sh). Nothing is committed. Target sizes: bench/target-size.sh.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
source "$root/bench/manuals.sh"
quillet_built
command -v gs >/dev/null || { apt-get install -y -qq --no-install-recommends ghostscript >/dev/null; }
corpus="$root/../shared/corpus"
work_folder

pdftoppm -r 300 -jpeg -jpegopt quality=95 -f 1 -l 20 \
    "$corpus/009-pdflatex-geotopo/GeoTopo-komprimiert.pdf" "$work/page"
python3 "$root/bench/make-scan.py" "$work/scan.pdf" --dpi 300 "$work"/page-*.jpg
text=$(manual octave)

# "seconds peak-KB" of one run.
measure() {
    /usr/bin/time -o "$work/time" -f "%e %M" "$@" >/dev/null 2>&1
    cat "$work/time"
}
size() { stat -c %s "$1"; }
ratio() { echo "scale=2; $1 / $2" | bc; }

printf 'machine: %s cores, %s\n' "$(nproc)" "$(uname -m)"
printf 'scan: 20 pages, %s bytes\n\n' "$(size "$work/scan.pdf")"

balanced() { rm -f "$work/q.pdf"; measure "$quillet" compress "$work/scan.pdf" -t balanced -o "$work/q.pdf"; }
ebook() {
    measure gs -q -dNOPAUSE -dBATCH -dSAFER -sDEVICE=pdfwrite -dPDFSETTINGS=/ebook \
        -sOutputFile="$work/g.pdf" "$work/scan.pdf"
}
read -r q_time q_mem g_time g_mem < <(in_turn 5 balanced ebook)
printf 'balanced vs gs /ebook:  quillet %ss %sKB -> %s bytes | gs %ss %sKB -> %s bytes | time ratio %s (goal <= 0.50)\n' \
    "$q_time" "$q_mem" "$(size "$work/q.pdf")" "$g_time" "$g_mem" "$(size "$work/g.pdf")" "$(ratio "$q_time" "$g_time")"
row "compress -t balanced, 20-page 300-DPI scan ($(size "$work/scan.pdf") bytes)" "$q_time" "$q_mem" "gs -dPDFSETTINGS=/ebook" "$g_time" "$g_mem" "<= 0.50" "< 120 MB"

lossless() { rm -f "$work/ql.pdf"; measure "$quillet" compress "$text" -t lossless -o "$work/ql.pdf"; }
recompress() {
    measure qpdf --object-streams=generate --recompress-flate --compression-level=9 "$text" \
        "$work/qp.pdf"
}
read -r ql_time ql_mem qp_time qp_mem < <(in_turn 3 lossless recompress)
ql_size=$( [[ -f "$work/ql.pdf" ]] && size "$work/ql.pdf" || size "$text")
manual_ebook() {
    measure gs -q -dNOPAUSE -dBATCH -dSAFER -sDEVICE=pdfwrite -dPDFSETTINGS=/ebook \
        -sOutputFile="$work/gm.pdf" "$text"
}
read -r ql2_time ql2_mem gm_time gm_mem < <(in_turn 3 lossless manual_ebook)
printf 'lossless vs qpdf:       quillet %ss %sKB -> %s bytes | qpdf %ss %sKB -> %s bytes | size ratio %s, memory ratio %s (goal <= 1.5)\n' \
    "$ql_time" "$ql_mem" "$ql_size" "$qp_time" "$qp_mem" "$(size "$work/qp.pdf")" \
    "$(echo "scale=4; $ql_size / $(size "$work/qp.pdf")" | bc)" "$(ratio "$ql_mem" "$qp_mem")"
printf 'lossless vs gs /ebook:  quillet %ss -> %s bytes | gs %ss -> %s bytes | time ratio %s (goal <= 1.0)\n' \
    "$ql2_time" "$ql_size" "$gm_time" "$(size "$work/gm.pdf")" "$(ratio "$ql2_time" "$gm_time")"
row "compress -t lossless, 1,158-page manual (size: $(echo "scale=3; $ql_size / $(size "$work/qp.pdf")" | bc) of qpdf's)" \
    "$ql_time" "$ql_mem" "qpdf --object-streams=generate --recompress-flate --compression-level=9" \
    "$qp_time" "$qp_mem" "-" "<= 1.50"
row "compress -t lossless, 1,158-page manual (size: $(echo "scale=3; $ql_size / $(size "$work/gm.pdf")" | bc) of Ghostscript's)" \
    "$ql2_time" "$ql2_mem" "gs -dPDFSETTINGS=/ebook" "$gm_time" "$gm_mem" "<= 1.00"
