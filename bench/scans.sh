#!/usr/bin/env bash
# `compress` on scanned pages, against Ghostscript's /ebook and /screen on the same files in one run.
# Five scans are made at run time from the shared corpus and Debian's Octave manual (cached in
# ~/.cache/quillet-bench/scans):
#   - text: pages 1-20 of the corpus's thesis rendered at 300 DPI to JPEG (quality 95) and stored
#     unchanged, as a scanner does (the compression benchmark's scan);
#   - manual: pages 20-39 of the Octave manual (prose, tables and code; bench/manuals.sh) made
#     the same way;
#   - noisy: pages 21-30 of the thesis at 300 DPI, slightly soft, turned by 0.7 degrees, on cream
#     paper with grain, JPEG quality 85;
#   - colour: four born-digital pages with coloured headings, body text and the corpus's photos
#     (bench/make-colour-pages.py) at 300 DPI on cream paper with light grain, JPEG quality 90;
#   - bilevel: pages 11-20 of the thesis at 300 DPI thresholded to 1 bit and stored as CCITT G4.
# Each is compressed with `-t smallest` and `-t balanced` (and `-t high` for the bilevel scan), and
# with Ghostscript's /ebook and /screen. For every output: size, wall time, peak memory, qpdf
# --check, whether mutool and pdftoppm both render every page, and Tesseract's word recall on
# every page (rendered at 300 DPI; recall of the words of the original's text of those pages,
# bench/recall.py); for the colour scan also the SSIM of 100-DPI renders against the scan's own,
# on the photos. Goals:
#   - text and manual scans, smallest: at most 0.30 of /ebook's size; recall at least /ebook's
#     - 0.003 and at least the scan's own - 0.005;
#   - noisy scan, smallest: at most 0.15 of /ebook's size; recall as above;
#   - bilevel scan, every lossy tier: at most 0.70 of the size of the same bits in CCITT G4;
#   - colour scan, smallest: no larger than /ebook's output, SSIM on the photos no worse;
#   - smallest: at most 1.5x /ebook's wall time, peak memory under 200 MB (median of three runs
#     each, taking turns).
# The size and recall goals are judged in this script's report; the time and memory goals are rows.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/bench/rows.sh"
source "$root/bench/manuals.sh"
quillet_built
needs=()
command -v gs >/dev/null || needs+=(ghostscript)
command -v tesseract >/dev/null || needs+=(tesseract-ocr tesseract-ocr-eng)
command -v mutool >/dev/null || needs+=(mupdf-tools)
pkg-config --exists vips-cpp libtiff-4 || needs+=(libvips-dev libtiff-dev)
((${#needs[@]} == 0)) || apt-get install -y -qq --no-install-recommends "${needs[@]}" >/dev/null
corpus="$root/../shared/corpus"
thesis="$corpus/009-pdflatex-geotopo/GeoTopo-komprimiert.pdf"
octave=$(manual octave)
work_folder
start=$SECONDS

# --- Inputs (cached by the recipe: the helpers' sources and the lines below) -----------------
recipe="text 1-20 q95 | manual octave 20-39 q95 | noisy 21-30 angle 0.7 tint 255,246,222 grain 7 blur 0.6 q85 | colour 4 pages tint 255,249,230 grain 4 blur 0.5 q90 | bilevel 11-20 g4"
key=$(cat "$root/bench/scan-pixels.cpp" "$root/bench/make-scan.py" "$root/bench/make-colour-pages.py" \
    <(echo "$recipe") | sha1sum | cut -c1-16)
cache="$HOME/.cache/quillet-bench/scans/$key"
helper="$cache/scan-pixels"
if [[ ! -f "$cache/done" ]]; then
    echo "making the scans (once; cached in $cache)" >&2
    rm -rf "$cache"
    mkdir -p "$cache"
    make=$(mktemp -d)
    # shellcheck disable=SC2046
    g++ -O2 -std=c++17 -o "$helper" "$root/bench/scan-pixels.cpp" $(pkg-config --cflags --libs vips-cpp libtiff-4)

    pdftoppm -r 300 -jpeg -jpegopt quality=95 -f 1 -l 20 "$thesis" "$make/text"
    python3 "$root/bench/make-scan.py" "$cache/text.pdf" --dpi 300 "$make"/text-*.jpg

    pdftoppm -r 300 -jpeg -jpegopt quality=95 -f 20 -l 39 "$octave" "$make/manual"
    python3 "$root/bench/make-scan.py" "$cache/manual.pdf" --dpi 300 "$make"/manual-*.jpg

    for page in $(seq 21 30); do
        pdftoppm -r 300 -f "$page" -l "$page" -singlefile "$thesis" "$make/render"
        "$helper" age "$make/render.ppm" "$make/noisy-$page.jpg" --tint 255,246,222 --grain 7 \
            --blur 0.6 --angle 0.7 --quality 85 --seed "$page"
    done
    python3 "$root/bench/make-scan.py" "$cache/noisy.pdf" --dpi 300 "$make"/noisy-*.jpg

    g4=0
    for page in $(seq 11 20); do
        pdftoppm -r 300 -gray -f "$page" -l "$page" -singlefile "$thesis" "$make/render"
        g4=$((g4 + $("$helper" bilevel "$make/render.pgm" "$make/bilevel-$page.tif")))
    done
    python3 "$root/bench/make-scan.py" "$cache/bilevel.pdf" --dpi 300 "$make"/bilevel-*.tif
    echo "$g4" >"$cache/bilevel.g4"

    pdfimages -png "$corpus/003-pdflatex-image/pdflatex-image.pdf" "$make/p003"
    pdfimages -png "$corpus/023-cmyk-image/cmyk-image.pdf" "$make/p023"
    pdfimages -png "$corpus/018-base64-image/base64image.pdf" "$make/p018"
    for photo in p003 p023 p018; do
        "$helper" age "$make/$photo-000.png" "$make/$photo.jpg" --quality 92
    done
    for text in 011-google-doc-document/google-doc-document.pdf 021-pdfa/crazyones-pdfa.pdf \
        004-pdflatex-4-pages/pdflatex-4-pages.pdf; do
        pdftotext "$corpus/$text" -
    done >"$make/words.txt"
    python3 "$root/bench/make-colour-pages.py" "$cache/colour-source.pdf" "$cache/colour-rects.txt" \
        --pages 4 --text "$make/words.txt" --rects-dpi 100 "$make"/p003.jpg "$make"/p023.jpg "$make"/p018.jpg
    for page in 1 2 3 4; do
        pdftoppm -r 300 -f "$page" -l "$page" -singlefile "$cache/colour-source.pdf" "$make/render"
        "$helper" age "$make/render.ppm" "$make/colour-$page.jpg" --tint 255,249,230 --grain 4 \
            --blur 0.5 --quality 90 --seed "$page"
    done
    python3 "$root/bench/make-scan.py" "$cache/colour.pdf" --dpi 300 "$make"/colour-?.jpg
    rm -rf "$make"
    touch "$cache/done"
fi

# name | label | original whose text the pages have | page of the original for scan page 1
inputs=(
    "text|text scan: 20 pages of the thesis at 300 DPI, JPEG q95|$thesis|1"
    "manual|manual scan: 20 pages of the Octave manual at 300 DPI, JPEG q95|$octave|20"
    "noisy|noisy scan: 10 pages, cream paper, grain, turned 0.7 degrees, JPEG q85|$thesis|21"
    "colour|colour scan: 4 pages, coloured headings and photos on cream paper, JPEG q90|$cache/colour-source.pdf|1"
    "bilevel|bilevel scan: 10 pages of the thesis at 300 DPI, 1 bit, CCITT G4|$thesis|11"
)

# --- Measuring ------------------------------------------------------------------------------
# "seconds peak-KB" of one run.
measure() {
    /usr/bin/time -o "$work/time" -f "%e %M" "$@" >/dev/null 2>&1 || echo "failed: $*" >&2
    cat "$work/time"
}
size() { stat -c %s "$1"; }
number() { [[ $1 =~ ^[0-9]*\.?[0-9]+$ ]]; }
div() { number "$1" && number "$2" && [[ $2 != 0 ]] && echo "scale=${3:-3}; $1 / $2" | bc | sed 's/^\./0./' || echo -; }
at_most() {
    number "$1" && number "$2" || { echo "NOT MET (no figure)"; return; }
    [[ $(echo "$1 <= $2" | bc -l) == 1 ]] && echo met || echo "NOT MET"
}

# The runs compare one input at a time: $in is its file, $out the prefix of its outputs.
q_tier() { rm -f "$out-$1.pdf"; measure "$quillet" compress "$in" -t "$1" -o "$out-$1.pdf"; }
smallest() { q_tier smallest; }
balanced() { q_tier balanced; }
high() { q_tier high; }
g_preset() {
    measure gs -q -dNOPAUSE -dBATCH -dSAFER -sDEVICE=pdfwrite -dPDFSETTINGS="/$1" \
        -sOutputFile="$out-$1.pdf" "$in"
}
ebook() { g_preset ebook; }
screen() { g_preset screen; }

failures=0
# "clean", "warnings" or "ERRORS" from qpdf --check.
checked() {
    local status=0
    qpdf --check "$1" >"$work/qpdf" 2>&1 || status=$?
    case $status in
        0) echo clean ;;
        3) echo warnings ;;
        *) echo ERRORS ;;
    esac
}
count() {
    local file n=0
    for file in "$@"; do [[ -e $file ]] && n=$((n + 1)); done
    echo "$n"
}
# "ok" when mutool and pdftoppm both draw every page without an error, else what failed.
renders() {
    local pdf=$1 pages said=""
    pages=$(qpdf --show-npages "$pdf" 2>/dev/null || echo 0)
    rm -rf "$work/draw" && mkdir "$work/draw"
    if ! mutool draw -q -r 36 -o "$work/draw/m-%d.png" "$pdf" >"$work/draw/m.log" 2>&1 ||
        grep -qi error "$work/draw/m.log" || (($(count "$work"/draw/m-*.png) != pages)); then
        said+="mutool FAILED "
    fi
    if ! pdftoppm -r 36 -png "$pdf" "$work/draw/p" >"$work/draw/p.log" 2>&1 ||
        grep -qi error "$work/draw/p.log" || (($(count "$work"/draw/p-*.png) != pages)); then
        said+="pdftoppm FAILED "
    fi
    if [[ -n "$said" ]]; then
        echo "!!! $pdf: ${said}(mutool: $(head -c 300 "$work/draw/m.log" | tr '\n' ' ') pdftoppm: $(head -c 300 "$work/draw/p.log" | tr '\n' ' '))" >&2
        echo "${said% }"
    else
        echo ok
    fi
}
# Reads page $2 of $1 into $3.txt: renders it at 300 DPI and runs Tesseract on it, once for
# every distinct drawing (the tiers that keep a bilevel page as it is draw it alike).
read_page() {
    local pdf=$1 page=$2 into=$3 seen
    pdftoppm -r 300 -gray -f "$page" -l "$page" -singlefile "$pdf" "$into"
    seen="$work/read/$(md5sum <"$into.pgm" | cut -c1-32)"
    if [[ ! -f "$seen.txt" ]]; then
        # Tesseract's own threads only contend with the other pages': one thread each.
        OMP_THREAD_LIMIT=1 tesseract "$into.pgm" "$seen" -l eng >/dev/null 2>&1 ||
            echo "!!! tesseract failed on page $page of $pdf" >&2
    fi
    cp "$seen.txt" "$into.txt"
    rm -f "$into.pgm"
}
export -f read_page
export work
# Tesseract's recall ("0.9612 2403/2500") on every page of PDF against REFERENCE, a page per core.
recall() {
    local pdf=$1 reference=$2
    rm -f "$work"/ocr-*.txt
    mkdir -p "$work/read"
    seq 1 "$(qpdf --show-npages "$pdf")" |
        xargs -P "$(nproc)" -I{} bash -c 'read_page "$0" {} "$work/ocr-{}"' "$pdf"
    python3 "$root/bench/recall.py" "$reference" "$work"/ocr-*.txt
}
# Mean SSIM over the pages of 100-DPI renders of PDF against the input's, on the photos.
photo_ssim() {
    local pdf=$1 page total=0 n=0
    for page in $(seq 1 "$(wc -l <"$cache/colour-rects.txt")"); do
        pdftoppm -r 100 -f "$page" -l "$page" -singlefile "$pdf" "$work/ssim-out-$page"
        # shellcheck disable=SC2046
        total=$(echo "$total + $("$helper" ssim "$work/ssim-in-$page.ppm" "$work/ssim-out-$page.ppm" \
            $(sed -n "${page}p" "$cache/colour-rects.txt"))" | bc -l)
        n=$((n + 1))
    done
    rm -f "$work"/ssim-out-*.ppm
    printf '%.4f\n' "$(echo "$total / $n" | bc -l)"
}

