#!/usr/bin/env bash
# Overlay effects played in Ruffle over a still photo: every effect changes
# the picture between two frames half a second apart while the photo stays
# recognisable under it; without an effect the two frames are equal. Writes
# the contact sheet artefacts/overlays-sheet.png. A show mixing every effect
# (one used twice) defines each effect once, keeps its character ids 1..N
# without gaps, and reads the same in yaswfp as in `quillet info`.
set -euo pipefail
: "${QUILLET:?}" "${QUILLET_SOURCE_DIR:?}"
lib="$QUILLET_SOURCE_DIR/tests/e2e/lib"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QUILLET_CONFIG_DIR="$work/config" XDG_CACHE_HOME="$work/cache"
artefacts="${QUILLET_BUILD_DIR:-$work}/artefacts"
mkdir -p "$artefacts"

photo=/usr/share/backgrounds/mate/nature/Garden.jpg
if [ ! -f "$photo" ]; then
  convert -size 640x480 -seed 7 plasma: "$work/photo.jpg"
  photo="$work/photo.jpg"
fi

# 12 fps: the shots fall on frames 36 and 42, long after the slide came in.
size=400x300
t1=3000 t2=3500
effects=("None" "Bubbles" "Fireworks" "Hearts" "Old Movie" "Snow" "Strobe")
for effect in "${effects[@]}"; do
  n=${effect// /_}
  "$QUILLET" new "$photo" -o "$work/$n.qpj" --stage $size --fps 12 --duration 8000 --overlay "$effect" >/dev/null
  "$QUILLET" export "$work/$n.qpj" -o "$work/$n.swf" >/dev/null
  node "$lib/ruffle-shoot.mjs" --movie "$work/$n.swf" --size $size --times $t1,$t2 --out "$work/shots" \
    --name "$n" >/dev/null
  /usr/bin/python3 -c 'import json, sys; e = json.load(open(sys.argv[1]))["errors"]; assert not e, e' \
    "$work/shots/$n.json"
done

# ImageMagick's measures: AE counts pixels differing by more than the fuzz,
# MAE is the mean difference (0..1), NCC the correlation of the two pictures.
measure() {  # $1 metric, $2 $3 pictures, [$4 fuzz]
  compare -metric "$1" ${4:+-fuzz "$4"} "$2" "$3" null: 2>&1 | sed -E 's/^[^(]*\(([^)]*)\).*/\1/' || true
}

fail=0
plain1="$work/shots/None-${t1}ms.png" plain2="$work/shots/None-${t2}ms.png"
still=$(measure AE "$plain1" "$plain2" 1%)
echo "None: $still pixels change"
[ "$still" = 0 ] || { echo "FAIL: without an effect the frames differ"; fail=1; }
pixels=$(( ${size%x*} * ${size#*x} ))
for effect in "${effects[@]:1}"; do
  n=${effect// /_}
  a="$work/shots/$n-${t1}ms.png" b="$work/shots/$n-${t2}ms.png"
  moved=$(measure AE "$a" "$b" 3%)
  line="$effect: $moved pixels change"
  # Moving: at least 0.3 % of the stage changes between the two frames.
  [ "$moved" -ge $(( pixels * 3 / 1000 )) ] || { line+=" (too few)"; fail=1; }
  for pair in "$a:$plain1" "$b:$plain2"; do
    ncc=$(measure NCC "${pair%%:*}" "${pair##*:}")
    mae=$(measure MAE "${pair%%:*}" "${pair##*:}")
    line+="; vs plain NCC $ncc MAE $mae"
    # Recognisable: still correlated with the plain photo, not washed out
    # (a strobe's flash at its brightest whitens the photo by half).
    /usr/bin/python3 -c 'import sys; sys.exit(0 if float(sys.argv[1]) >= 0.6 and float(sys.argv[2]) <= 0.35 else 1)' \
      "$ncc" "$mae" || { line+=" (photo lost)"; fail=1; }
  done
  echo "$line"
done

# The contact sheet: each effect at both times.
sheet=()
for effect in "${effects[@]}"; do
  n=${effect// /_}
  sheet+=(-label "$effect ${t1} ms" "$work/shots/$n-${t1}ms.png" -label "$effect ${t2} ms" "$work/shots/$n-${t2}ms.png")
done
montage "${sheet[@]}" -tile 4x -geometry +4+4 -font DejaVu-Sans -pointsize 14 "$artefacts/overlays-sheet.png"

# One show with every effect, Snow on two slides.
"$QUILLET" new "$photo" "$photo" "$photo" "$photo" "$photo" "$photo" "$photo" -o "$work/mixed.qpj" \
  --stage $size --duration 1000 --overlay Snow >/dev/null
/usr/bin/python3 - "$work/mixed.qpj" <<'PY'
import sys
path = sys.argv[1]
text = open(path, encoding="latin-1").read()
parts = text.split('<swf_fx name="Snow" />')
names = ["Snow", "Bubbles", "Snow", "Fireworks", "Hearts", "Old Movie", "Strobe"]
assert len(parts) == len(names) + 1, len(parts)
out = parts[0] + "".join(f'<swf_fx name="{n}" />' + p for n, p in zip(names, parts[1:]))
open(path, "w", encoding="latin-1").write(out)
PY
"$QUILLET" export "$work/mixed.qpj" -o "$work/mixed.swf" >/dev/null
"$QUILLET" info --json "$work/mixed.swf" > "$work/mixed.json"
/usr/bin/python3 "$lib/yaswfp_compare.py" "$work/mixed.swf" "$work/mixed.json"
/usr/bin/python3 - "$work/mixed.swf" "$work/mixed.json" <<'PY'
import json, sys
import yaswfp.swfparser as sp
info = json.load(open(sys.argv[2]))
ids = [t["id"] for t in info["tags"] if "id" in t]
assert ids == list(range(1, len(ids) + 1)), f"character ids not 1..N: {ids}"
# Each effect's sprite is placed over its slide, Snow's one sprite twice.
tags = sp.SWFParser(open(sys.argv[1], "rb")).tags
sprites = {t.CharacterID for t in tags if t.name == "DefineSprite"}
placed = [t.CharacterId for t in tags if t.name == "PlaceObject2" and getattr(t, "CharacterId", None) in sprites]
print("mixed show: effect sprites placed", placed)
assert len(placed) == 7 and len(set(placed)) == 6 and placed[0] == placed[2], placed
PY
exit $fail
