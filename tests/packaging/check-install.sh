#!/usr/bin/env bash
# check-install.sh BUILD_DIR [CMAKE]: installs the built project into a temporary prefix and
# checks what a desktop reads from it: the desktop entry and the metainfo with their real
# validators, the D-Bus service starting the installed app, the icons, the bash completion.
# Exit 77 (skipped) when a validator is missing; never builds anything.
set -euo pipefail
build=${1:?usage: check-install.sh BUILD_DIR [CMAKE]}
cmake=${2:-cmake}
id=org.quillet.Quillet

for tool in desktop-file-validate appstreamcli; do
    if ! command -v "$tool" >/dev/null; then
        echo "SKIPPED: $tool is not installed (scripts/install-deps.sh installs it)"
        exit 77
    fi
done

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
"$cmake" --install "$build" --prefix "$prefix" >/dev/null

failed=0
fail() { echo "FAIL: $*"; failed=1; }

for program in quillet quillet-app; do
    [[ -x $prefix/bin/$program ]] || fail "bin/$program is not installed"
done
desktop-file-validate "$prefix/share/applications/$id.desktop" || fail "desktop entry"
appstreamcli validate --no-net "$prefix/share/metainfo/$id.metainfo.xml" >/dev/null ||
    fail "metainfo: $(appstreamcli validate --no-net "$prefix/share/metainfo/$id.metainfo.xml")"

service=$prefix/share/dbus-1/services/$id.service
grep -qx "Name=$id" "$service" || fail "service file names no $id"
exec_line=$(grep '^Exec=' "$service" || true)
# The installed program, started for activation (no window until one is asked for).
[[ $exec_line == "Exec=$prefix/bin/quillet-app --gapplication-service" ]] ||
    fail "service file starts '${exec_line#Exec=}', not the installed $prefix/bin/quillet-app --gapplication-service"

[[ -f $prefix/share/icons/hicolor/scalable/apps/$id.svg ]] || fail "scalable icon missing"
for size in 16 48 256 512; do
    png=$prefix/share/icons/hicolor/${size}x${size}/apps/$id.png
    [[ $(file -b "$png" 2>/dev/null) == "PNG image data, $size x $size,"* ]] ||
        fail "icon ${size}x${size} missing or of the wrong size"
done
for page in quillet quillet-app; do
    [[ -s $prefix/share/man/man1/$page.1 ]] || fail "man page $page.1 missing"
done
completion=$prefix/share/bash-completion/completions/quillet
offered=$(bash -O extglob -c "source '$completion'
    COMP_WORDS=(quillet compress -t ''); COMP_CWORD=3; _quillet; echo \${COMPREPLY[*]}")
[[ $offered == "high balanced smallest lossless" ]] || fail "bash completion offers '$offered' for -t"

((failed == 0)) && echo "installed files validate"
exit $failed