printf 'machine: %s cores, %s; recall from Tesseract %s on every page, rendered at 300 DPI with\n' \
    "$(nproc)" "$(uname -m)" "$(tesseract --version 2>&1 | head -1 | cut -d' ' -f2)"
printf 'pdftoppm\n'

recall_goal() {
    printf '  recall %s: >= /ebook %s - 0.003: %s; >= the scan %s - 0.005: %s\n' "$r_small" \
        "$r_ebook" "$(at_most "$(echo "$r_ebook - 0.003" | bc)" "$r_small")" \
        "$r_in" "$(at_most "$(echo "$r_in - 0.005" | bc)" "$r_small")"
}

for spec in "${inputs[@]}"; do
    unset bytes secs kb rec qc draw ssim
    declare -A bytes secs kb rec qc draw ssim
    IFS='|' read -r name label original first <<<"$spec"
    in="$cache/$name.pdf"
    out="$work/$name"
    tiers=(smallest balanced)
    [[ $name == bilevel ]] && tiers+=(high)
    reference="$work/$name-reference.txt"
    pages=$(qpdf --show-npages "$in")
    pdftotext -f "$first" -l $((first + pages - 1)) "$original" "$reference"

    # Timing: smallest against /ebook taking turns; the other tiers and /screen once each.
    read -r qt qm gt gm < <(in_turn 3 smallest ebook)
    secs[smallest]=$qt kb[smallest]=$qm secs[ebook]=$gt kb[ebook]=$gm
    read -r qt qm gt gm < <(in_turn 1 balanced screen)
    secs[balanced]=$qt kb[balanced]=$qm secs[screen]=$gt kb[screen]=$gm
    if [[ $name == bilevel ]]; then read -r qt qm < <(high); secs[high]=$qt kb[high]=$qm; fi

    bytes[input]=$(size "$in")
    rec[input]=$(recall "$in" "$reference")
    qc[input]=- draw[input]=-
    if [[ $name == colour ]]; then
        for page in $(seq 1 "$(wc -l <"$cache/colour-rects.txt")"); do
            pdftoppm -r 100 -f "$page" -l "$page" -singlefile "$in" "$work/ssim-in-$page"
        done
        ssim[input]=1.0000
    fi
    for variant in "${tiers[@]}" ebook screen; do
        file="$out-$variant.pdf"
        if [[ ! -s "$file" ]]; then
            echo "!!! $name $variant: no output written" >&2
            bytes[$variant]=0 rec[$variant]="0 -" qc[$variant]="NO OUTPUT" draw[$variant]="NO OUTPUT" ssim[$variant]=0
            failures=$((failures + 1))
            continue
        fi
        bytes[$variant]=$(size "$file")
        rec[$variant]=$(recall "$file" "$reference")
        qc[$variant]=$(checked "$file")
        draw[$variant]=$(renders "$file")
        [[ ${qc[$variant]} == ERRORS ]] && { echo "!!! $name $variant: qpdf --check found errors" >&2; failures=$((failures + 1)); }
        [[ ${draw[$variant]} == ok ]] || failures=$((failures + 1))
        [[ $name == colour ]] && ssim[$variant]=$(photo_ssim "$file")
    done
    rm -f "$work"/ssim-in-*.ppm

    echo
    printf '%s; %s bytes\n' "$label" "${bytes[input]}"
    printf '  recall over all %s pages (%s words of the original)\n' "$pages" \
        "$(python3 "$root/bench/recall.py" "$reference" "$reference" | cut -d/ -f2)"
    printf '  %-20s %10s %8s %8s %9s %8s %-9s %-8s %s\n' output bytes "of input" seconds "peak KB" recall qpdf renders \
        "$([[ $name == colour ]] && echo "photo SSIM")"
    for variant in input "${tiers[@]}" ebook screen; do
        case $variant in
            input) what="the scan" ;;
            ebook | screen) what="gs /$variant" ;;
            *) what="quillet -t $variant" ;;
        esac
        printf '  %-20s %10s %8s %8s %9s %8s %-9s %-8s %s\n' "$what" "${bytes[$variant]}" \
            "$(div "${bytes[$variant]}" "${bytes[input]}")" "${secs[$variant]:--}" "${kb[$variant]:--}" \
            "${rec[$variant]%% *}" "${qc[$variant]}" "${draw[$variant]}" "${ssim[$variant]:-}"
    done

    r_small=${rec[smallest]%% *} r_ebook=${rec[ebook]%% *} r_in=${rec[input]%% *}
    summary=""
    case $name in
        text | manual | noisy)
            [[ $name == noisy ]] && goal=0.15 || goal=0.30
            share=$(div "${bytes[smallest]}" "${bytes[ebook]}")
            printf '  goals, -t smallest: size %s of /ebook'"'"'s (<= %s): %s\n' "$share" "$goal" "$(at_most "$share" "$goal")"
            recall_goal
            summary="size ${share} of /ebook's, goal <= ${goal}; recall ${r_small} vs /ebook ${r_ebook}, scan ${r_in}"
            ;;
        colour)
            share=$(div "${bytes[smallest]}" "${bytes[ebook]}")
            printf '  goals, -t smallest: size %s of /ebook'"'"'s (<= 1): %s; photo SSIM %s vs /ebook %s: %s\n' \
                "$share" "$(at_most "$share" 1)" "${ssim[smallest]}" "${ssim[ebook]}" \
                "$(at_most "${ssim[ebook]}" "${ssim[smallest]}")"
            summary="size ${share} of /ebook's, goal <= 1; photo SSIM ${ssim[smallest]} vs ${ssim[ebook]}"
            ;;
        bilevel)
            g4=$(cat "$cache/bilevel.g4")
            printf '  the scan holds %s bytes of G4 data; the sizes below are of whole files against the scan'"'"'s\n' "$g4"
            for tier in "${tiers[@]}"; do
                share=$(div "${bytes[$tier]}" "${bytes[input]}")
                printf '  goal, -t %s: size %s of CCITT G4'"'"'s (<= 0.70): %s\n' "$tier" "$share" "$(at_most "$share" 0.70)"
                summary+="$tier ${share}, "
            done
            summary="size of CCITT G4's: ${summary%, } (goal <= 0.70)"
            ;;
    esac
    time_share=$(div "${secs[smallest]}" "${secs[ebook]}" 2)
    printf '  time, -t smallest: %sx /ebook'"'"'s (<= 1.50): %s; peak %s MB (< 200 MB): %s\n' "$time_share" \
        "$(at_most "$time_share" 1.50)" "$((kb[smallest] / 1024))" "$(at_most "$((kb[smallest] / 1024))" 199)"
    checks="checks ok"
    for variant in "${tiers[@]}"; do
        [[ ${qc[$variant]} != ERRORS && ${draw[$variant]} == ok ]] || checks="checks FAILED"
    done
    row "compress -t smallest, $name scan (${bytes[input]} bytes): $summary; $checks" \
        "${secs[smallest]}" "${kb[smallest]}" "gs -dPDFSETTINGS=/ebook" "${secs[ebook]}" "${kb[ebook]}" "<= 1.50" "< 200 MB"
done

echo
if ((failures > 0)); then
    echo "!!! $failures output(s) failed qpdf --check or did not render in mutool and pdftoppm (see above)"
else
    echo "every output passed qpdf --check and rendered in mutool and pdftoppm"
fi
printf 'took %s s\n' "$((SECONDS - start))"
