#!/usr/bin/env bash
# The playback and mute controls and the preloader, played in Ruffle: the
# pause button holds the picture (two shots 2 s apart are equal) and play
# resumes it; next and previous jump between slides; a show waiting on its
# first slide starts from the play button; the mute button shows its state;
# the preloader shows its bar and text on a movie that loads over several
# frames and the show starts once the set amount is in. Every control set is
# shot for the artefact sheet. `quillet info` and yaswfp read the movies.
source "${BASH_SOURCE%/*}/lib/common.sh"

for c in red lime blue; do convert -size 320x240 "xc:$c" "$work/$c.png"; done

# The sets on offer: "  NAME  WxH" lines under each heading.
"$QUILLET" list controls > "$work/sets.txt"
playback_sets=$(sed -n '/^playback/,/^mute/p' "$work/sets.txt" | sed -n 's/^  \(.*\)  [0-9]*x[0-9]*$/\1/p')
mute_sets=$(sed -n '/^mute/,$p' "$work/sets.txt" | sed -n 's/^  \(.*\)  [0-9]*x[0-9]*$/\1/p')
size_of() { sed -n "s/^  $1  \([0-9]*x[0-9]*\)$/\1/p" "$work/sets.txt" | head -1; }
[ "$(wc -l <<<"$playback_sets")" -ge 3 ] && [ "$(wc -l <<<"$mute_sets")" -ge 2 ] || {
  echo "expected at least three playback and two mute sets:"; cat "$work/sets.txt"; exit 1; }

# name | quillet new options | clicks (T@X,Y, comma-separated, or -) | time:colour pairs
# (R red, G lime, B blue at the middle of the stage). 12 fps, 2 s a slide.
# "Dark Bar" is 100x40 at the bottom centre: previous at 130,220, play/pause
# at 160,220, next at 190,220. "Silver Full" is 138x34: first at 108,223,
# last at 212,223.
cases=$(cat <<'EOF_CASES'
pause|--controls "Dark Bar"|500@160,220 3500@160,220|1000:R 3000:R 4500:R 6000:G
next|--controls "Dark Bar"|500@190,220 1500@190,220 2500@130,220|1000:G 2000:B 3000:G
first_last|--controls "Silver Full"|500@212,223 1500@108,223|1000:B 2000:R
EOF_CASES
)

shoot() {  # $1 name, $2 times, then extra ruffle-shoot arguments
  local name=$1 times=$2
  shift 2
  node "$lib/ruffle-shoot.mjs" --movie "$work/$name.swf" --size 320x240 --times "$times" \
    --probe 160,120 --out "$work/shots" --name "$name" "$@" >/dev/null
}

check_colours() {  # $1 name, $2 expectations
  /usr/bin/python3 - "$work/shots/$1.json" "$1" "$2" <<'PY'
import json, sys
result = json.load(open(sys.argv[1]))
name, expect = sys.argv[2], sys.argv[3].split()
assert not result["errors"], (name, result["errors"])
colours = {"R": (255, 0, 0), "G": (0, 255, 0), "B": (0, 0, 255)}
shots = {s["time"]: s["pixels"]["160,120"] for s in result["shots"]}
bad, seen = [], []
for item in expect:
    t, want = item.split(":")
    px = shots[int(t)]
    got = next((k for k, rgb in colours.items() if all(abs(a - b) <= 8 for a, b in zip(px, rgb))), None)
    seen.append(f"{t}:{got or px[:3]}")
    if got != want:
        bad.append(item)
print(f"{name}: {' '.join(seen)}")
assert not bad, f"{name}: wanted {' '.join(bad)}"
PY
}

make_show() {  # $1 name, $2 quillet new options (word-split as the shell would), $3 slides
  eval "\"$QUILLET\" new $3 -o \"$work/$1.qpj\" --duration 2000 $2" >/dev/null
}

while IFS='|' read -r name options clicks expect; do
  make_show "$name" "$options" "$work/red.png $work/lime.png $work/blue.png"
  "$QUILLET" export "$work/$name.qpj" -o "$work/$name.swf" >/dev/null
  times=$(tr ' ' '\n' <<<"$expect" | cut -d: -f1 | paste -sd,)
  click_args=()
  for c in $clicks; do click_args+=(--click "$c"); done
  shoot "$name" "$times" "${click_args[@]}"
  check_colours "$name" "$expect"
done <<<"$cases"

# Paused, the picture holds: the shots 2 s apart are the same, pixel for pixel.
diff_pixels=$(compare -metric AE "$work/shots/pause-1000ms.png" "$work/shots/pause-3000ms.png" null: 2>&1 || true)
[ "$diff_pixels" = 0 ] || { echo "pause: the paused shots differ in $diff_pixels pixels"; exit 1; }

