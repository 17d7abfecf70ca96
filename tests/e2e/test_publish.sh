#!/usr/bin/env bash
# quillet publish end to end: every target we build, written into the output
# folder and nowhere else; the Ruffle page plays slide 1 in Chromium; the
# projectors carry the movie in each player's layout (the full-screen copy
# still plays); hexbin unpacks the .hqx and refuses a damaged one; existing
# files, a missing or unwritable folder and names that climb out of it.
source "${BASH_SOURCE%/*}/lib/common.sh"
fail() { echo "FAIL: $*" >&2; exit 1; }
cd "$work"

mkdir -p pics players
convert -size 320x240 xc:'#e00000' -quality 95 pics/red.jpg
convert -size 320x240 xc:'#0000e0' -quality 95 pics/blue.jpg
head -c 4099 /dev/urandom > players/windows-player.exe
head -c 2048 /dev/urandom > players/mac-player.data
head -c 700 /dev/urandom > players/mac-player.rsrc

# project FILE SWF-NAME: a two-slide show publishing into "out" beside it.
project() {
  cat > "$1" <<XML
<xml version="1.0">
<quillet version_major="1" version_minor="119">
<slide_show width="320" height="240" fps="12" bg_color="0">
<slides>
<slide type="image" src="$work/pics/red.jpg" duration="4000" />
<slide type="image" src="$work/pics/blue.jpg" duration="2000" />
</slides>
</slide_show>
<publish_data output="out" use_default_base_filename="true" default_base_filename="show" >
<swf publish="true" filename="$2" />
<flv publish="true" filename="show.flv" />
<html publish="true" filename="show.html">
<html_swf swf="show.swf" orig_width="320" orig_height="240" width="320" height="240" bgcolor="16777215" auto_play="true" loop="true" display_menu="true" device_font="false" popup_function="false" dimension_type="matchmovie" quality="high" window_mode="window" html_align="default" scale="showall" flash_align="default" />
</html>
<mac_projector publish="true" filename="show.hqx">
<swf_projector fullscreen="false" allowscale="true" showmenu="true" />
</mac_projector>
<win_projector publish="true" filename="show.exe">
<swf_projector fullscreen="true" allowscale="true" showmenu="true" />
</win_projector>
<quicktime_mov publish="false" filename="show.mov">
<quicktime_swf />
</quicktime_mov>
<screensaver publish="false" filename="show.scr" publish_installer="false" installer_filename="showSS.exe">
<screensaver_swf />
</screensaver>
<ruffle_page publish="true" filename="show-ruffle.html" />
</publish_data>
</quillet>
</xml>
XML
}
project show.qpj show.swf
mkdir out
snapshot() { find "$work" -path "$work/cache" -prune -o -path "$work/config" -prune -o -print | sort; }

# 1. Every target, in a pipe.
"$QUILLET" publish show.qpj --players players </dev/null >log 2>err || fail "publish: $(cat err)"
[ "$(tail -1 log)" = "Publishing has completed." ] || fail "no completion message: $(cat log)"
grep -q "FLV target is not available" err || fail "the FLV target was not reported"
(cd out && ls -A | LC_ALL=C sort | tr '\n' ' ') > names
[ "$(cat names)" = "ruffle show-ruffle.html show.exe show.hqx show.html show.swf " ] || fail "out holds: $(cat names)"
[ -f out/ruffle/ruffle.js ] || fail "the player was not copied"

# 2. The Ruffle page plays slide 1.
node "$lib/page-shoot.mjs" --page out/show-ruffle.html --size 320x240 --times 1200 --probe 160,120 --probe 20,20 \
  --out shots --name page >/dev/null
/usr/bin/python3 "$lib/expect_pixels.py" shots/page.json "1200 160,120 224,0,0 16" "1200 20,20 224,0,0 16"

# 3. Windows projector: the player, the movie with the player commands, marker and size little-endian.
movie_size=$(stat -c %s out/show.swf)
exe_size=$(stat -c %s out/show.exe)
attached=$((exe_size - 4099 - 8))
cmp -n 4099 players/windows-player.exe out/show.exe || fail "the Windows player is not at the start"
tail -c 8 out/show.exe | od -An -tx1 | tr -d ' \n' > trailer
want=$(printf '563412fa%02x%02x%02x%02x' $((attached & 255)) $((attached >> 8 & 255)) $((attached >> 16 & 255)) $((attached >> 24)))
[ "$(cat trailer)" = "$want" ] || fail "Windows trailer $(cat trailer), want $want"
tail -c +4100 out/show.exe | head -c "$attached" > attached.swf
"$QUILLET" expand attached.swf -o attached-plain.swf >/dev/null 2>&1 || cp attached.swf attached-plain.swf
for c in fullscreen showmenu allowscale; do
  grep -aq "FSCommand:$c" attached-plain.swf || fail "the attached movie lacks FSCommand:$c"
