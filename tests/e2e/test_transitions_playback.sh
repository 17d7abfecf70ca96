#!/usr/bin/env bash
# Every transition, with each value of each of its options, plays in Ruffle as a
# change from one photo to the other: at 25, 50 and 75 % the picture is neither
# photo and comes closer to the incoming one (a colour fade shows its colour half
# way), the frame after it is the incoming photo, and different option values
# give different pictures. All cases are one movie, played once; the checks and
# the case table are in lib/transition_cases.py. A contact sheet of the shots is
# written to $QUILLET_BUILD_DIR/artefacts/transitions-sheet.png.
#
# TRANSITION_CASES="Push,Wipe On" runs only the named transitions;
# TRANSITION_VERBOSE=1 prints how far each shot is from either photo.
source "${BASH_SOURCE%/*}/lib/common.sh"
: "${QUILLET:?}" "${QUILLET_SOURCE_DIR:?}" "${QUILLET_BUILD_DIR:?}"
photos=/usr/share/backgrounds/mate/nature

# Green grass going out, a grey storm sky coming in.
/usr/bin/python3 "$lib/transition_cases.py" plan "$photos/GreenMeadow.jpg" "$photos/Storm.jpg" "$work"
"$QUILLET" export "$work/show.qpj" -o "$work/show.swf" >/dev/null
"$QUILLET" info --json "$work/show.swf" > "$work/info.json"
times=$(/usr/bin/python3 "$lib/transition_cases.py" locate "$work" "$work/show.swf")
# One run for all shots; if it fails, its errors are reported by the check.
node "$lib/ruffle-shoot.mjs" --movie "$work/show.swf" --size 320x240 --times "$times" \
  --out "$work/shots" --name show --timeout-ms 120000 >/dev/null || true

mkdir -p "$QUILLET_BUILD_DIR/artefacts"
/usr/bin/python3 "$lib/transition_cases.py" check "$work" "$work/info.json" "$work/shots/show.json" \
  "$QUILLET_BUILD_DIR/artefacts/transitions-sheet.png"
echo "transitions playback: ok"
