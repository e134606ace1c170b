#!/usr/bin/env bash
# Times `quillet split` (every page) against `qpdf --split-pages` on the 311-page gnuplot manual
# (Debian's gnuplot-doc, fetched by bench/manuals.sh), prints the median of five runs of each and their ratio, and the
# peak memory of both on that document and on one three times as long (memory must not grow with
# the page count).
#
#   bench/split.sh [PDF]     (default: the gnuplot manual)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
source "$root/bench/manuals.sh"
quillet_built
work_folder

pdf=${1:-$(manual gnuplot)}
long="$work/long.pdf"
qpdf --empty --pages "$pdf" "$pdf" "$pdf" -- "$long"
pages() { pdfinfo "$1" | awk '/^Pages:/ {print $2}'; }

# Each run writes into a fresh, empty folder; emptying it is not timed.
ours() { "$quillet" split "$1" -o "$work/out"; }
theirs() { mkdir -p "$work/out" && qpdf "$1" --split-pages "$work/out/part.pdf"; }

# Wall time in seconds of one run of the command given as arguments. Before it the previous
# run's parts are removed and the disk is given time to settle (sync), so that no run pays for
# writing back what the one before left behind.
timed() {
    rm -rf "$work/out"
    sync
    local start end
    start=$(date +%s.%N)
    "$@" >/dev/null 2>&1
    end=$(date +%s.%N)
    echo "$end - $start" | bc
}
median() { sort -n | sed -n 3p; }

# The two tools take turns, so that both meet the same load from anything else on the machine.
ours_times=()
theirs_times=()
for _ in 1 2 3 4 5; do
    ours_times+=("$(timed ours "$pdf")")
    theirs_times+=("$(timed theirs "$pdf")")
done
ours_s=$(printf '%s\n' "${ours_times[@]}" | median)
theirs_s=$(printf '%s\n' "${theirs_times[@]}" | median)

# Peak resident memory in KB of one run; /usr/bin/time writes it to a file of its own so that the
# command's progress output cannot mix into it.
peak() {
    rm -rf "$work/out"
    mkdir -p "$work/out"
    /usr/bin/time -o "$work/time.txt" -f %M "$@" >/dev/null 2>&1
    cat "$work/time.txt"
}
peak_ours() { peak "$quillet" split "$1" -o "$work/out"; }
peak_theirs() { peak qpdf "$1" --split-pages "$work/out/part.pdf"; }

printf 'document: %s (%s pages, %s bytes), %s cores\n' "$(basename "$pdf")" "$(pages "$pdf")" \
    "$(stat -c %s "$pdf")" "$(nproc)"
ours_kb=$(peak_ours "$pdf")
theirs_kb=$(peak_theirs "$pdf")
printf 'quillet split:            %6.3f s  (peak %s KB; %s KB at %s pages)\n' "$ours_s" \
    "$ours_kb" "$(peak_ours "$long")" "$(pages "$long")"
printf 'qpdf --split-pages:       %6.3f s  (peak %s KB; %s KB at %s pages)\n' "$theirs_s" \
    "$theirs_kb" "$(peak_theirs "$long")" "$(pages "$long")"
printf 'ratio quillet / qpdf:     %6.2f (goal: at most 1.50)\n' "$(echo "$ours_s / $theirs_s" | bc -l)"
row "split every page, $(pages "$pdf") pages" "$ours_s" "$ours_kb" "qpdf --split-pages" "$theirs_s" "$theirs_kb" "<= 1.50"
