#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (unit, command line, playback).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
BUILD=${QUILLET_BUILD:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$BUILD" -j"$(nproc)"
cd "$BUILD"
ctest --output-on-failure -j"$(nproc)" "$@"
