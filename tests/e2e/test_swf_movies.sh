#!/usr/bin/env bash
# The SWF layer against tools we did not write: movies made by the writer
# (shapes, a JPEG bitmap fill, lossless bitmaps with alpha, a sprite, a script
# that stops on frame 2, fonts and text, compressed and not) must parse in
# Debian's yaswfp with the tags and frame counts that `quillet info --json`
# reports, and play in Ruffle showing the right pixels without player errors.
# Screenshots stay in $QUILLET_BUILD_DIR/e2e-out/swf for looking at.
set -euo pipefail
: "${QUILLET:?}" "${QUILLET_SOURCE_DIR:?}" "${QUILLET_BUILD_DIR:?}"
lib="$QUILLET_SOURCE_DIR/tests/e2e/lib"
out="$QUILLET_BUILD_DIR/e2e-out/swf"
rm -rf "$out"
mkdir -p "$out"
export QUILLET_CONFIG_DIR="$out/config" XDG_CACHE_HOME="$out/cache"  # none of the user's own

# The JPEG of the bitmap fill: left half red, right half blue, 64 x 48.
convert -size 32x48 xc:'rgb(255,0,0)' -size 32x48 xc:'rgb(0,0,255)' +append -quality 95 "$out/pic.jpg"
djpeg -pnm "$out/pic.jpg" > /dev/null  # a JPEG that libjpeg decodes

QUILLET_TEST_MOVIES_DIR="$out" QUILLET_TEST_JPEG="$out/pic.jpg" \
  "$QUILLET_BUILD_DIR/tests/test_swf" --gtest_filter='TestMovies.*' > "$out/make.log" 2>&1 \
  || { cat "$out/make.log"; exit 1; }
# The lossless bitmaps are packed by the movie layer.
QUILLET_TEST_MOVIES_DIR="$out" "$QUILLET_BUILD_DIR/tests/test_movie" --gtest_filter='PackLossless.TestMovie' \
  >> "$out/make.log" 2>&1 || { cat "$out/make.log"; exit 1; }

movies=(shapes shapes_compressed jpeg lossless sprite script script_compressed text)
fail=0
for m in "${movies[@]}"; do
  "$QUILLET" info --json "$out/$m.swf" > "$out/$m.info.json"
  /usr/bin/python3 "$lib/yaswfp_compare.py" "$out/$m.swf" "$out/$m.info.json" || fail=1
done
grep -q '"signature": "CWS"' "$out/shapes_compressed.info.json" || { echo "FAIL shapes_compressed is not CWS"; fail=1; }

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
shoot shapes 125 $S & shoot shapes_compressed 125 $S & wait
shoot jpeg 125 52,68 116,68 216,174 248,174 & shoot lossless 125 18,36 34,36 78,36 94,36 138,36 154,36 206,36 266,36 & wait
shoot sprite 40,125,208,292,375 30,110 130,110 230,110 & shoot script 125,208,375,1000 100,100 270,30 & wait
shoot script_compressed 125,375 100,100 270,30 & shoot text 125 35,85 55,85 113,85 75,70 40,160 & wait

check() { /usr/bin/python3 "$lib/expect_pixels.py" "$out/shots/$1.json" "${@:2}" || fail=1; }
for m in shapes shapes_compressed; do
  check $m "125 70,60 255,0,0 0" "125 110,80 127,0,128 2" "125 150,120 100,100,228 2" \
           "125 100,185 128,128,128 8" "125 260,60 0,200,0 0" "125 250,190 228,100,100 2" "125 5,5 200,200,200 0"
done
check jpeg "125 52,68 255,0,0 24" "125 116,68 0,0,255 24" "125 216,174 255,0,0 24" "125 248,174 0,0,255 24"
check lossless "125 18,36 255,128,0 0" "125 34,36 0,128,255 0" "125 78,36 255,132,0 8" "125 94,36 0,132,255 8" \
               "125 138,36 255,128,0 0" "125 154,36 0,128,255 0" "125 206,36 228,100,100 2" "125 266,36 150,214,150 3"
check sprite "40 30,110 255,255,255 0" "125 30,110 255,0,0 0" "125 130,110 200,200,200 0" \
             "208 130,110 255,0,0 0" "292 230,110 255,0,0 0" "375 30,110 255,0,0 0" "375 230,110 200,200,200 0"
# Frame 1 called slideshow_play (button green), frame 2 slideshow_pause (button red, timeline stopped on yellow).
check script "125 100,100 0,0,255 0" "125 270,30 0,255,0 0" "208 100,100 255,255,0 0" "208 270,30 255,0,0 0" \
             "375 100,100 255,255,0 0" "1000 100,100 255,255,0 0" "1000 270,30 255,0,0 0"
check script_compressed "125 270,30 0,255,0 0" "375 100,100 255,255,0 0" "375 270,30 255,0,0 0"
# "ABA" in black on the baseline y = 100: glyph squares at x 24..47 and 102..125, a gap between.
check text "125 35,85 0,0,0 0" "125 55,85 200,200,200 0" "125 113,85 0,0,0 0" "125 75,70 200,200,200 0"

exit $fail
