#!/usr/bin/env bash
# fuzz/run.sh TARGET SECONDS   builds TARGET in build-fuzz/ and fuzzes it for SECONDS.
# Seeds are made in a temporary folder at every run (the sample PDFs of ../shared/corpus for
# fuzz_analyze, a few hand-written inputs for the others); new inputs go to
# build-fuzz/corpus/TARGET and crashing inputs to build-fuzz/artifacts/.
set -euo pipefail
target=${1:?usage: fuzz/run.sh TARGET SECONDS}
seconds=${2:?usage: fuzz/run.sh TARGET SECONDS}
root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build-fuzz"
corpus_source=${QUILLET_CORPUS_DIR:-$root/../shared/corpus}

mkdir -p "$build"
if [[ ! -f "$build/build.ninja" ]]; then
    cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLET_FUZZ=ON \
        -DQUILLET_SANITIZE=ON -DQUILLET_BUILD_TESTS=OFF >"$build/configure.log" 2>&1 ||
        { cat "$build/configure.log" >&2; exit 1; }
fi
cmake --build "$build" --target "$target" >"$build/$target.build.log" 2>&1 ||
    { tail -40 "$build/$target.build.log" >&2; exit 1; }

seeds=$(mktemp -d)
trap 'rm -rf "$seeds"' EXIT
seed() { printf '%b' "$2" >"$seeds/$1"; }
case "$target" in
fuzz_analyze)
    find "$corpus_source" -name '*.pdf' -size -2M -exec cp {} "$seeds/" \; ;;
fuzz_parse_ranges)
    seed a '1-5, 8, 11-30\x0a\x00\x00\x00'; seed b '9-4;+3 0 999\x05\x00\x00\x00'
    seed c 'abc,-3,5-,2-3-4\xff\xff\xff\x7f' ;;
fuzz_cli_args)
    seed a 'merge\0a.pdf\0b.pdf\0-o\0out.pdf'; seed b 'split\0--ranges\01-3\0--x\0in.pdf'
    seed c 'compress\0--by-size\010MB\0-t\0f.pdf\0--replace' ;;
fuzz_parse_size)
    seed a '10MB'; seed b ' 2 gb '; seed c '1.5k'; seed d '123'; seed e '8E3B' ;;
fuzz_operation_parameters)
    seed a '{"type":"compress","tier":"smallest"}'
    seed b '{"type":"split","mode":"byFileSize","ranges":"1-5,6-10","everyN":3,"maxBytes":1024}'
    seed c '{"type":"organize","rotatePages":[1,3],"rotations":[90,-90],"deletePages":[2],"newOrder":[3,1]}'
    seed d '{"type":"pdfToImages","format":"heic","dpi":300,"pages":"2-4","jpegQuality":0.5}'
    seed e '{"type":"imagesToPDF","pageSize":"a4","fit":"fill","marginPT":18.5}'
    seed f '{"type":"protect","userPassword":"u","ownerPassword":"o"}' ;;
fuzz_output_rule)
    seed a '{"location":"subfolder","subfolderName":"Processed","customFolder":"","nameTemplate":"{name}-{action}","replaceOriginal":false}' ;;
fuzz_metadata_info)
    seed a '{"title":"T","author":"A","creator":"C","producer":"P","subject":"S","keywords":"K","creationDate":700000000.5,"modificationDate":-3}' ;;
fuzz_task_records)
    rule='{"location":"sameFolder","subfolderName":"Processed","customFolder":"","nameTemplate":"{name}-{action}","replaceOriginal":false}'
    spec='{"id":"e621e1f8-c36c-495a-93fc-0c247a3e6e5f","operation":"split","inputs":["/a b.pdf"],"outputRule":'"$rule"',"parameters":{"type":"split","mode":"everyPage"}}'
    seed a "\x00[$spec,$spec]"; seed b "\x01$spec"
    seed c '\x02{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","createdAt":700000000.25,"operation":"merge","state":"failed","inputNames":["a.pdf"],"inputURLs":["/a.pdf"],"outputURLs":[],"originalBytes":10,"resultBytes":0,"progress":0.5,"error":"x","parametersData":"eyJ0eXBlIjoibWVyZ2UifQ=="}'
    seed d '\x03{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","date":0,"operation":"clean","inputNames":[],"inputURLs":[],"outputURLs":["/o.pdf"],"originalBytes":1,"resultBytes":1,"succeeded":true}'
    seed e '\x04{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"Email","tier":"smallest","targetBytes":5000000,"createdAt":-1e9}' ;;
fuzz_type1_reader)
    # A few small real Type 1 programs (Latin Modern, URW) when installed, and a cut-off one.
    find /usr/share/texmf/fonts/type1/public/lm /usr/share/fonts/X11/Type1 \( -name '*.pfb' -o -name '*.t1' \) \
        -size -40k 2>/dev/null | head -8 | while read -r font; do cp "$font" "$seeds/"; done
    seed a '%!PS-AdobeFont-1.0: X\n/FontMatrix [0.001 0 0 0.001 0 0] readonly def\ncurrentfile eexec\n' ;;
fuzz_jbig2_encoder)
    # Width and height (two bytes each, little-endian), then the pixels' bits.
    seed a '\x1f\x00\x0f\x00\xf0\x0f\x3c'; seed b '\xcf\x07\x27\x00\x00'
    seed c '\x07\x00\x07\x00\xff\x81\xbd\xa5\xbd\x81\xff\x00' ;;
*) echo "unknown target $target" >&2; exit 2 ;;
esac

mkdir -p "$build/corpus/$target" "$build/artifacts"
cd "$build"
"fuzz/$target" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=3000 -print_final_stats=1 \
    -artifact_prefix="$build/artifacts/$target-" "$build/corpus/$target" "$seeds"
