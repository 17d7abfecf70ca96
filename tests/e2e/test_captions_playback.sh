#!/usr/bin/env bash
# Captions play in Ruffle where, when and in the colour they should: a caption
# waits for its start time, a fade is half way at its sixth frame of twelve, a
# caption flying from the right travels the stage width in steps of W/12 and
# stops W mod 12 twips short, a caption with a duration leaves, a slide's
# captions leave with the slide, the show's caption stays throughout; a
# 48-pixel line in regular, bold and oblique drawn by the player matches
# ImageMagick's FreeType rendering of the same faces (mean errors printed
# and bounded).
source "${BASH_SOURCE%/*}/lib/common.sh"

line='Hamburgefons AVé üß'
# Colours are written lowest byte red: 255 red, 65280 green, 16711680 blue,
# 65535 yellow, 16777215 white.
cat > "$work/show.qpj" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="640" height="480" fps="12" bg_color="0">
<slides>
<slide type="blank" duration="3000" >
<caption_data>
<caption txt="Waits" fnt_name="DejaVu Sans" font_size="36" color="255" x="40" y="40" h_align="left" v_align="top" align_to_doc="false" start_time="1000" effect="None" />
<caption txt="Fades" fnt_name="DejaVu Sans" font_size="36" font_bold="true" color="65280" h_align="center" v_align="center" align_to_doc="true" effect="fade IN" />
<caption txt="Flies" fnt_name="DejaVu Sans" font_size="36" font_italic="true" color="16711680" x="40" y="300" h_align="left" v_align="top" align_to_doc="false" effect="Fly From Right" />
<caption txt="Leaves" fnt_name="No Such Face" font_size="24" color="65535" x="400" y="40" h_align="left" v_align="top" align_to_doc="false" duration="1000" show_till_next="false" />
</caption_data>
</slide>
<slide type="blank" duration="2000" >
<caption_data>
<caption txt="$line" fnt_name="DejaVu Sans" font_size="36" color="16777215" x="20" y="120" h_align="left" v_align="top" align_to_doc="false" />
<caption txt="$line" fnt_name="DejaVu Sans" font_size="36" font_bold="true" color="16777215" x="20" y="220" h_align="left" v_align="top" align_to_doc="false" />
<caption txt="$line" fnt_name="DejaVu Sans" font_size="36" font_italic="true" color="16777215" x="20" y="320" h_align="left" v_align="top" align_to_doc="false" />
</caption_data>
</slide>
</slides>
<caption_data>
<caption txt="Show" fnt_name="DejaVu Serif" font_size="18" color="16777215" x="-8" y="8" h_align="right" v_align="top" align_to_doc="true" />
</caption_data>
</slide_show>
</quillet>
</xml>
XML

"$QUILLET" export "$work/show.qpj" -o "$work/show.swf" >"$work/export.out" 2>&1
grep -q 'caption 4 of slide 1: the font "No Such Face" is not installed; DejaVu Sans is used instead' "$work/export.out" ||
  { cat "$work/export.out"; echo "no warning for the missing font"; exit 1; }

# Debian's yaswfp reads the fonts, texts and sprites as our reader does.
"$QUILLET" info --json "$work/show.swf" > "$work/show.json"
/usr/bin/python3 "$lib/yaswfp_compare.py" "$work/show.swf" "$work/show.json"

# Slide 1 holds frames 1-36 and slide 2 starts at 37. At 12 fps frame n shows
# from 16*ceil(n*1000/12/16) ms: frame 6 at 512, 12 at 1008, 13 at 1088, 37 at 3088.
node "$lib/ruffle-shoot.mjs" --movie "$work/show.swf" --size 640x480 --times 130,550,1040,1200,3200 \
  --out "$work/shots" --name cap >/dev/null
/usr/bin/python3 - "$work/shots/cap.json" <<'PY'
import json, sys
result = json.load(open(sys.argv[1]))
assert not result["errors"], result["errors"]
PY

