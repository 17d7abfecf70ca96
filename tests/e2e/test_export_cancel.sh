#!/usr/bin/env bash
# Ctrl-C during `quillet export` stops between slides and leaves a valid movie
# of the slides done so far, which parses and plays.
source "${BASH_SOURCE%/*}/lib/common.sh"
photo=/usr/share/backgrounds/mate/abstract/Elephants_5640x3172.jpg  # slow to decode on purpose (progressive)
slides=16
{
  echo '<xml version="1.0">'
  echo '<quillet version_major="1" version_minor="119">'
  echo '<slide_show width="1280" height="720" fps="12">'
  echo '<slides>'
  for _ in $(seq $slides); do echo "<slide type=\"image\" src=\"$photo\" duration=\"1000\" />"; done
  echo '</slides>'
  echo '</slide_show>'
  echo '</quillet>'
  echo '</xml>'
} > "$work/long.qpj"

# Interrupt once the movie has begun to fill (the first slide's picture is
# being written into the private file beside part.swf, which is renamed into
# place at the end), so the test does not depend on how fast this machine
# decodes. Try again if the interrupt still came before the first slide was
# complete.
done_slides=0
for attempt in 1 2 3; do
  rm -f "$work/part.swf"
  "$QUILLET" export "$work/long.qpj" -o "$work/part.swf" --no-cache 2> "$work/err.txt" &
  pid=$!
  for _ in $(seq 1200); do
    [ "$(cat "$work"/.part.swf.tmp-* 2>/dev/null | wc -c)" -ge 8192 ] && break
    kill -0 $pid 2>/dev/null || break
    sleep 0.1
  done
  sleep 0.$((attempt * 3))
  kill -INT $pid 2>/dev/null || true
  set +e
  wait $pid
  status=$?
  set -e
  if [ $status -eq 0 ]; then echo "the export finished before the interrupt"; exit 1; fi
  [ $status -eq 1 ] || { echo "exit status $status, want 1"; cat "$work/err.txt"; exit 1; }
  grep -q "export cancelled" "$work/err.txt" || { cat "$work/err.txt"; exit 1; }
  "$QUILLET" info --json "$work/part.swf" > "$work/part.json"
  done_slides=$(/usr/bin/python3 -c 'import json,sys; print(sum(1 for t in json.load(open(sys.argv[1]))["tags"] if t["name"]=="FrameLabel"))' "$work/part.json")
  done_slides=$((done_slides / 2))
  [ "$done_slides" -ge 1 ] && break
done
echo "cancelled after $done_slides of $slides slides"
[ "$done_slides" -ge 1 ] && [ "$done_slides" -lt $slides ]
# Nothing is left beside the movie.
[ -z "$(ls -A "$work" | grep '^\.part\.swf')" ] || { ls -la "$work"; exit 1; }
/usr/bin/python3 "$lib/yaswfp_compare.py" "$work/part.swf" "$work/part.json"

# It plays: slide 1 shows the photo (not the blank white before frame 1, not the black background).
node "$lib/ruffle-shoot.mjs" --movie "$work/part.swf" --size 1280x720 --times 512 --probe 640,360 \
  --out "$work/shots" --name part >/dev/null
/usr/bin/python3 - "$work/shots/part.json" <<'PY'
import json, sys
r = json.load(open(sys.argv[1]))
real = [e for e in r["errors"] if "favicon" not in e and "404" not in e]
assert not real, real
px = r["shots"][0]["pixels"]["640,360"][:3]
assert px != [255, 255, 255] and px != [0, 0, 0], px
PY
echo "export cancel: ok"
