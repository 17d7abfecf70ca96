#!/usr/bin/env bash
# A slide's crop and its own size survive a save and a reload, and the movie
# shows exactly that rectangle: the bottom-right quarter of a 2560x1600
# picture, shown at 300x200 with its top-left corner at (10, 20).
source "${BASH_SOURCE%/*}/lib/common.sh"
# Four quarters: red, green / blue, yellow.
convert \( -size 1280x800 xc:'#e00000' xc:'#00c000' +append \) \
        \( -size 1280x800 xc:'#0000d0' xc:'#e0e000' +append \) -append -quality 95 "$work/quarters.jpg"
"$QUILLET" new "$work/quarters.jpg" -o "$work/show.qpj" --stage 320x240 >/dev/null
# The user's edits, as the panels save them.
/usr/bin/python3 - "$work/show.qpj" <<'PY'
import re, sys
path = sys.argv[1]
text = open(path, encoding="latin-1").read()
edits = {"crop": "true", "crop_left": "1280", "crop_top": "800", "crop_right": "2560", "crop_bottom": "1600",
         "scale_to_fit": "false", "auto_align": "false", "width": "300", "height": "200", "x": "10", "y": "20"}
def edit(match):
    tag = match.group(0)
    for name, value in edits.items():
        tag, n = re.subn(r'\b%s="[^"]*"' % name, '%s="%s"' % (name, value), tag)
        if n == 0:
            tag = tag.replace("<slide ", '<slide %s="%s" ' % (name, value), 1)
    return tag
text = re.sub(r"<slide [^>]*>", edit, text, count=1)
open(path, "w", encoding="latin-1").write(text)
PY
"$QUILLET" resave "$work/show.qpj" -o "$work/again.qpj"
for name in 'crop="true"' 'crop_left="1280"' 'crop_bottom="1600"' 'width="300"' 'height="200"' 'x="10"' 'y="20"'; do
  grep -q "$name" "$work/again.qpj" || { echo "resave lost $name"; exit 1; }
done
"$QUILLET" export "$work/again.qpj" -o "$work/show.swf" >/dev/null

# Frame 1 is the slide at rest (no transition into the first slide).
node "$lib/ruffle-shoot.mjs" --movie "$work/show.swf" --size 320x240 --times 1000 \
  --probe 12,22 --probe 160,120 --probe 307,217 --probe 5,15 --probe 315,120 --probe 160,228 \
  --out "${QUILLET_BUILD_DIR:-$work}/e2e-shots" --name saved-crop >/dev/null
/usr/bin/python3 "$lib/expect_pixels.py" "${QUILLET_BUILD_DIR:-$work}/e2e-shots/saved-crop.json" \
  "1000 12,22 224,224,0 16" "1000 160,120 224,224,0 16" "1000 307,217 224,224,0 16" \
  "1000 5,15 0,0,0 16" "1000 315,120 0,0,0 16" "1000 160,228 0,0,0 16"
echo "saved crop: ok"