shot() { echo "$work/shots/cap-$1ms.png"; }
# Box of the pixels near a colour: "w h x y", or "0 0 0 0" when there are none.
box() {
  local out
  out=$(convert "$(shot "$1")" -crop "$3" +repage -fuzz 20% -fill black +opaque "$2" -fill white -opaque "$2" \
        -trim -format '%w %h %X %Y' info: 2>/dev/null)
  case "$out" in 1\ 1\ *) echo "0 0 0 0" ;; *) echo "$out" ;; esac
}
# The largest value of one channel (0-255) in a region.
peak() { convert "$(shot "$1")" -crop "$3" +repage -channel "$2" -separate -format '%[fx:round(255*maxima)]' info:; }

fail=0
check() { if ! eval "$2"; then echo "FAIL: $1 ($2)"; fail=1; else echo "ok: $1"; fi; }

# "Waits" (red, left-top at 40,40) is not there at frame 12 and is at frame 13.
read -r w h x y < <(box 1040 '#ff0000' 640x480+0+0)
check "red caption waits for its start" "[ $w -eq 0 ]"
read -r w h x y < <(box 1200 '#ff0000' 640x480+0+0)
echo "red caption: ${w}x${h}+${x}+${y}"
check "red caption at its place" "[ $x -ge 40 ] && [ $x -le 46 ] && [ $y -ge 40 ] && [ $y -le 56 ] && [ $h -ge 30 ] && [ $h -le 40 ]"

# "Fades" (green, centred on the stage): half opaque at frame 6, opaque after.
g6=$(peak 550 G 640x120+0+180); g13=$(peak 1200 G 640x120+0+180)
echo "fade: green peak $g6 at frame 6, $g13 at frame 13"
check "fade half way at frame 6" "[ $g6 -ge 118 ] && [ $g6 -le 138 ]"
check "fade complete" "[ $g13 -ge 250 ]"
read -r w h x y < <(box 1200 '#00ff00' 640x480+0+0)
check "faded caption centred" "[ \$(( 2 * x + w - 640 )) -le 4 ] && [ \$(( 640 - 2 * x - w )) -le 4 ] && [ \$(( 2 * y + h - 480 )) -le 16 ] && [ \$(( 480 - 2 * y - h )) -le 16 ]"

# "Flies" (blue): at frame 6 it is 12800 - 6 * 1066 = 6404 twips (320.2 px)
# right of where it stops, 8 twips (0.4 px) short of its place.
read -r w1 h1 x1 y1 < <(box 550 '#0000ff' 640x480+0+0)
read -r w2 h2 x2 y2 < <(box 1200 '#0000ff' 640x480+0+0)
echo "flight: x $x1 at frame 6, $x2 at rest"
check "flight step" "[ \$(( x1 - x2 )) -ge 319 ] && [ \$(( x1 - x2 )) -le 321 ] && [ $y1 -eq $y2 ]"
check "flight lands" "[ $x2 -ge 40 ] && [ $x2 -le 46 ]"

# "Leaves" (yellow, fallback face): shown for its second, then gone.
read -r w h x y < <(box 550 '#ffff00' 640x480+0+0)
check "timed caption shown" "[ $w -gt 20 ]"
read -r w h x y < <(box 1200 '#ffff00' 640x480+0+0)
check "timed caption gone" "[ $w -eq 0 ]"

# Slide 2: slide 1's captions have left; the show's caption stays at the top right.
read -r w h x y < <(box 3200 '#ff0000' 640x480+0+0)
check "slide captions leave with their slide" "[ $w -eq 0 ]"
for t in 130 3200; do
  read -r w h x y < <(box $t '#ffffff' 320x60+320+0)
  check "show caption at ${t} ms" "[ $w -gt 20 ] && [ \$(( 320 + x + w )) -ge 626 ] && [ \$(( 320 + x + w )) -le 632 ]"
done

