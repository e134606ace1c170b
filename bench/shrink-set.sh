#!/usr/bin/env bash
# bench/shrink-set.sh: prints the folder of the born-digital documents that bench/shrink.py
# compresses, building it once in a cache outside the repository:
#   - every PDF of Debian's texlive-base and texlive-font-utils documentation;
#   - every sixteenth PDF (by name, at most 8 MB) of texlive-pictures-doc;
#   - office documents with photos: text and the photos of gnome-backgrounds laid out by
#     LibreOffice (headless), as a word processor exports them;
#   - the real PDFs of ../shared/corpus.
# The packages are only unpacked, never installed; nothing here is committed.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cache=${QUILLET_BENCH_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quillet-bench}
set_dir="$cache/shrink-set"
if [[ -f "$set_dir/.complete" ]]; then
    echo "$set_dir"
    exit 0
fi
mkdir -p "$set_dir"
unpack() { # unpack PACKAGE: prints the folder the package was unpacked into
    local package=$1 dir="$cache/deb-$1"
    if [[ ! -d "$dir/root" ]]; then
        mkdir -p "$dir"
        (cd "$dir" && apt-get download -qq "$package" 2>/dev/null) >&2
        dpkg-deb -x "$dir"/*.deb "$dir/root"
        rm -f "$dir"/*.deb
    fi
    echo "$dir/root"
}
take() { # take PREFIX FILE...: copies each PDF (gunzipped) into the set as PREFIX-NAME.pdf
    local prefix=$1 file name
    shift
    for file in "$@"; do
        name=$(basename "$file" .gz)
        if [[ "$file" == *.gz ]]; then zcat "$file" >"$set_dir/$prefix-$name"; else cp "$file" "$set_dir/$prefix-$name"; fi
    done
}
mapfile -t files < <(find "$(unpack texlive-base)" -name '*.pdf' -o -name '*.pdf.gz' | sort)
take base "${files[@]}"
mapfile -t files < <(find "$(unpack texlive-font-utils)" -name '*.pdf' -o -name '*.pdf.gz' | sort)
take fontutils "${files[@]}"
mapfile -t files < <(find "$(unpack texlive-pictures-doc)" \( -name '*.pdf' -o -name '*.pdf.gz' \) -size -8M | sort | awk 'NR % 16 == 1')
take pictures "${files[@]}"

# Office documents: a few pages of text around photos, exported by LibreOffice Writer with its
# default settings (images brought down to 300 DPI, JPEG quality 90, fonts subset).
photos=$(unpack gnome-backgrounds)
mapfile -t pictures < <(find "$photos" -name '*.jpg' -o -name '*.png' -o -name '*.webp' | sort | head -12)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
paragraph() { # paragraph FILE FROM: 14 lines of a text file as one paragraph, XML-escaped
    sed -n "$2,+13p" "$1" | tr -d '<>&`' | tr '\n' ' '
}
for n in 1 2 3 4 5 6; do
    document="$work/office-report-$n.fodt"
    {
        echo '<?xml version="1.0" encoding="UTF-8"?>'
        echo '<office:document xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" xmlns:draw="urn:oasis:names:tc:opendocument:xmlns:drawing:1.0" xmlns:svg="urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0" xmlns:xlink="http://www.w3.org/1999/xlink" office:version="1.3" office:mimetype="application/vnd.oasis.opendocument.text"><office:body><office:text>'
        echo "<text:h text:outline-level=\"1\">Quarterly report $n</text:h>"
        for k in 1 2 3; do
            picture=${pictures[$(((n * 3 + k) % ${#pictures[@]}))]}
            echo "<text:p>$(paragraph "$root/README.md" $((n * 11 + k * 5)))</text:p>"
            echo "<text:p><draw:frame draw:name=\"p$k\" text:anchor-type=\"as-char\" svg:width=\"$((8 + 2 * k))cm\" svg:height=\"$((5 + k))cm\"><draw:image xlink:href=\"file://$picture\" xlink:type=\"simple\" xlink:show=\"embed\" xlink:actuate=\"onLoad\"/></draw:frame></text:p>"
            echo "<text:p>$(paragraph "$root/docs/scale-out.md" $((n * 13 + k * 7)))</text:p>"
        done
        echo '</office:text></office:body></office:document>'
    } >"$document"
    (cd "$work" && HOME="$work" timeout 300 soffice --headless --convert-to pdf "$document" >/dev/null 2>&1) || true
    if [[ -s "$work/office-report-$n.pdf" ]]; then cp "$work/office-report-$n.pdf" "$set_dir/"; fi
done
take corpus "$root"/../shared/corpus/*/*.pdf
touch "$set_dir/.complete"
echo "$set_dir"
