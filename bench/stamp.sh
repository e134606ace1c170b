#!/usr/bin/env bash
# Times `quillet stamp --page-numbers "Page {n} of {total}"` on the first 1,000 pages of the Octave
# manual (Debian's octave-doc, fetched by bench/manuals.sh) against `qpdf --overlay`, which puts
# one ready-made page (a "Page 1 of 1" made by quillet stamp on a blank page) over every page:
# the stamp shapes and embeds its text, numbers each page, writes the file and reads it again.
# Prints the medians of three runs taken in turn, the ratio, and checks the output with
# qpdf --check and pdftotext (page 500 reads "Page 500 of 1000").
#
#   bench/stamp.sh [PDF]     (default: the Octave manual; its first 1,000 pages are taken)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
source "$root/bench/manuals.sh"
quillet_built
work_folder

source_pdf=${1:-$(manual octave)}
pdf="$work/thousand.pdf"
source_pages=$(pdfinfo "$source_pdf" | awk '/^Pages:/ {print $2}')
qpdf --empty --pages "$source_pdf" "1-$((source_pages < 1000 ? source_pages : 1000))" -- "$pdf"
pages=$(pdfinfo "$pdf" | awk '/^Pages:/ {print $2}')
middle=$(((pages + 1) / 2))

# A blank letter page, written out with its cross-reference table.
blank_pdf() {
    local LC_ALL=C body="%PDF-1.4"$'\n' offsets=() i
    local objects=("<< /Type /Catalog /Pages 2 0 R >>" "<< /Type /Pages /Kids [3 0 R] /Count 1 >>"
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] >>")
    for i in "${!objects[@]}"; do
        offsets+=("${#body}")
        body+="$((i + 1)) 0 obj"$'\n'"${objects[i]}"$'\n'"endobj"$'\n'
    done
    local xref=${#body}
    body+="xref"$'\n'"0 4"$'\n'"0000000000 65535 f "$'\n'
    for i in "${offsets[@]}"; do body+=$(printf '%010d 00000 n ' "$i")$'\n'; done
    body+="trailer"$'\n'"<< /Size 4 /Root 1 0 R >>"$'\n'"startxref"$'\n'"$xref"$'\n'"%%EOF"$'\n'
    printf '%s' "$body" >"$1"
}
blank_pdf "$work/blank.pdf"
"$quillet" stamp "$work/blank.pdf" --page-numbers "Page {n} of {total}" -o "$work/one-page.pdf" >/dev/null

# "seconds peak-KB" of one run.
measured() {
    /usr/bin/time -o "$work/time.txt" -f '%e %M' "$@" >/dev/null 2>&1
    cat "$work/time.txt"
}
ours() { measured "$quillet" stamp "$pdf" --page-numbers "Page {n} of {total}" -o "$work/out.pdf"; }
theirs() { measured qpdf "$pdf" --overlay "$work/one-page.pdf" --repeat=1 -- "$work/overlaid.pdf"; }

read -r qs qk ps pk < <(in_turn 3 ours theirs)
"$quillet" stamp "$pdf" --page-numbers "Page {n} of {total}" -o "$work/out.pdf" >"$work/result.txt"
found=$(pdftotext -f "$middle" -l "$middle" "$work/out.pdf" - | grep -c "Page $middle of $pages" || true)
check=$(qpdf --check "$work/out.pdf" >/dev/null 2>&1 && echo clean || echo ERRORS)

printf 'document: first %s pages of %s (%s bytes), %s cores\n' "$pages" "$(basename "$source_pdf")" \
    "$(stat -c %s "$pdf")" "$(nproc)"
printf 'quillet stamp --page-numbers:  %6.2f s  (peak %s KB)  %s\n' "$qs" "$qk" "$(sed "s/ → .*//" "$work/result.txt")"
printf 'qpdf --overlay (one page):     %6.2f s  (peak %s KB)\n' "$ps" "$pk"
printf 'ratio quillet / qpdf:          %6.2f (goal: at most 1.00)\n' "$(echo "$qs / $ps" | bc -l)"
printf 'page %s reads "Page %s of %s" (pdftotext): %s; qpdf --check: %s; output %s bytes\n' \
    "$middle" "$middle" "$pages" "$( ((found > 0)) && echo yes || echo NO)" "$check" "$(stat -c %s "$work/out.pdf")"
row "stamp --page-numbers, first $pages pages of a manual (qpdf --check $check)" \
    "$qs" "$qk" "qpdf --overlay" "$ps" "$pk" "<= 1.00"
