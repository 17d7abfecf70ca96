#!/usr/bin/env bash
# Installs everything the build, the demo and the tests need on a fresh Debian machine.
# Safe to run again: apt and npm skip what is already there.
set -euo pipefail
cd "$(dirname "$0")/.."

APT_PACKAGES=(
  build-essential cmake pkg-config ninja-build
  libgtest-dev libgmock-dev libbenchmark-dev
  libpugixml-dev zlib1g-dev libjpeg62-turbo-dev libpng-dev libexif-dev libxxhash-dev
  libmagick++-6.q16-dev imagemagick
  libfreetype-dev libfontconfig-dev fonts-dejavu-core
  libsndfile1-dev libmp3lame-dev libmp3lame0
  python3 python3-yaswfp libjpeg-turbo-progs libxml2-utils macutils ffmpeg sox espeak-ng
  libimage-exiftool-perl mate-backgrounds
  chromium
  dpkg-dev desktop-file-utils librsvg2-bin   # the Debian package, its desktop entry check, icon sizes
  qt6-base-dev qt6-webengine-dev xvfb xauth   # the desktop program and its tests
  clang libclang-rt-14-dev   # fuzz targets (libFuzzer runtime)
)
command -v npm >/dev/null 2>&1 || APT_PACKAGES+=(nodejs npm)

missing=()
for p in "${APT_PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "setup: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

# Ruffle and the browser driver for the playback tests and the demo page.
if [ ! -d node_modules/@ruffle-rs/ruffle ] || [ ! -d node_modules/playwright-core ]; then
  npm ci --no-audit --no-fund --loglevel=error
fi
