#!/usr/bin/env bash
# A "jpeg_external" slide stores no pixels: the movie loads the picture file
# beside it when it plays (its address escaped: this one has a space and a "#"),
# scaled to the slide's size.
source "${BASH_SOURCE%/*}/lib/common.sh"
mkdir -p "$work/site/my pictures"
# 160x120, green on the left half and blue on the right: the slide shows it at 320x240.
convert -size 80x120 xc:'#00c000' -size 80x120 xc:'#0000c0' +append -quality 95 "$work/site/my pictures/card #1.jpg"
cat > "$work/show.qpj" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="320" height="240" fps="12" bg_color="16711680">
<slides>
<slide type="image" src="$work/site/my pictures/card #1.jpg" image_type="jpeg_external" duration="3000" />
</slides>
</slide_show>
</quillet>
</xml>
XML
"$QUILLET" export "$work/show.qpj" -o "$work/site/show.swf" >/dev/null
"$QUILLET" info --json "$work/site/show.swf" > "$work/show.json"
/usr/bin/python3 "$lib/yaswfp_compare.py" "$work/site/show.swf" "$work/show.json"
# No bitmap in the movie, and it asks for the picture by its place beside the movie.
! grep -q '"DefineBitsJPEG' "$work/show.json"
grep -q "my%20pictures/card%20%231.jpg" "$work/site/show.swf"

# The picture arrives while frame 1 plays and shows from frame 2 on, scaled to
# fill the stage: the green/blue edge lands at x=160 of the 320-wide stage.
node "$lib/ruffle-shoot.mjs" --movie "$work/site/show.swf" --size 320x240 --times 176,2496 --network \
  --probe 60,120 --probe 260,120 --probe 150,5 --probe 158,120 --probe 162,120 --probe 170,235 \
  --out "$work/shots" --name show >/dev/null
for t in 176 2496; do
  /usr/bin/python3 "$lib/expect_pixels.py" "$work/shots/show.json" \
    "$t 60,120 0,192,0 12" "$t 150,5 0,192,0 12" "$t 158,120 0,192,0 12" \
    "$t 260,120 0,0,192 12" "$t 162,120 0,0,192 12" "$t 170,235 0,0,192 12"
done
echo "external picture: ok"
