#!/usr/bin/env bash
# The sanitizer pass: one clang build with AddressSanitizer, UndefinedBehaviorSanitizer
# (float-cast-overflow included) and fuzzing coverage, which runs the unit and
# command-line tests and then every fuzz target for QUILLET_FUZZ_SECONDS (default 10) s.
# The whole-program scripts (e2e.*) run in the normal build only: they spend their
# time in the browser and in outside parsers, and exporting a large photo under ASan
# takes minutes. The desktop program is left out: its widget tests run in the normal build.
#
#   bash scripts/sanitize.sh [BUILD_DIR] [CTEST_ARGS...]
set -euo pipefail
cd "$(dirname "$0")/.."
SAN=${1:-build-san}
shift $(( $# > 0 ? 1 : 0 ))
echo "test: the sanitizer pass in $SAN (clang, ASan+UBSan, fuzz targets)"
CC=clang CXX=clang++ cmake -S . -B "$SAN" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DQUILLET_SANITIZE=ON -DQUILLET_BUILD_FUZZ=ON -DQUILLET_BUILD_BENCH=OFF -DQUILLET_BUILD_APP=OFF >/dev/null
cmake --build "$SAN" -j"$(nproc)"
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
(cd "$SAN" && ctest --output-on-failure -j"$(nproc)" -E '^e2e\.' "$@")
bash scripts/fuzz.sh "$SAN" "${QUILLET_FUZZ_SECONDS:-10}"
