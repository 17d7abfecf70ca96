#!/usr/bin/env bash
# Main job: set up, build, make the demo's sounds (demo/make-sounds.sh: music with
# sox, a spoken line with espeak-ng), and compile the demo show of real photos into out/demo/
# with `quillet publish`: demo.swf, the classic page demo.html, and demo-ruffle.html (also
# index.html) that plays it in the self-hosted Ruffle player copied into out/demo/ruffle.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
BUILD=${QUILLET_BUILD:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$BUILD" -j"$(nproc)" --target quillet
QUILLET="$BUILD/src/quillet"

OUT=out/demo
mkdir -p "$OUT"

bash demo/make-sounds.sh
"$QUILLET" show demo/demo.qpj
"$QUILLET" publish demo/demo.qpj --output "$OUT" --base demo --targets swf,html,ruffle --replace
ln -sfn demo-ruffle.html "$OUT/index.html"
"$QUILLET" info "$OUT/demo.swf" | sed -n 1,6p
"$QUILLET" info "$OUT/demo.swf" | grep -E "DefineSound|SoundStreamHead" || true

# A look at the movie as Ruffle plays it: the preloader's first frame, then one
# frame every 1.5 s through the 106 s show, which lands in most of its
# transitions, and a contact sheet of them all.
if [ -f tests/e2e/lib/ruffle-shoot.mjs ]; then
  times=100,$(seq -s, 1000 1500 106000)
  rm -f "$OUT"/frames/demo-*ms.png   # a sheet of this run's shots only
  node tests/e2e/lib/ruffle-shoot.mjs --movie "$OUT/demo.swf" --size 640x480 \
    --times "$times" --out "$OUT/frames" --name demo >/dev/null &&
    montage $(ls -v "$OUT"/frames/demo-*ms.png) -tile 8x -geometry 160x120+2+2 "$OUT/frames/sheet.png" &&
    echo "demo: screenshots and a contact sheet (sheet.png) in $OUT/frames"
fi

echo "demo: wrote $OUT/demo.swf, $OUT/demo.html and $OUT/demo-ruffle.html (index.html)"
echo "demo: to watch it, run: python3 -m http.server --directory $OUT 8000  and open http://127.0.0.1:8000/"

# The desktop program with the demo show loaded: a picture of its main window
# (the slide rows and thumbnails), drawn on Qt's offscreen platform.
if grep -q '^QUILLET_BUILD_APP:BOOL=ON' "$BUILD/CMakeCache.txt" 2>/dev/null; then
  if cmake --build "$BUILD" -j"$(nproc)" --target quillet-studio >/dev/null &&
    QT_QPA_PLATFORM=offscreen "$BUILD/src/app/quillet-studio" --screenshot "$OUT/main-window.png" demo/demo.qpj; then
    echo "demo: the main window with the demo show: $OUT/main-window.png"
  else
    echo "demo: FAILED to take the main window's screenshot" >&2
  fi
fi
