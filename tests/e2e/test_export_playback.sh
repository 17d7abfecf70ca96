#!/usr/bin/env bash
# A show of real photos exported by `quillet export` plays in Ruffle as it should:
# photo 1 during its hold, a blend half way through a 2 s cross fade, photo 2
# after it; a pan/zoom slide moved and scaled between its first and last camera
# frame; the compressed movie plays the same; Debian's yaswfp agrees with our reader.
source "${BASH_SOURCE%/*}/lib/common.sh"
photos=/usr/share/backgrounds/mate/nature

# Slide 3 is a white card with a red square, so its camera move can be measured.
convert -size 320x240 xc:white -fill '#ff0000' -draw 'rectangle 140,100 179,139' "$work/card.png"

write_show() {  # $1 = file, $2 = use_compression
  cat > "$1" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="320" height="240" fps="12" bg_color="0" use_compression="$2">
<slides>
<slide type="image" src="$photos/GreenMeadow.jpg" duration="2000" >
</slide>
<slide type="image" src="$photos/Storm.jpg" duration="2000" >
<transition_in>
<transition name="Cross Fade" duration="2000" />
</transition_in>
</slide>
<slide type="image" src="$work/card.png" duration="2000" >
<transition_in>
<transition name="Cross Fade" duration="1000" />
</transition_in>
<pan_zoom>
<camera_fx name="pan_zoom" duration="2000" pan_x="-1600" pan_y="-1200" zoom="1.5" />
</pan_zoom>
</slide>
</slides>
</slide_show>
</quillet>

</xml>
XML
}
write_show "$work/show.qpj" false
write_show "$work/packed.qpj" true

"$QUILLET" export "$work/show.qpj" -o "$work/show.swf" >/dev/null
"$QUILLET" export "$work/packed.qpj" -o "$work/packed.swf" >/dev/null
[ "$(head -c 3 "$work/packed.swf")" = CWS ] || { echo "packed.swf is not compressed"; exit 1; }

# Frames: slide 1 holds 1-24; the cross fade is 25-48 (half way at 36); slide 2
# holds 49-72; slide 3 fades in 73-84, moves 85-108, holds 109-132; the end frame 133.
for movie in show packed; do
  "$QUILLET" info --json "$work/$movie.swf" > "$work/$movie.json"
  /usr/bin/python3 "$lib/yaswfp_compare.py" "$work/$movie.swf" "$work/$movie.json"
  /usr/bin/python3 - "$work/$movie.json" <<'PY'
import json, sys
info = json.load(open(sys.argv[1]))
assert info["frameCount"] == 133, info["frameCount"]
ids = [t["id"] for t in info["tags"] if "id" in t]
assert ids == list(range(1, len(ids) + 1)), ids
PY
done

# Frame n shows from 16*ceil(n*1000/12/16) ms: frames 12, 36, 60, 85, 108.
times=1008,3008,5008,7088,9008
for movie in show packed; do
  node "$lib/ruffle-shoot.mjs" --movie "$work/$movie.swf" --size 320x240 --times $times \
    --probe 160,120 --probe 60,120 --probe 260,120 --out "$work/shots" --name "$movie" >/dev/null
done

/usr/bin/python3 - "$work/shots/show.json" "$work/shots/packed.json" <<'PY'
import json, sys
show = json.load(open(sys.argv[1]))
packed = json.load(open(sys.argv[2]))
for result in (show, packed):
    assert not result["errors"], result["errors"]
shots = {s["time"]: s["pixels"] for s in show["shots"]}
points = ["160,120", "60,120", "260,120"]
hold1, half, hold2 = shots[1008], shots[3008], shots[5008]
distinct = 0
for p in points:
    a, m, b = hold1[p][:3], half[p][:3], hold2[p][:3]
    if sum(abs(x - y) for x, y in zip(a, b)) > 60:
        distinct += 1
        # Both slides fade (in at 0.5 over out at 0.5, over black): 0.5 B + 0.25 A.
        want = [0.5 * y + 0.25 * x for x, y in zip(a, b)]
        assert all(abs(w - v) <= 14 for w, v in zip(want, m)), (p, a, m, b, want)
assert distinct >= 2, "the two photos look alike at the probes"
# The compressed movie shows the same pixels.
for s, t in zip(show["shots"], packed["shots"]):
    assert s["pixels"] == t["pixels"], (s["time"], s["pixels"], t["pixels"])
print("playback ok")
PY

# The red square grows by half and moves between the first and last camera frame.
box() { convert "$1" -fuzz 25% -fill black +opaque '#ff0000' -fill white -opaque '#ff0000' -trim -format '%w %h %X %Y\n' info:; }
read -r w1 h1 x1 y1 < <(box "$work/shots/show-7088ms.png")
read -r w2 h2 x2 y2 < <(box "$work/shots/show-9008ms.png")
echo "camera: first ${w1}x${h1}${x1}${y1}, last ${w2}x${h2}${x2}${y2}"
/usr/bin/python3 - "$w1" "$h1" "$x1" "$y1" "$w2" "$h2" "$x2" "$y2" <<'PY'
import sys
w1, h1, x1, y1, w2, h2, x2, y2 = (int(v) for v in sys.argv[1:])
# First camera frame: zoom 1 + 0.5/24, last: 1.5; the square is 40 px at rest.
assert 38 <= w1 <= 45 and 38 <= h1 <= 45, (w1, h1)
assert 57 <= w2 <= 63 and 57 <= h2 <= 63, (w2, h2)
# Scaled about the slide's corner and panned by (-80, -60) px: 140*1.5-80 = 130.
assert abs(x2 - 130) <= 3 and abs(y2 - 90) <= 3, (x2, y2)
PY
echo "export playback: ok"
