#!/usr/bin/env bash
# A user's editing run in the desktop program (five photos: a crop, a pan/zoom
# drawn on the picture, "Push" to the left, a caption dragged to the bottom
# right, the black-and-white filter on a yellow photo, music), exported and
# played in Ruffle: each edit shows in the movie, and the music is in it.
source "${BASH_SOURCE%/*}/lib/common.sh"
app="${QUILLET_BUILD_DIR:-}/tests/test_app"
[ -x "$app" ] || { echo "editing run: no desktop program in this build, skipped"; exit 0; }

sox -n -r 22050 -c 1 "$work/music.wav" synth 3 sine 440
QUILLET_EDITING_RUN="$work/run.qpj" QT_QPA_PLATFORM=offscreen "$app" editingRun >"$work/app.log" 2>&1 ||
  { cat "$work/app.log"; exit 1; }
"$QUILLET" export "$work/run.qpj" -o "$work/run.swf" >/dev/null
# Slides of 2 s; slide 2's move takes its first second, slide 3's push 2 s.
node "$lib/ruffle-shoot.mjs" --movie "$work/run.swf" --size 320x240 --times 1000,4500,6000,10000,12000 \
  --probe 200,120 --probe 150,130 --probe 170,130 --probe 150,110 --probe 20,60 --probe 300,60 \
  --out "$work/shots" --name run >/dev/null
/usr/bin/python3 - "$work/shots/run.json" <<'PY'
import json, sys
result = json.load(open(sys.argv[1]))
assert not result["errors"], result["errors"]
shots = {s["time"]: s["pixels"] for s in result["shots"]}
def near(px, rgb): return all(abs(a - b) <= 24 for a, b in zip(px[:3], rgb))
R, G, B = (255, 0, 0), (0, 255, 0), (0, 0, 255)
checks = [
    (1000, "200,120", R, "the crop keeps the red half only"),
    (4500, "150,130", R, "the zoomed corner: red below the band"),
    (4500, "170,130", B, "the zoomed corner: blue right of the red"),
    (4500, "150,110", G, "the zoomed corner: the green band above"),
    (6000, "300,60", B, "the pushed-in slide enters from the right"),
]
bad = [why for t, probe, rgb, why in checks if not near(shots[t][probe], rgb)]
px = shots[12000]["200,120"][:3]
if not (max(px) - min(px) <= 12 and min(px) > 150): bad.append(f"the filter turns the yellow photo light grey, got {px}")
if near(shots[6000]["20,60"], B): bad.append("the push has not left slide 2 on the left half-way")
assert not bad, bad
PY
# The music is in the movie and starts.
"$QUILLET" info "$work/run.swf" | awk '$2 == "DefineSound" {d = 1} $2 == "StartSound" {s = 1} END {exit !(d && s)}' ||
  { echo "editing run: no music in the movie"; exit 1; }
# The caption: light pixels in the bottom-right corner of slide 4's shot.
light=$(convert "$work/shots/run-10000ms.png" -crop 140x50+180+190 -colorspace gray -threshold 70% -format '%[fx:mean]' info:)
/usr/bin/python3 -c "import sys; v=float(sys.argv[1]); assert v > 0.03, f'no caption at the bottom right ({v})'" "$light"
convert $(for t in 1000 4500 6000 10000 12000; do echo "$work/shots/run-${t}ms.png"; done) \
  -resize 160x120 -bordercolor white -border 2 +append "$artefacts/editing-run-sheet.png"
echo "editing run: ok"
