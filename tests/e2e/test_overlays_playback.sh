#!/usr/bin/env bash
# Overlay effects played in Ruffle over a still photo: every effect changes
# the picture between two frames half a second apart while the photo stays
# recognisable under it; without an effect the two frames are equal. Writes
# the contact sheet artefacts/overlays-sheet.png. The show, every effect on a
# slide of its own and one used twice, defines each effect once, keeps its
# character ids 1..N without gaps and reads the same in yaswfp as in
# `quillet info`.
source "${BASH_SOURCE%/*}/lib/common.sh"

photo=/usr/share/backgrounds/mate/nature/Garden.jpg
if [ ! -f "$photo" ]; then
  convert -size 640x480 -seed 7 plasma: "$work/photo.jpg"
  photo="$work/photo.jpg"
fi

# One show, one slide of 2 s per effect, "None" first and Snow twice (it is
# defined once). At 12 fps slide k (from 0) starts at k*2000 ms; the shots
# fall 1.0 s and 1.5 s into each slide, frames 12 and 18 of its 24.
size=400x300
effects=("None" "Bubbles" "Fireworks" "Hearts" "Old Movie" "Snow" "Strobe" "Snow")
photos=()
for _ in "${effects[@]}"; do photos+=("$photo"); done
"$QUILLET" new "${photos[@]}" -o "$work/show.qpj" --stage $size --fps 12 --duration 2000 --overlay Snow >/dev/null
/usr/bin/python3 - "$work/show.qpj" "${effects[@]}" <<'PY'
import sys
path, names = sys.argv[1], sys.argv[2:]
text = open(path, encoding="latin-1").read()
parts = text.split('<swf_fx name="Snow" />')
assert len(parts) == len(names) + 1, len(parts)
out = parts[0] + "".join(f'<swf_fx name="{n}" />' + p for n, p in zip(names, parts[1:]))
open(path, "w", encoding="latin-1").write(out)
PY
"$QUILLET" export "$work/show.qpj" -o "$work/show.swf" >/dev/null
times=()
for k in "${!effects[@]}"; do times+=($(( k * 2000 + 1000 )) $(( k * 2000 + 1500 ))); done
node "$lib/ruffle-shoot.mjs" --movie "$work/show.swf" --size $size --times "$(IFS=,; echo "${times[*]}")" \
  --out "$work/shots" --name show >/dev/null
/usr/bin/python3 -c 'import json, sys; e = json.load(open(sys.argv[1]))["errors"]; assert not e, e' "$work/shots/show.json"
shot() { echo "$work/shots/show-$(( $1 * 2000 + $2 ))ms.png"; }  # slide k, ms into it

# ImageMagick's measures: AE counts pixels differing by more than the fuzz,
# MAE is the mean difference (0..1), NCC the correlation of the two pictures.
measure() {  # $1 metric, $2 $3 pictures, [$4 fuzz]
  compare -metric "$1" ${4:+-fuzz "$4"} "$2" "$3" null: 2>&1 | sed -E 's/^[^(]*\(([^)]*)\).*/\1/' || true
}

fail=0
plain1=$(shot 0 1000) plain2=$(shot 0 1500)
still=$(measure AE "$plain1" "$plain2" 1%)
echo "None: $still pixels change"
[ "$still" = 0 ] || { echo "FAIL: without an effect the frames differ"; fail=1; }
pixels=$(( ${size%x*} * ${size#*x} ))
for k in $(seq 1 $(( ${#effects[@]} - 1 ))); do
  effect=${effects[$k]}
  a=$(shot "$k" 1000) b=$(shot "$k" 1500)
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

# The contact sheet: each effect 1.0 s and 1.5 s into its slide.
sheet=()
for k in $(seq 0 $(( ${#effects[@]} - 2 ))); do
  sheet+=(-label "${effects[$k]} 1.0 s" "$(shot "$k" 1000)" -label "${effects[$k]} 1.5 s" "$(shot "$k" 1500)")
done
montage "${sheet[@]}" -tile 4x -geometry +4+4 -font DejaVu-Sans -pointsize 14 "$artefacts/overlays-sheet.png"

# The movie reads the same in yaswfp as in `quillet info`; its character ids
# run 1..N; each effect's sprite is placed over its slide, Snow's one sprite twice.
"$QUILLET" info --json "$work/show.swf" > "$work/show.json"
/usr/bin/python3 "$lib/yaswfp_compare.py" "$work/show.swf" "$work/show.json"
/usr/bin/python3 - "$work/show.swf" "$work/show.json" <<'PY'
import json, sys
import yaswfp.swfparser as sp
info = json.load(open(sys.argv[2]))
ids = [t["id"] for t in info["tags"] if "id" in t]
assert ids == list(range(1, len(ids) + 1)), f"character ids not 1..N: {ids}"
tags = sp.SWFParser(open(sys.argv[1], "rb")).tags
sprites = {t.CharacterID for t in tags if t.name == "DefineSprite"}
placed = [t.CharacterId for t in tags if t.name == "PlaceObject2" and getattr(t, "CharacterId", None) in sprites]
print("effect sprites placed", placed)
assert len(placed) == 7 and len(set(placed)) == 6 and placed[4] == placed[6], placed
PY
exit $fail
