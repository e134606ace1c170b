#!/usr/bin/env bash
# Times `quillet redact --preset email` on the 1,158-page Octave manual (Debian's octave-doc,
# fetched by bench/manuals.sh) against `mutool draw -F txt`, which only reads the same text: the
# redaction reads every page's text as well, removes what matches, writes the file and reads the
# redacted pages again to prove it. Prints the medians of three runs taken in turn, the ratio,
# and checks the output with qpdf --check and pdftotext (no address left).
#
#   bench/redact.sh [PDF]     (default: the Octave manual)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
source "$root/bench/manuals.sh"
quillet_built
work_folder

pdf=${1:-$(manual octave)}
pages=$(pdfinfo "$pdf" | awk '/^Pages:/ {print $2}')

# "seconds peak-KB" of one run.
measured() {
    /usr/bin/time -o "$work/time.txt" -f '%e %M' "$@" >/dev/null 2>&1
    cat "$work/time.txt"
}
ours() { measured "$quillet" redact "$pdf" --preset email -o "$work/redacted.pdf" --replace; }
theirs() { measured mutool draw -q -F txt -o "$work/text.txt" "$pdf"; }

read -r qs qk ms mk < <(in_turn 3 ours theirs)
"$quillet" redact "$pdf" --preset email -o "$work/redacted.pdf" --replace --json >"$work/result.json"
before=$(pdftotext "$pdf" - | grep -cE '[A-Za-z0-9._%+-]+@[A-Za-z0-9-]+(\.[A-Za-z0-9-]+)*\.[A-Za-z]{2,}' || true)
after=$(pdftotext "$work/redacted.pdf" - | grep -cE '[A-Za-z0-9._%+-]+@[A-Za-z0-9-]+(\.[A-Za-z0-9-]+)*\.[A-Za-z]{2,}' || true)
check=$(qpdf --check "$work/redacted.pdf" >/dev/null 2>&1 && echo clean || echo ERRORS)

printf 'document: %s (%s pages, %s bytes), %s cores\n' "$(basename "$pdf")" "$pages" \
    "$(stat -c %s "$pdf")" "$(nproc)"
printf 'quillet redact --preset email:  %6.2f s  (peak %s KB)  %s\n' "$qs" "$qk" "$(cat "$work/result.json")"
printf 'mutool draw -F txt:             %6.2f s  (peak %s KB)\n' "$ms" "$mk"
printf 'ratio quillet / mutool:         %6.2f (goal: at most 2.00)\n' "$(echo "$qs / $ms" | bc -l)"
printf 'lines with an address (pdftotext): %s before, %s after; qpdf --check: %s\n' "$before" "$after" "$check"
row "redact --preset email, $pages-page manual ($after addresses left, qpdf --check $check)" \
    "$qs" "$qk" "mutool draw -F txt" "$ms" "$mk" "<= 2.00"
