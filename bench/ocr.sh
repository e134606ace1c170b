#!/usr/bin/env bash
# `quillet ocr` against OCRmyPDF (Debian's ocrmypdf, default settings), which drives the same
# Tesseract, on a 20-page 300-DPI scan of a typeset manual: pages 20-39 of the Octave manual
# (bench/manuals.sh) rendered to JPEG (quality 90) and stored unchanged, as a scanner does.
# Goals: at most 0.6x the peer's wall time; recall of the words pdftotext reads from the output
# against the manual's own text layer of those pages at least 99% (words are runs of letters and
# digits, compared without regard to case, each counted as often as it occurs); output at most
# 1.02x the input; qpdf --check clean. Median of three runs each, taking turns.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
source "$root/bench/manuals.sh"
quillet_built
command -v ocrmypdf >/dev/null || apt-get install -y -qq --no-install-recommends ocrmypdf >/dev/null
manual=$(manual octave)
work_folder

pdftoppm -r 300 -jpeg -jpegopt quality=90 -f 20 -l 39 "$manual" "$work/page"
python3 "$root/bench/make-scan.py" "$work/scan.pdf" --dpi 300 "$work"/page-*.jpg

recall() {
    python3 - "$manual" "$1" <<'PY'
import collections, re, subprocess, sys
def words(pdf, pages=()):
    out = subprocess.run(["pdftotext", *pages, pdf, "-"], capture_output=True, text=True).stdout
    return collections.Counter(w.lower() for w in re.findall(r"[^\W_]+", out))
original = words(sys.argv[1], ("-f", "20", "-l", "39"))
seen = words(sys.argv[2])
print(f"{100 * sum(min(n, seen[w]) for w, n in original.items()) / sum(original.values()):.1f}")
PY
}
measure() {
    /usr/bin/time -o "$work/time" -f "%e %M" "$@" >/dev/null 2>&1
    cat "$work/time"
}
ours=()
theirs=()
for _ in 1 2 3; do
    rm -f "$work/q.pdf" "$work/p.pdf"
    ours+=("$(measure "$quillet" ocr "$work/scan.pdf" -o "$work/q.pdf")")
    theirs+=("$(measure ocrmypdf "$work/scan.pdf" "$work/p.pdf")")
done
read -r q_time q_mem < <(printf '%s\n' "${ours[@]}" | sort -n | sed -n 2p)
read -r p_time p_mem < <(printf '%s\n' "${theirs[@]}" | sort -n | sed -n 2p)
size() { stat -c %s "$1"; }
checked() { qpdf --check "$1" >/dev/null 2>&1 && echo clean || echo "NOT clean"; }
q_recall=$(recall "$work/q.pdf")
p_recall=$(recall "$work/p.pdf")
growth=$(echo "scale=4; $(size "$work/q.pdf") / $(size "$work/scan.pdf")" | bc)

printf 'scan: 20 pages, %s bytes; %s cores\n' "$(size "$work/scan.pdf")" "$(nproc)"
printf 'quillet ocr: %ss %sKB, recall %s%%, size %sx the input, qpdf --check %s\n' \
    "$q_time" "$q_mem" "$q_recall" "$growth" "$(checked "$work/q.pdf")"
printf 'ocrmypdf:    %ss %sKB, recall %s%%, size %sx the input\n' "$p_time" "$p_mem" "$p_recall" \
    "$(echo "scale=4; $(size "$work/p.pdf") / $(size "$work/scan.pdf")" | bc)"
printf 'time ratio:  %s (goal <= 0.60)\n' "$(echo "scale=2; $q_time / $p_time" | bc)"
row "ocr, 20-page 300-DPI scan (recall ${q_recall}% vs ${p_recall}%, size ${growth}x, qpdf --check $(checked "$work/q.pdf"))" \
    "$q_time" "$q_mem" "ocrmypdf" "$p_time" "$p_mem" "<= 0.60"
