#!/usr/bin/env bash
# `compress --under` on three kinds of document, three targets each: where each result lands as
# a share of its target (goal: 85-100%, or a best-effort result when even the lowest setting is
# over), and how many candidate documents were built to get there (read from the temporary files
# the command creates, so that the count is observed rather than reported by the program):
#   - scan: pages 1-20 of the corpus's thesis rendered at 300 DPI to JPEG (quality 95) and
#     stored unchanged, as a scanner does (the compression benchmark's scan);
#   - mixed: 60 text pages of the thesis followed by 8 pages of that scan;
#   - photo book: 12 full-page photographs (the corpus's photos at four sizes, 300 DPI).
# Inputs are made at run time; nothing is committed.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
quillet_built
command -v strace >/dev/null || apt-get install -y -qq --no-install-recommends strace >/dev/null
corpus="$root/../shared/corpus"
thesis="$corpus/009-pdflatex-geotopo/GeoTopo-komprimiert.pdf"
work_folder

pdftoppm -r 300 -jpeg -jpegopt quality=95 -f 1 -l 20 "$thesis" "$work/page"
python3 "$root/bench/make-scan.py" "$work/scan.pdf" --dpi 300 "$work"/page-*.jpg
qpdf --empty --pages "$thesis" 1-60 "$work/scan.pdf" 1-8 -- "$work/mixed.pdf"
pdfimages -png "$corpus/018-base64-image/base64image.pdf" "$work/p018"
pdfimages -png "$corpus/023-cmyk-image/cmyk-image.pdf" "$work/p023"
pdfimages -png "$corpus/003-pdflatex-image/pdflatex-image.pdf" "$work/p003"
"$quillet" images "$work/p018-000.png" "$work/p023-000.png" "$work/p003-000.png" \
    -o "$work/photos.pdf" >/dev/null
for side in 2000 2300 2600 2900; do
    pdftoppm -scale-to "$side" -jpeg -jpegopt quality=92 "$work/photos.pdf" "$work/photo$side"
done
python3 "$root/bench/make-scan.py" "$work/book.pdf" --dpi 300 "$work"/photo[0-9]*.jpg

mb() { echo "scale=2; $1 / 1048576" | bc; }
printf 'machine: %s cores\n' "$(nproc)"
printf '%-12s %8s %8s %12s %7s %7s %s\n' document input target result share builds status
for spec in "scan 2 5 10" "mixed 1.5 3 5" "book 2 3 5"; do
    read -r name targets <<<"$spec"
    input="$work/$name.pdf"
    [[ "$name" == book ]] && label="photo book" || label=$name
    for target in $targets; do
        rm -f "$work/out.pdf"
        # Every candidate is a fresh "quillet-*.pdf" in the temporary folder.
        TMPDIR="$work" strace -f -qq -e trace=openat -o "$work/trace" \
            "$quillet" compress "$input" --under "${target}MB" -o "$work/out.pdf" >"$work/said" 2>&1 || true
        builds=$(grep -c 'quillet-[^"]*\.pdf", O_WRONLY|O_CREAT|O_EXCL' "$work/trace" || true)
        bytes=$(stat -c %s "$work/out.pdf" 2>/dev/null || echo 0)
        share=$(echo "scale=1; 100 * $bytes / ($target * 1048576)" | bc)
        status=ok
        grep -qi "best effort\|could not reach\|smallest" "$work/said" && status="best effort"
        printf '%-12s %7sM %7sM %11sM %6s%% %7s %s\n' "$label" "$(mb "$(stat -c %s "$input")")" \
            "$target" "$(mb "$bytes")" "$share" "$builds" "$status"
        row "compress --under ${target}MB, $label of $(mb "$(stat -c %s "$input")") MB: ${share}% of target, $builds builds ($status)" \
            "-" "-" "target ${target} MB" "-" "-" "85-100% of target"
    done
done
