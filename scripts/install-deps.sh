#!/usr/bin/env bash
# Installs every Debian package that the build, the tests and the independent checkers need.
# Does nothing when all of them are present; runs `apt-get update` only when something is missing.
set -euo pipefail

packages=(
    build-essential cmake ninja-build ccache pkg-config
    libqpdf-dev
    libmupdf-dev libmujs-dev libgumbo-dev libjbig2dec0-dev libopenjp2-7-dev
    libharfbuzz-dev libfreetype-dev libfontconfig-dev libjpeg-dev
    libvips-dev libheif-dev libdeflate-dev liblcms2-dev libgs-common
    libtesseract-dev tesseract-ocr-eng tesseract-ocr-chi-sim
    nlohmann-json3-dev libfmt-dev
    libgtest-dev libgmock-dev
    qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
    qt6-translations-l10n qt6-svg-dev libqt6svg6 qt6-qpa-plugins
    xvfb xauth dbus fonts-noto-cjk fonts-dejavu-core
    qpdf poppler-utils libimage-exiftool-perl pango1.0-tools
    desktop-file-utils appstream librsvg2-bin dpkg-dev file
    openssh-server openssh-client parallel rsync jq python3-yaml
)

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$p")
done

if ((${#missing[@]} == 0)); then
    exit 0
fi

echo "install-deps: installing ${missing[*]}" >&2
sudo=""
if [[ $(id -u) -ne 0 ]]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
