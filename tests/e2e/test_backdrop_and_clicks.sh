#!/usr/bin/env bash
# What lies around the slides and what clicking a slide does, played in
# Ruffle: a background picture fitted or tiled behind smaller slides; a frame
# and the cover outside the visible rectangle staying above every slide;
# slide click actions jumping forwards, backwards and to a slide (pausing the
# show when asked). Then the bytes of what a headless player cannot show: a
# popup address, the once-only "load on display" URL, the no-print label.
source "${BASH_SOURCE%/*}/lib/common.sh"

for c in red lime blue; do convert -size 160x120 "xc:$c" "$work/$c.png"; done
# 64x64, left half yellow, right half cyan: fitted to the stage its left
# half covers x < 160; tiled it repeats every 64 pixels.
convert -size 32x64 xc:yellow -size 32x64 xc:cyan +append "$work/halves.png"

small='width="160" height="120" x="80" y="60" scale_to_fit="false" auto_align="false"'
full='width="320" height="240" x="0" y="0" scale_to_fit="false" auto_align="false"'
click() {  # $1 type, $2 jump_to, $3 pause_after
  echo "<click_actions enable=\"true\" type=\"$1\" url=\"http://\" target=\"_self\" jump_to=\"$2\" popup=\"false\" pause_after=\"$3\" />"
}

write_show() {  # $1 name, $2 slide_show attributes, $3 slide geometry, $4 swf_data attributes, $5 $6 slide 1 and 2 elements
  cat > "$work/$1.qpj" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="320" height="240" fps="12" bg_color="8421504" $2>
<slides>
<slide type="image" src="$work/red.png" $3 duration="1000" >
$5
</slide>
<slide type="image" src="$work/lime.png" $3 duration="1000" >
$6
</slide>
<slide type="image" src="$work/blue.png" $3 duration="1000" >
</slide>
</slides>
<swf_data $4 />
</slide_show>
</quillet>

</xml>
XML
  "$QUILLET" export "$work/$1.qpj" -o "$work/$1.swf" >/dev/null
}

# name | slide_show attributes | geometry | swf_data attributes | slide 1 element | slide 2 element |
# clicks (ms or -) | probes | time:colours, one letter per probe (R red, G lime, B blue,
# Y yellow, C cyan, K the grey background).
# At 12 fps a slide of 1000 ms is 12 frames; slide 2 starts at 1000 ms, slide 3 at 2000.
cases=$(cat <<EOF_CASES
fit|use_bg_image="true" bg_image="halves.png"|$small|-|-|-|-|160,120 20,20 40,20 300,20|500:RYYC 2500:BYYC
tile|use_bg_image="true" bg_image="halves.png" bg_image_tile="true"|$small|-|-|-|-|160,120 20,20 40,20 84,20|500:RYCY 1500:GYCY
frame|bg_frame="color_flat" bg_frame_color="16776960" bg_frame_left="12" bg_frame_top="12" bg_frame_right="12" bg_frame_bottom="12"|$full|-|-|-|-|160,120 5,120 315,120 160,5 160,235 20,20|500:RYYYYR 1500:GYYYYG 2500:BYYYYB
bounds|show_bounds_left="40" show_bounds_right="280" show_bounds_top="30" show_bounds_bottom="210"|$full|-|-|-|-|160,120 20,120 300,120 160,10 50,40|500:RKKKR 2500:BKKKB
next|-|$full|-|$(click next_slide 1 false)|-|508|160,120|500:R 900:G 1800:B
jump_pause|-|$full|loop="forever"|$(click jump_to_slide 3 true)|-|508|160,120|500:R 900:B 3500:B
previous|-|$full|loop="none"|-|$(click previous_slide 1 false)|1508|160,120|1400:G 1900:R 2800:G
EOF_CASES
)

while IFS='|' read -r name show geometry swf one two clicks probes expect; do
  write_show "$name" "$([ "$show" = - ] || echo "$show")" "$geometry" "$([ "$swf" = - ] || echo "$swf")" \
    "$([ "$one" = - ] || echo "$one")" "$([ "$two" = - ] || echo "$two")"
  times=$(tr ' ' '\n' <<<"$expect" | cut -d: -f1 | paste -sd,)
  args=()
  for p in $probes; do args+=(--probe "$p"); done
  [ "$clicks" = - ] || args+=(--click "$clicks")
  node "$lib/ruffle-shoot.mjs" --movie "$work/$name.swf" --size 320x240 --times "$times" \
    "${args[@]}" --out "$work/shots" --name "$name" >/dev/null
  /usr/bin/python3 - "$work/shots/$name.json" "$name" "$probes" "$expect" <<'PY'
