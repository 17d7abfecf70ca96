#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (unit, command line, playback),
# then builds and runs the whole suite again under AddressSanitizer and
# UndefinedBehaviorSanitizer (QUILLET_SANITIZE_PASS=0 skips that second pass).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
BUILD=${QUILLET_BUILD:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$BUILD" -j"$(nproc)"
(cd "$BUILD" && ctest --output-on-failure -j"$(nproc)" "$@")

if [ "${QUILLET_SANITIZE_PASS:-1}" != 0 ]; then
  echo "test: again under the address and undefined-behaviour sanitizers"
  cmake -S . -B "$BUILD-asan" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLET_SANITIZE=ON \
    -DQUILLET_BUILD_BENCH=OFF >/dev/null
  cmake --build "$BUILD-asan" -j"$(nproc)"
  (cd "$BUILD-asan" && ctest --output-on-failure -j"$(nproc)" "$@")
fi