# The 48-pixel lines (regular, bold, oblique) against ImageMagick's rendering
# of the same faces: both cut to their ink and compared.
compare_line() {  # $1 = top of the caption, $2 = ImageMagick's face, $3 = name
  local ours="$work/$3-ours.png" theirs="$work/$3-theirs.png" ow oh tw th mae
  convert "$(shot 3200)" -crop 630x80+5+$(( $1 - 10 )) +repage -colorspace gray -trim +repage "$ours"
  convert -background black -fill white -font "$2" -pointsize 48 label:"$line" -colorspace gray -trim +repage "$theirs"
  read -r ow oh < <(identify -format '%w %h\n' "$ours")
  read -r tw th < <(identify -format '%w %h\n' "$theirs")
  echo "$3 ink: ours ${ow}x${oh}, ImageMagick ${tw}x${th}"
  check "$3 line size matches" "[ \$(( ow - tw )) -le 3 ] && [ \$(( tw - ow )) -le 3 ] && [ \$(( oh - th )) -le 2 ] && [ \$(( th - oh )) -le 2 ]"
  # Piece by piece: runs of inked columns (a letter, or letters that touch),
  # each aligned at its own left ink edge. ImageMagick places glyphs at whole
  # pixels (hinted advances) and the player at fractions of one, so the line
  # drifts by up to 2 pixels over its width; that is spacing, not glyph shape.
  convert "$ours" -depth 8 "gray:$ours.raw"; convert "$theirs" -depth 8 "gray:$theirs.raw"
  mae=$(/usr/bin/python3 - "$ours.raw" "$ow" "$oh" "$theirs.raw" "$tw" "$th" <<'PY'
import sys
def load(path, w, h):
    data = open(path, "rb").read()
    return [data[y * w:(y + 1) * w] for y in range(h)], w, h
def words(img):
    rows, w, h = img
    inked = [any(rows[y][x] > 40 for y in range(h)) for x in range(w)]
    spans, x = [], 0
    while x < w:
        if not inked[x]:
            x += 1
            continue
        start, gap = x, 0
        while x < w and gap < 1:
            gap = 0 if inked[x] else gap + 1
            x += 1
        spans.append((start, x - gap))
    return spans
a = load(sys.argv[1], int(sys.argv[2]), int(sys.argv[3]))
b = load(sys.argv[4], int(sys.argv[5]), int(sys.argv[6]))
wa, wb = words(a), words(b)
assert len(wa) == len(wb), (wa, wb)
total = count = 0
for (sa, ea), (sb, eb) in zip(wa, wb):
    for y in range(max(a[2], b[2])):
        for dx in range(max(ea - sa, eb - sb)):
            pa = a[0][y][sa + dx] if y < a[2] and sa + dx < a[1] else 0
            pb = b[0][y][sb + dx] if y < b[2] and sb + dx < b[1] else 0
            total += abs(pa - pb)
            count += 1
print(f"{total / (255.0 * count):.4f}")
PY
  )
  echo "$3 48 px line, piece by piece: mean absolute error $mae of full scale"
  check "$3 line matches FreeType's rendering" "/usr/bin/python3 -c 'import sys; sys.exit(0 if float(\"$mae\") < 0.07 else 1)'"
}
# Mean errors when written: regular 0.041, bold 0.040, oblique 0.054.
compare_line 120 DejaVu-Sans regular
compare_line 220 DejaVu-Sans-Bold bold
compare_line 320 DejaVu-Sans-Oblique oblique
if [ -n "${QUILLET_BUILD_DIR:-}" ]; then
  mkdir -p "$QUILLET_BUILD_DIR/artefacts"
  convert "$work"/{regular,bold,oblique}-{ours,theirs}.png -background black -append \
    "$QUILLET_BUILD_DIR/artefacts/caption-lines.png"
  cp "$(shot 550)" "$QUILLET_BUILD_DIR/artefacts/captions-550ms.png"
fi

[ $fail -eq 0 ] || exit 1
echo "captions playback: ok"