# A show stopped on its first frame starts from the play button (and stays
# started: it is still playing after slide 1 comes round again).
make_show stop '--controls "Dark Bar"' "$work/red.png $work/lime.png"
sed -i '/<swf_data/ { s/movie_start_action="[a-z_]*"/movie_start_action="stop_on_first_frame"/; s/ loop="[a-z]*"/ loop="forever"/ }' "$work/stop.qpj"
"$QUILLET" export "$work/stop.qpj" -o "$work/stop.swf" >/dev/null
shoot stop 1500,3500,4500,6500,8500 --click 3000@160,220
check_colours stop "1500:R 3500:R 4500:R 6500:G 8500:R"

# The mute button changes its picture when clicked, and back.
make_show mute '--mute-control "Speaker Dark"' "$work/red.png"
"$QUILLET" export "$work/mute.qpj" -o "$work/mute.swf" >/dev/null
# (A click beside the stage's corner takes the pointer off the button, so the
# shots show the button at rest.)
shoot mute 500,1000,1500 --click 700@305,225 --click 800@10,10 --click 1200@305,225 --click 1300@10,10
/usr/bin/python3 - "$work/shots/mute.json" <<'PY'
import json, sys
result = json.load(open(sys.argv[1]))
assert not result["errors"], result["errors"]
PY
on_off=$(compare -metric AE -crop 30x30+290+210 "$work/shots/mute-500ms.png" "$work/shots/mute-1000ms.png" null: 2>&1 || true)
on_on=$(compare -metric AE -crop 30x30+290+210 "$work/shots/mute-500ms.png" "$work/shots/mute-1500ms.png" null: 2>&1 || true)
echo "mute: the icon changes in $on_off pixels when muted, $on_on after unmuting"
[ "$on_off" -gt 20 ] && [ "$on_on" -lt 5 ] || { echo "mute: the button does not show its state"; exit 1; }

# The preloader: its first frame shows the empty bar and the text, the next
# the full bar (Ruffle has the whole movie before it plays, so it reads 100 %
# at once), then the show starts. The same movie made to load at half its
# size a second (slow_load.py) fills its bar step by step and starts the show
# once half of it is in (a second after the start), not before. An imported
# preloader's frame comes first (here a control set's movie: its round
# button at the top-left corner).
make_show preload '--preloader' "$work/red.png $work/lime.png"
"$QUILLET" export "$work/preload.qpj" -o "$work/preload.swf" >/dev/null
shoot preload 100,180,600 --probe 200,120
sed -i 's/preload_amount="[0-9]*"/preload_amount="50"/' "$work/preload.qpj"
"$QUILLET" export "$work/preload.qpj" -o "$work/half.swf" >/dev/null
/usr/bin/python3 "$lib/slow_load.py" "$work/half.swf" "$work/slow.swf" $(( $(stat -c %s "$work/half.swf") / 2000 ))
shoot slow 500,900,1500 --probe 90,120 --probe 200,120
make_show imported "--preloader-import \"$(dirname "$QUILLET")/Controls/Round Play.swf\"" "$work/red.png"
"$QUILLET" export "$work/imported.qpj" -o "$work/imported.swf" >/dev/null
shoot imported 100,600 --probe 8,20
/usr/bin/python3 - "$work/shots" <<'PY'
import json, sys
def pixels(name):
    result = json.load(open(f"{sys.argv[1]}/{name}.json"))
    assert not result["errors"], (name, result["errors"])
    return {s["time"]: s["pixels"] for s in result["shots"]}
def near(px, rgb):
    return all(abs(a - b) <= 8 for a, b in zip(px, rgb))
grey, white, red = (64, 64, 64), (255, 255, 255), (255, 0, 0)
p = pixels("preload")
print(f"preload: bar at 200,120: {[p[t]['200,120'][:3] for t in sorted(p)]}")
assert near(p[100]["200,120"], grey), "the empty bar"
assert near(p[180]["200,120"], white), "the full bar in the text colour"
assert near(p[600]["160,120"], red), "the show after the preloader"
s = pixels("slow")
print(f"slow: bar at 90,120 / 200,120: {[(s[t]['90,120'][:3], s[t]['200,120'][:3]) for t in sorted(s)]}")
for t in (500, 900):
    assert near(s[t]["90,120"], white) and near(s[t]["200,120"], grey), f"a part-filled bar at {t} ms"