import json, sys
result = json.load(open(sys.argv[1]))
name, probes, expect = sys.argv[2], sys.argv[3].split(), sys.argv[4].split()
assert not result["errors"], (name, result["errors"])
colours = {"R": (255, 0, 0), "G": (0, 255, 0), "B": (0, 0, 255), "Y": (255, 255, 0), "C": (0, 255, 255),
           "K": (128, 128, 128)}
shots = {s["time"]: s["pixels"] for s in result["shots"]}
def letter(rgb):
    for k, want in colours.items():
        if all(abs(a - b) <= 10 for a, b in zip(rgb[:3], want)):
            return k
    return "?"
seen = []
for item in expect:
    t, want = item.split(":")
    got = "".join(letter(shots[int(t)][p]) for p in probes)
    seen.append(f"{t}:{got}")
    assert got == want, f"{name} at {t} ms: probes {probes} gave {got}, wanted {want}"
print(f"{name}: {' '.join(seen)}")
PY
done <<<"$cases"

# A popup click, a URL opened on display and a movie kept out of the print
# menu: what the movie holds for the page and the player to act on.
popup='<click_actions enable="true" type="get_url" url="http://example.com/it'"'"'s" target="_self" popup="true" load_url_on_display="true" on_display_load_url="http://example.com/shown" on_display_load_target="_blank" />
<popup_data width="300" height="200" x="10" y="20" resizable="true" />'
write_show bytes 'disable_print="true"' "$full" "" "$popup" ""
"$QUILLET" info --json "$work/bytes.swf" > "$work/bytes.json"
/usr/bin/python3 "$lib/yaswfp_compare.py" "$work/bytes.swf" "$work/bytes.json"
/usr/bin/python3 - "$work/bytes.swf" <<'PY'
import sys
data = open(sys.argv[1], "rb").read()
# The shown flag is read, then set.
for needle, n in [(b"javascript:HG_Popup('http://example.com/it\\'s','sld_1','width=300,height=200,left=10,top=20,"
                   b"resizable=yes,toolbar=no,", 1), (b"http://example.com/shown\0_blank\0", 1), (b"sld_1_shown", 2),
                  (b"!#p\0", 1)]:
    assert data.count(needle) == n, (needle, data.count(needle))
PY

# A slide written by hand without its sizes keeps its picture's proportions:
# a 160x60 picture is fitted to 320x120 in the middle of the stage, not stretched.
convert -size 160x60 xc:red "$work/wide.png"
cat > "$work/unsized.qpj" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="320" height="240" fps="12" bg_color="8421504">
<slides>
<slide type="image" src="$work/wide.png" duration="1000" >
</slide>
</slides>
</slide_show>
</quillet>
</xml>
XML
"$QUILLET" export "$work/unsized.qpj" -o "$work/unsized.swf" >/dev/null
node "$lib/ruffle-shoot.mjs" --movie "$work/unsized.swf" --size 320x240 --times 500 --probe 160,40 --probe 160,120 \
  --out "$work/shots" --name unsized >/dev/null
/usr/bin/python3 - "$work/shots/unsized.json" <<'PY'
import json, sys
px = json.load(open(sys.argv[1]))["shots"][0]["pixels"]
assert [abs(a - b) <= 10 for a, b in zip(px["160,40"][:3], (128, 128, 128))] == [True] * 3, px
assert [abs(a - b) <= 10 for a, b in zip(px["160,120"][:3], (255, 0, 0))] == [True] * 3, px
PY

rows=()
for n in fit tile frame bounds next jump_pause previous; do
  convert $(ls "$work/shots/$n-"*ms.png | sed 's/.*-\([0-9]*\)ms.png$/\1 &/' | sort -n | cut -d' ' -f2) \
    -resize 160x120 -bordercolor white -border 2 +append "$work/row-$n.png"
  rows+=("$work/row-$n.png")
done
convert "${rows[@]}" -background white -gravity west -append "$artefacts/backdrop-and-clicks-sheet.png"
echo "backdrop and clicks: ok"
