#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (unit, command line, playback),
# then the sanitizer pass (scripts/sanitize.sh): the unit and command-line tests again
# in a clang build with AddressSanitizer and UndefinedBehaviorSanitizer, and each fuzz
# target for a short time. QUILLET_SANITIZE_PASS=0 skips that second pass.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
BUILD=${QUILLET_BUILD:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$BUILD" -j"$(nproc)"
(cd "$BUILD" && ctest --output-on-failure -j"$(nproc)" "$@")

if [ "${QUILLET_SANITIZE_PASS:-1}" != 0 ]; then
  bash scripts/sanitize.sh "$BUILD-san" "$@"
fi