assert near(s[1500]["160,120"], red), "the show once half is in"
i = pixels("imported")
print(f"imported: corner {i[100]['8,20'][:3]} then {i[600]['8,20'][:3]}")
assert near(i[100]["8,20"], (26, 78, 155)), "the imported preloader's frame (its panel over the black stage)"
assert near(i[600]["8,20"], red), "the show after it"
PY
cp "$work/shots/preload-100ms.png" "$artefacts/preloader-first-frame.png"
cp "$work/shots/preload-180ms.png" "$artefacts/preloader-loaded.png"
convert "$work/shots/slow-500ms.png" "$work/shots/slow-900ms.png" "$work/shots/slow-1500ms.png" +append \
  "$artefacts/preloader-slow-load.png"

# A preloader that cannot be read fails the export before the movie is touched.
echo "not a movie" > "$work/broken.swf"
sed "s|preload_import_src=\"[^\"]*\"|preload_import_src=\"$work/broken.swf\"|" "$work/imported.qpj" > "$work/broken.qpj"
cp "$work/imported.swf" "$work/kept.swf"
if "$QUILLET" export "$work/broken.qpj" -o "$work/kept.swf" 2> "$work/broken.err"; then
  echo "an unreadable preloader was accepted"; exit 1
fi
grep -q "broken.swf" "$work/broken.err" || { echo "the error does not name the preloader:"; cat "$work/broken.err"; exit 1; }
cmp -s "$work/imported.swf" "$work/kept.swf" || { echo "the failed export touched the movie"; exit 1; }

# Every set on a slide, playing and after a click on its play/pause (or mute) button.
sheet=()
while read -r set; do
  [ -n "$set" ] || continue
  size=$(size_of "$set"); h=${size#*x}
  id=$(tr -c 'A-Za-z0-9\n' _ <<<"$set")
  make_show "set_$id" "--controls \"$set\"" "$work/blue.png"
  "$QUILLET" export "$work/set_$id.qpj" -o "$work/set_$id.swf" >/dev/null
  shoot "set_$id" 500,1000 --click "700@160,$((240 - h / 2))" --click 800@10,10
  sheet+=("$work/shots/set_$id-500ms.png" "$work/shots/set_$id-1000ms.png")
done <<<"$playback_sets"
while read -r set; do
  [ -n "$set" ] || continue
  size=$(size_of "$set"); w=${size%x*}; h=${size#*x}
  id=$(tr -c 'A-Za-z0-9\n' _ <<<"$set")
  make_show "set_$id" "--mute-control \"$set\"" "$work/blue.png"
  "$QUILLET" export "$work/set_$id.qpj" -o "$work/set_$id.swf" >/dev/null
  shoot "set_$id" 500,1000 --click "700@$((320 - w / 2)),$((240 - h / 2))" --click 800@10,10
  sheet+=("$work/shots/set_$id-500ms.png" "$work/shots/set_$id-1000ms.png")
done <<<"$mute_sets"
montage "${sheet[@]}" -tile 2x -geometry +4+4 -background white "$artefacts/control-sets-sheet.png" 2>/dev/null ||
  convert "${sheet[@]}" -append "$artefacts/control-sets-sheet.png"

# A program without its control sets says so, and exports nothing.
mkdir -p "$work/bare/bin"
cp "$QUILLET" "$work/bare/bin/quillet"
if QUILLET_CONTROLS_DIR= "$work/bare/bin/quillet" export "$work/pause.qpj" -o "$work/bare.swf" 2> "$work/bare.err"; then
  echo "a show with controls was exported without control sets"; exit 1
fi
grep -q "No control templates were found. Please make sure the program was installed properly." "$work/bare.err" ||
  { echo "unexpected message:"; cat "$work/bare.err"; exit 1; }
[ ! -e "$work/bare.swf" ] || { echo "a movie was written"; exit 1; }

# An outside reader agrees with ours on movies with both kinds of controls,
# and a movie with a preloader and both sets copied in still numbers its
# characters 1..N.
make_show all '--preloader --controls "Silver Full" --mute-control "Speaker Round"' "$work/red.png $work/lime.png"
"$QUILLET" export "$work/all.qpj" -o "$work/all.swf" >/dev/null
for n in pause first_last mute preload imported all; do
  "$QUILLET" info --json "$work/$n.swf" > "$work/$n.json"
  /usr/bin/python3 "$lib/yaswfp_compare.py" "$work/$n.swf" "$work/$n.json"
done
/usr/bin/python3 - "$work/all.json" <<'PY'
import json, sys
tags = json.load(open(sys.argv[1]))["tags"]
ids = [t["id"] for t in tags if t["name"].startswith("Define") and t["code"] not in (13, 17, 23, 62)]
assert sorted(ids) == list(range(1, len(ids) + 1)), f"ids are not 1..{len(ids)}: {sorted(ids)}"
PY

echo "controls playback: ok"
