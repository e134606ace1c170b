#!/usr/bin/env bash
# Runs every comparison with the peer tools on the same files in one run and writes
# docs/benchmarks.md: median wall time and peak memory of each side, their ratio and the goal,
# the files used and the machine. Inputs are made at run time from the shared corpus and from two
# of Debian's documentation packages (bench/manuals.sh: unpacked into a cache, never installed); none are
# committed. Takes a few minutes; run it on an otherwise idle machine (the figures are noisy
# when other work shares the two cores).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
rows=$(mktemp)
reports=$(mktemp)
trap 'rm -f "$rows" "$reports"' EXIT
export QUILLET_BENCH_ROWS="$rows"

for script in info compress scans shrink split merge convert target-size ocr redact stamp; do
    echo "running bench/$script.sh" >&2
    { echo "### bench/$script.sh"; echo; echo '```'; "$root/bench/$script.sh" 2>&1 | grep -v $'\r'; echo '```'; echo; } >>"$reports"
done

out="$root/docs/benchmarks.md"
mkdir -p "$(dirname "$out")"
# The window's stall probe is a program of its own (bench/app-stall), run by hand: its section is
# carried over from the file being replaced.
stall=$(mktemp)
trap 'rm -f "$rows" "$reports" "$stall"' EXIT
[[ -f "$out" ]] && sed -n '/^### bench\/app-stall/,$p' "$out" >"$stall"
{
    echo "# Benchmarks"
    echo
    echo "Made by \`bench/compare.sh\` on $(date -u +%Y-%m-%d): $(nproc) cores ($(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //')), $(free -g | awk '/Mem:/ {print $2}') GiB, $(. /etc/os-release && echo "$PRETTY_NAME")."
    echo "Times are medians of 3 to 5 runs (wall clock, seconds); memory is the peak resident size (KB)."
    echo "A ratio is our time over the peer's; the goal column says what it should be. Figures vary by"
    echo "10-20% between runs on this shared machine."
    echo
    echo "| task | quillet s | quillet KB | peer | peer s | peer KB | ratio | goal | memory | memory goal | met |"
    echo "|---|---|---|---|---|---|---|---|---|---|---|"
    while IFS=$'\t' read -r task ours ours_kb peer theirs theirs_kb goal memory_goal; do
        [[ "$ours" == "-" ]] || ours=$(printf '%.2f' "$ours")
        [[ "$theirs" == "-" ]] || theirs=$(printf '%.2f' "$theirs")
        ratio="-"
        met="-"
        memory="-"
        if [[ "$ours" != "-" && "$theirs" != "-" ]]; then
            ratio=$(printf '%.2f' "$(echo "$ours / $theirs" | bc -l)")
            if [[ "$goal" == "<= "* ]]; then
                met=$(echo "$ratio <= ${goal#<= }" | bc -l | sed 's/1/yes/;s/0/**no**/')
            fi
        fi
        case "${memory_goal:-}" in
            "<= "*)
                memory=$(printf '%.2fx' "$(echo "$ours_kb / $theirs_kb" | bc -l)")
                [[ $(echo "$ours_kb / $theirs_kb <= ${memory_goal#<= }" | bc -l) == 1 ]] || met="**no**" ;;
            "< "*" MB")
                limit=${memory_goal#< }
                memory="$(( ours_kb / 1024 )) MB"
                (( ours_kb / 1024 < ${limit% MB} )) || met="**no**" ;;
        esac
        echo "| $task | $ours | $ours_kb | $peer | $theirs | $theirs_kb | $ratio | $goal | $memory | ${memory_goal:--} | $met |"
    done <"$rows"
    echo
    echo "The target-size rows have no peer: each result should land between 85% and 100% of its"
    echo "target, or be a best effort when even the lowest setting is over it; \"builds\" counts the"
    echo "candidate documents written on the way (the ladder's rungs and the rebuilds between two"
    echo "of them)."
    echo
    echo "## Inputs"
    echo
    echo "- info: nine copies of the corpus's 117-page thesis (009-pdflatex-geotopo) joined with qpdf: 1,053 pages."
    echo "- compress: pages 1-20 of that thesis rendered at 300 DPI to JPEG (quality 95) and stored unchanged"
    echo "  in a PDF, as a scanner does (bench/make-scan.py); lossless: the 1,158-page Octave manual"
    echo "  (Debian's octave-doc, 4.7 MB)."
    echo "- scans: that text scan; pages 21-30 of the thesis blurred, turned 0.7 degrees, tinted cream"
    echo "  and grained (JPEG 85); four pages with coloured headings and the corpus's photos, tinted"
    echo "  (JPEG 90); pages 11-20 as 1-bit CCITT G4 (bench/scans.sh). Recall is Tesseract's (eng) on"
    echo "  sample pages rendered at 300 DPI, against the thesis's own text; SSIM is on the photos."
    echo "- shrink: born-digital documents nobody here made (bench/shrink-set.sh): every PDF of Debian's"
    echo "  texlive-base and texlive-font-utils documentation, every sixteenth of texlive-pictures-doc,"
    echo "  six office reports with photos exported by LibreOffice, and the shared corpus."
    echo "- split: the 311-page gnuplot manual (Debian's gnuplot-doc); merge: 1,170 + 351 pages; images: 20"
    echo "  JPEGs at 300 DPI."
    echo "- convert: 60 pages of the thesis."
    echo "- target sizes: that scan; 60 text pages of the thesis and 8 scanned pages; 12 full-page"
    echo "  photographs made from the corpus's photos (bench/target-size.sh)."
    echo "- ocr: pages 20-39 of the Octave manual rendered at 300 DPI to JPEG (quality 90) and stored"
    echo "  unchanged; recall is measured against the manual's own text of those pages."
    echo "- stamp: the first 1,000 pages of the Octave manual; qpdf --overlay lays over each of them one"
    echo "  page stamped by quillet on a blank letter page."
    echo
    echo "## Reports"
    echo
    cat "$reports"
    cat "$stall"
} >"$out"
echo "wrote $out" >&2
