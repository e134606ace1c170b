# Sourced by the benchmark scripts. `manual NAME` prints the path of a large typeset manual from
# Debian's documentation packages, fetched once into a cache outside the repository:
#   octave   the 1,158-page Octave manual (octave-doc, 4.7 MB)
#   gnuplot  the 311-page gnuplot manual (gnuplot-doc, 1.3 MB)
# Nothing fetched is committed; the packages are only unpacked, never installed.
manual() {
    local cache=${QUILLET_BENCH_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quillet-bench}
    local package file
    case "$1" in
        octave) package=octave-doc file=octave.pdf ;;
        gnuplot) package=gnuplot-doc file=gnuplot.pdf ;;
        *) echo "unknown manual: $1" >&2; return 1 ;;
    esac
    if [[ ! -f "$cache/$file" ]]; then
        mkdir -p "$cache/$package"
        (cd "$cache/$package" && apt-get download -qq "$package" 2>/dev/null) >&2
        dpkg-deb -x "$cache/$package"/*.deb "$cache/$package/root"
        local found
        found=$(find "$cache/$package/root" -name "$file" -o -name "$file.gz" | head -1)
        if [[ "$found" == *.gz ]]; then zcat "$found" >"$cache/$file"; else cp "$found" "$cache/$file"; fi
        rm -rf "$cache/$package"
    fi
    echo "$cache/$file"
}
