#!/usr/bin/env bash
# How a show starts, loops and ends, played in Ruffle: a show stopped on its
# first frame shows slide 1 until the stage is clicked, then plays; a pause
# before the show lasts its rounded number of frames; a show looping twice
# stops on its end after the second pass, one looping forever comes round
# again, one without a loop stays on its end; a show that waited for a click
# and loops does not wait again when it comes back to slide 1; the show's
# click action and its end action load another movie in place of the show.
source "${BASH_SOURCE%/*}/lib/common.sh"

for c in red lime blue yellow; do convert -size 320x240 "xc:$c" "$work/$c.png"; done

write_show() {  # $1 = name, $2 = swf_data attributes, $3 = its elements
  cat > "$work/$1.qpj" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="320" height="240" fps="12" bg_color="8421504" use_compression="false">
<slides>
<slide type="image" src="$work/red.png" duration="1000" >
</slide>
<slide type="image" src="$work/lime.png" duration="1000" >
</slide>
<slide type="image" src="$work/blue.png" duration="1000" >
</slide>
</slides>
<swf_data $2>
$3
</swf_data>
</slide_show>
</quillet>

</xml>
XML
  "$QUILLET" export "$work/$1.qpj" -o "$work/$1.swf" >/dev/null
}

# The movie that the click and end actions load: one yellow slide.
cat > "$work/other.qpj" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="320" height="240" fps="12" bg_color="0" use_compression="false">
<slides>
<slide type="image" src="$work/yellow.png" duration="1000" >
</slide>
</slides>
</slide_show>
</quillet>

</xml>
XML
"$QUILLET" export "$work/other.qpj" -o "$work/other.swf" >/dev/null
load_on_click='<mouse_click_action enable="true" action="load_movie" url="other.swf" target="" />'
load_at_end='<movie_end_action enable="true" action="load_movie" url="other.swf" target="_level0" />'

# Each case: name | swf_data attributes | its elements (a variable's name or -) |
# clicks (ms, comma-separated, or -) | time:colour pairs (R red, G lime, B blue,
# Y yellow: the other movie, K the grey background).
# At 12 fps frame n shows from 16*ceil(n*1000/12/16) ms. A pass is 36 frames
# (12 per slide) and the end frame; a loop goes back to the label "slide_1", slide 1's
# first full frame. Times sit well inside a slide.
# 1210 ms of pause round to 15 frames (truncated they would be 14): frame 15,
# at 1264-1343 ms, is still the background; slide 1 comes on frame 16.
cases=$(cat <<'EOF_CASES'
stop|movie_start_action="stop_on_first_frame"|-|5008|500:R 3000:R 5000:R 6500:G 7500:B 9000:B
pause|movie_start_action="play_after_pause" pause_time="1210"|-|-|600:K 1300:K 1400:R 2400:G 3400:B
none|loop="none"|-|-|500:R 1500:G 2500:B 3500:B 8000:B
twice|loop="times" loop_count="2"|-|-|500:R 1500:G 2500:B 3500:R 4600:G 5600:B 6500:B 8000:B 9000:B
forever|loop="forever"|-|-|500:R 2500:B 3500:R 5600:B 6500:R 8000:G 9500:R
stop_forever|movie_start_action="stop_on_first_frame" loop="forever"|-|1008|500:R 3500:B 4500:R 5500:G 6500:B 7500:R
click_load|loop="forever"|load_on_click|1508|1500:G 2000:Y 4000:Y
stop_click_load|movie_start_action="stop_on_first_frame"|load_on_click|1008|500:R 1000:R 2500:G 3500:B
end_load|loop="none"|load_at_end|-|2500:B 3500:Y 5000:Y
EOF_CASES
)

while IFS='|' read -r name attrs elements clicks expect; do
  write_show "$name" "$attrs" "$([ "$elements" = - ] || echo "${!elements}")"
  times=$(tr ' ' '\n' <<<"$expect" | cut -d: -f1 | paste -sd,)
  click_args=()
  if [ "$clicks" != - ]; then
    IFS=, read -ra cl <<<"$clicks"
    for c in "${cl[@]}"; do click_args+=(--click "$c"); done
  fi
  node "$lib/ruffle-shoot.mjs" --movie "$work/$name.swf" --size 320x240 --times "$times" \
    --probe 160,120 --probe 20,20 --network "${click_args[@]}" --out "$work/shots" --name "$name" >/dev/null
  /usr/bin/python3 - "$work/shots/$name.json" "$name" "$expect" <<'PY'
import json, sys
result = json.load(open(sys.argv[1]))
name, expect = sys.argv[2], sys.argv[3].split()
assert not result["errors"], (name, result["errors"])
colours = {"R": (255, 0, 0), "G": (0, 255, 0), "B": (0, 0, 255), "Y": (255, 255, 0), "K": (128, 128, 128)}
shots = {s["time"]: s["pixels"] for s in result["shots"]}
seen, bad = [], []
for item in expect:
    t, want = item.split(":")
    px = shots[int(t)]
    got = None
    for letter, rgb in colours.items():
        if all(abs(a - b) <= 8 for p in ("160,120", "20,20") for a, b in zip(px[p][:3], rgb)):
            got = letter
    seen.append(f"{t}:{got or px['160,120'][:3]}")
    if got != want:
        bad.append(item)
print(f"{name}: {' '.join(seen)}")
assert not bad, f"{name}: wanted {' '.join(bad)}"
PY
done <<<"$cases"

# An outside reader agrees with ours on a movie with the gate and the click button.
for n in stop_click_load twice; do
  "$QUILLET" info --json "$work/$n.swf" > "$work/$n.json"
  /usr/bin/python3 "$lib/yaswfp_compare.py" "$work/$n.swf" "$work/$n.json"
done

# A sheet for looking at: one row per show, its shots in time order.
rows=()
for n in stop pause none twice forever stop_forever click_load stop_click_load end_load; do
  convert $(ls "$work/shots/$n-"*ms.png | sed 's/.*-\([0-9]*\)ms.png$/\1 &/' | sort -n | cut -d' ' -f2) \
    -resize 80x60 -bordercolor white -border 2 +append "$work/row-$n.png"
  rows+=("$work/row-$n.png")
done
convert "${rows[@]}" -background white -append "$artefacts/show-behaviour-sheet.png"
echo "show behaviour: ok"
