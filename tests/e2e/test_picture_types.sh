#!/usr/bin/env bash
# Every stored form of a slide picture plays in Ruffle with the right colours:
# JPEG, lossless 8, 15 and 24 bit, the file's own JPEG bytes, and the three
# forms with an alpha channel (whose half-transparent half shows the black
# stage through it). The picture is 40x30 in four flat quadrants, shown at 80x60.
source "${BASH_SOURCE%/*}/lib/common.sh"

draw=(-size 40x30 xc:'rgb(200,30,40)' +antialias
      -fill 'rgb(20,180,60)' -draw 'rectangle 20,0 39,14'
      -fill 'rgb(30,40,220)' -draw 'rectangle 0,15 19,29'
      -fill 'rgb(250,250,0)' -draw 'rectangle 20,15 39,29')
convert "${draw[@]}" -quality 95 "$work/quad.jpg"
convert "${draw[@]}" \( -size 40x30 xc:white -fill 'gray(50%)' -draw 'rectangle 20,0 39,29' \) \
  -alpha off -compose copy_opacity -composite PNG32:"$work/quad-alpha.png"

types=(jpeg rgb_8 rgb_15 rgb_24 jpeg_import_data jpeg_transparent rgb_8_transparent rgb_24_transparent)
{
  echo '<xml version="1.0">'
  echo '<quillet version_major="1" version_minor="119">'
  echo '<slide_show width="80" height="60" fps="12" bg_color="0">'
  echo '<slides>'
  for t in "${types[@]}"; do
    src="$work/quad-alpha.png"
    [ "$t" = jpeg_import_data ] && src="$work/quad.jpg"
    echo "<slide type=\"image\" src=\"$src\" width=\"80\" height=\"60\" x=\"0\" y=\"0\" quality=\"90\" image_type=\"$t\" duration=\"1000\" >"
    echo '</slide>'
  done
  echo '</slides>'
  echo '</slide_show>'
  echo '</quillet>'
  echo '</xml>'
} > "$work/types.qpj"

"$QUILLET" export "$work/types.qpj" -o "$work/types.swf" >/dev/null
"$QUILLET" info --json "$work/types.swf" > "$work/types.json"
/usr/bin/python3 "$lib/yaswfp_compare.py" "$work/types.swf" "$work/types.json"
/usr/bin/python3 - "$work/types.json" <<'PY'
import json, sys
names = [t["name"] for t in json.load(open(sys.argv[1]))["tags"]]
want = ["DefineBitsJPEG2", "DefineBitsLossless", "DefineBitsLossless", "DefineBitsLossless", "DefineBitsJPEG2",
        "DefineBitsJPEG3", "DefineBitsLossless2", "DefineBitsLossless2"]
got = [n for n in names if n.startswith("DefineBits")]
assert got == want, got
PY

# Each slide holds 12 frames; shoot the middle of each hold.
times=$(/usr/bin/python3 -c 'print(",".join(str(round((12 * k + 6.5) * 1000 / 12)) for k in range(8)))')
node "$lib/ruffle-shoot.mjs" --movie "$work/types.swf" --size 80x60 --times "$times" \
  --probe 10,8 --probe 70,8 --probe 10,52 --probe 70,52 --out "$work/shots" --name types >/dev/null

/usr/bin/python3 - "$work/shots/types.json" "$times" <<'PY'
import json, sys
result = json.load(open(sys.argv[1]))
assert not result["errors"], result["errors"]
times = [int(t) for t in sys.argv[2].split(",")]
shots = {s["time"]: s["pixels"] for s in result["shots"]}
types = ["jpeg", "rgb_8", "rgb_15", "rgb_24", "jpeg_import_data", "jpeg_transparent", "rgb_8_transparent",
         "rgb_24_transparent"]
red, green, blue, yellow = (200, 30, 40), (20, 180, 60), (30, 40, 220), (250, 250, 0)
half = lambda c: tuple(v * 128 / 255 for v in c)  # half transparent over the black stage
failures = []
for k, (name, t) in enumerate(zip(types, times)):
    px = shots[t]
    alpha = name.endswith("transparent")
    want = {"10,8": red, "70,8": half(green) if alpha else green, "10,52": blue,
            "70,52": half(yellow) if alpha else yellow}
    tol = 10 if name in ("rgb_8", "rgb_24", "rgb_8_transparent", "rgb_24_transparent") else 16
    for point, colour in want.items():
        got = px[point][:3]
        if any(abs(g - w) > tol for g, w in zip(got, colour)):
            failures.append(f"{name} at {point}: got {got}, want {[round(c) for c in colour]}")
assert not failures, "\n".join(failures)
print("picture types ok")
PY
echo "picture types playback: ok"
