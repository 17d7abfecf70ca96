#!/usr/bin/env bash
# The SWF layer against tools we did not write: movies made by the writer
# (shapes with solid, translucent and gradient fills, curves and an outline; a
# sprite; fonts with static and edit text) must parse in Debian's yaswfp with
# the tags and frame counts that `quillet info --json` reports, and play in
# Ruffle showing the right pixels without player errors. Bitmaps, compressed
# movies and the show's play/pause scripts are played through exported shows
# (test_picture_types, test_export_playback, test_controls_playback).
# Screenshots stay in $QUILLET_BUILD_DIR/e2e-out/swf for looking at.
set -euo pipefail
: "${QUILLET:?}" "${QUILLET_SOURCE_DIR:?}" "${QUILLET_BUILD_DIR:?}"
lib="$QUILLET_SOURCE_DIR/tests/e2e/lib"
out="$QUILLET_BUILD_DIR/e2e-out/swf"
rm -rf "$out"
mkdir -p "$out"
export QUILLET_CONFIG_DIR="$out/config" XDG_CACHE_HOME="$out/cache"  # none of the user's own

QUILLET_TEST_MOVIES_DIR="$out" "$QUILLET_BUILD_DIR/tests/test_swf" --gtest_filter='TestMovies.*' > "$out/make.log" 2>&1 \
  || { cat "$out/make.log"; exit 1; }

movies=(shapes sprite text)
fail=0
for m in "${movies[@]}"; do
  "$QUILLET" info --json "$out/$m.swf" > "$out/$m.info.json"
  /usr/bin/python3 "$lib/yaswfp_compare.py" "$out/$m.swf" "$out/$m.info.json" || fail=1
done

# Ruffle, one run per movie, two at a time.
shoot() {  # movie times probes...
  local m=$1 times=$2
  shift 2
  local args=()
  for p in "$@"; do args+=(--probe "$p"); done
  node "$lib/ruffle-shoot.mjs" --movie "$out/$m.swf" --size 320x240 --times "$times" --out "$out/shots" \
    "${args[@]}" > "$out/$m.shoot.log" 2>&1 || { cat "$out/$m.shoot.log"; return 1; }
}
S="70,60 110,80 150,120 100,185 260,60 250,190 5,5"
shoot shapes 125 $S & shoot sprite 40,125,208,292,375 30,110 130,110 230,110 & wait
shoot text 125 35,85 55,85 113,85 75,70 40,160 & wait

check() { /usr/bin/python3 "$lib/expect_pixels.py" "$out/shots/$1.json" "${@:2}" || fail=1; }
check shapes "125 70,60 255,0,0 0" "125 110,80 127,0,128 2" "125 150,120 100,100,228 2" \
             "125 100,185 128,128,128 8" "125 260,60 0,200,0 0" "125 250,190 228,100,100 2" "125 5,5 200,200,200 0"
check sprite "40 30,110 255,255,255 0" "125 30,110 255,0,0 0" "125 130,110 200,200,200 0" \
             "208 130,110 255,0,0 0" "292 230,110 255,0,0 0" "375 30,110 255,0,0 0" "375 230,110 200,200,200 0"
# "ABA" in black on the baseline y = 100: glyph squares at x 24..47 and 102..125, a gap between.
check text "125 35,85 0,0,0 0" "125 55,85 200,200,200 0" "125 113,85 0,0,0 0" "125 75,70 200,200,200 0"

exit $fail