done
node "$lib/ruffle-shoot.mjs" --movie attached.swf --size 320x240 --times 1000 --probe 160,120 --out shots \
  --name attached >/dev/null
/usr/bin/python3 "$lib/expect_pixels.py" shots/attached.json "1000 160,120 224,0,0 16"

# 4. Mac projector: hexbin gives back both forks, type and creator; our own
#    reading of the header gives the flags; a damaged line is refused.
mkdir hx && (cd hx && hexbin -3 ../out/show.hqx) || fail "hexbin refused our file"
{ cat players/mac-player.data out/show.swf
  printf "$(printf '\\x%02x\\x%02x\\x%02x\\x%02x' $((movie_size >> 24)) $((movie_size >> 16 & 255)) $((movie_size >> 8 & 255)) $((movie_size & 255)))"
  printf '\xfa\x12\x34\x56'; } > want.data
cmp hx/show.hqx.data want.data || fail "data fork differs"
cmp hx/show.hqx.rsrc players/mac-player.rsrc || fail "resource fork differs"
hexbin -i out/show.hqx 2>&1 | grep -q "type=APPL, author=FP98" || fail "type or creator wrong"
/usr/bin/python3 - out/show.hqx <<'PY' || fail "BinHex header wrong"
import sys
alphabet = "!\"#$%&'()*+,-012345689@ABCDEFGHIJKLMNPQRSTUVXYZ[`abcdefhijklmpqr"
text = open(sys.argv[1]).read()
body = "".join(text[text.index(":") + 1:].split("\n")).rstrip(":")
bits = "".join(format(alphabet.index(c), "06b") for c in body[:200])
raw = bytes(int(bits[i:i + 8], 2) for i in range(0, len(bits) - 7, 8))
n = raw[0]
assert raw[1:1 + n] == b"show.hqx", raw[:20]
assert raw[2 + n:10 + n] == b"APPLFP98"
assert raw[10 + n:12 + n] == b"\x01\x00", raw[10 + n:12 + n]
PY
mkdir hxbad
awk 'NR==20 { c = substr($0, 10, 1); $0 = substr($0, 1, 9) (c == "A" ? "B" : "A") substr($0, 11) } { print }' \
  out/show.hqx > hxbad/bad.hqx
! (cd hxbad && hexbin -3 bad.hqx 2>/dev/null) || fail "hexbin took a damaged file"

# 5. Publishing again: a pipe keeps the files and names the targets; --replace replaces.
before=$(md5sum out/show.swf out/show.html)
"$QUILLET" publish show.qpj --players players </dev/null >log 2>err || fail "second publish"
grep -q "kept the existing files of: movie, HTML page, Ruffle page, Mac projector, Windows projector" err ||
  fail "skipped targets not named: $(cat err)"
[ "$(md5sum out/show.swf out/show.html)" = "$before" ] || fail "files were replaced without --replace"
touch -d '2000-01-01' out/show.html
"$QUILLET" publish show.qpj --players players --replace </dev/null >log 2>err || fail "publish --replace"
[ out/show.html -nt players/windows-player.exe ] || fail "--replace did not replace the page"

# 6. On a terminal: "Stop" at the first question writes nothing and still completes.
touch -d '2000-01-01' out/*.*
stamp=$(stat -c %Y out/*.* | sort -u | tr '\n' ' ')
printf 's\n' | script -qec "'$QUILLET' publish show.qpj --players players" /dev/null > tty.log 2>&1 || fail "tty run"
grep -q 'The item "show.swf" in .*out already exists. Replace it?' tty.log || fail "no question: $(cat tty.log)"
grep -q "Publishing has completed." tty.log || fail "no completion after Stop"
[ "$(stat -c %Y out/*.* | sort -u | tr '\n' ' ')" = "$stamp" ] || fail "Stop still wrote files"

# 7. Failures: exit 1 with the message, nothing left behind anywhere.
state=$(snapshot)
"$QUILLET" publish show.qpj --players players --output "$work/missing" </dev/null >log 2>err && fail "missing folder accepted"
grep -q "The output location does not exist. Please choose a valid location to output the files to." err ||
  fail "missing-folder message: $(cat err)"
"$QUILLET" publish show.qpj --players players --output /proc/self </dev/null >log 2>err && fail "unwritable folder accepted"
grep -q "An error occurred while trying to publish the SWF file." err || fail "unwritable-folder message: $(cat err)"
for name in "../escaped.swf" "$work/abs.swf" ".."; do
  project climb.qpj "$name"
  "$QUILLET" publish climb.qpj --players players </dev/null >log 2>err && fail "name $name accepted"
  grep -q "Please enter a valid filename for the SWF." err || fail "name $name: $(cat err)"
done
rm climb.qpj
[ "$(snapshot)" = "$state" ] || fail "files appeared: $(diff <(echo "$state") <(snapshot))"
echo "publish: ok"
