#!/usr/bin/env bash
# The installed tree: `cmake --install` into a scratch root lays out the
# programs, the whole Ruffle player, help pages whose links all resolve, a
# valid desktop entry and MIME type, the icons and a man page that renders
# and names every command; the installed quillet, far from the source tree,
# reports its version and publishes a Ruffle page with the installed player.
# Then the Debian package: its name, version, dependencies and files.
set -euo pipefail
: "${QUILLET_SOURCE_DIR:?}" "${QUILLET_BUILD_DIR:?}"
work=$(mktemp -d)  # under /tmp: no node_modules above the installed program
trap 'rm -rf "$work"' EXIT
export QUILLET_CONFIG_DIR="$work/config" XDG_CACHE_HOME="$work/cache"
unset QUILLET_RUFFLE_DIR
fail() { echo "FAIL: $*" >&2; exit 1; }

root="$work/root"
DESTDIR="$root" cmake --install "$QUILLET_BUILD_DIR" --prefix /usr >/dev/null
usr="$root/usr"
share="$usr/share"
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$QUILLET_BUILD_DIR/CMakeCache.txt")

[ -x "$usr/bin/quillet" ] || fail "bin/quillet not installed"
studio_built=no
if [ -x "$QUILLET_BUILD_DIR/src/app/quillet-studio" ]; then
  studio_built=yes
  [ -x "$usr/bin/quillet-studio" ] || fail "quillet-studio was built but not installed"
fi

# The player loads its other scripts and WebAssembly modules by name: every one must be there.
ruffle_src="$QUILLET_SOURCE_DIR/node_modules/@ruffle-rs/ruffle"
for f in "$ruffle_src"/*.js "$ruffle_src"/*.wasm "$ruffle_src"/LICENSE*; do
  cmp -s "$f" "$share/quillet/ruffle/$(basename "$f")" || fail "ruffle/$(basename "$f") missing or different"
done

# Help: the start page, and every link between the pages lands on an installed file.
help="$share/quillet/help"
[ -f "$help/index.html" ] || fail "help/index.html not installed"
for page in "$help"/*.html; do
  for target in $(grep -o 'href="[^"#:]*"' "$page" | sed 's/href="//; s/"$//'); do
    [ -f "$help/$target" ] || fail "$(basename "$page") links to $target, which is not installed"
  done
done

desktop="$share/applications/quillet.desktop"
[ -f "$desktop" ] || fail "desktop entry not installed"
if command -v desktop-file-validate >/dev/null; then
  out=$(desktop-file-validate "$desktop" 2>&1) || fail "desktop-file-validate: $out"
  [ -z "$out" ] || fail "desktop-file-validate: $out"
fi
if [ "$studio_built" = yes ]; then
  exec_name=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$desktop")
  [ -x "$usr/bin/$exec_name" ] || fail "the desktop entry runs $exec_name, which is not installed"
fi

# The MIME type, compiled as the system would: *.qpj and the project's content both map to it.
xmllint --noout "$share/mime/packages/quillet.xml" || fail "MIME XML is not well-formed"
if command -v update-mime-database >/dev/null; then
  update-mime-database "$share/mime" 2>"$work/mime.err" || fail "update-mime-database: $(cat "$work/mime.err")"
  grep -q '^[0-9]*:application/x-quillet-project:\*\.qpj$' "$share/mime/globs2" || fail "no *.qpj glob in globs2"
  grep -aq 'application/x-quillet-project' "$share/mime/magic" || fail "no content rule in the compiled magic"
fi

[ -f "$share/icons/hicolor/scalable/apps/quillet.svg" ] || fail "scalable icon not installed"
xmllint --noout "$share/icons/hicolor/scalable/apps/quillet.svg" || fail "icon SVG is not well-formed"
for png in "$share"/icons/hicolor/*x*/apps/quillet.png; do
  [ -e "$png" ] || continue
  size=$(basename "$(dirname "$(dirname "$png")")")
  [ "$(identify -format '%wx%h' "$png")" = "$size" ] || fail "$png is not $size"
done

# The man page renders without warnings and documents every command the program has.
man="$share/man/man1/quillet.1.gz"
[ -f "$man" ] || fail "man page not installed"
warnings=$(zcat "$man" | groff -man -Tutf8 -ww -z 2>&1)
[ -z "$warnings" ] || fail "man page: $warnings"
text=$(zcat "$man" | groff -man -Tutf8 2>/dev/null | col -b)
for cmd in $("$usr/bin/quillet" --help | awk '/^Commands:/ {on = 1; next} /^$/ {on = 0} on && /^  [a-z]/ {print $1}'); do
  grep -Eq "^ {7}$cmd( |\$)" <<<"$text" || fail "the man page does not document '$cmd'"
done

# The installed program, run from the scratch root.
[ "$("$usr/bin/quillet" --version)" = "quillet $version" ] || fail "--version: $("$usr/bin/quillet" --version)"
mkdir -p "$work/show/out"
cd "$work/show"
convert -size 160x120 xc:'#2080e0' pic.jpg
"$usr/bin/quillet" new pic.jpg -o trip.qpj >/dev/null
"$usr/bin/quillet" publish trip.qpj --output out --targets swf,ruffle >/dev/null 2>"$work/publish.err" ||
  fail "installed quillet could not publish: $(cat "$work/publish.err")"
[ -f out/trip-ruffle.html ] && [ -f out/trip.swf ] || fail "publish wrote no Ruffle page"
cmp -s out/ruffle/ruffle.js "$share/quillet/ruffle/ruffle.js" || fail "the page does not carry the installed player"
wasm_count=$(ls out/ruffle/*.wasm | wc -l)
[ "$wasm_count" = "$(ls "$share"/quillet/ruffle/*.wasm | wc -l)" ] || fail "the page carries $wasm_count .wasm files"

# The Debian package (about 20 s: 60 MB of player and programs compressed).
if command -v dpkg-shlibdeps >/dev/null && command -v cpack >/dev/null; then
  cpack -G DEB -B "$work/deb" --config "$QUILLET_BUILD_DIR/CPackConfig.cmake" >"$work/cpack.log" 2>&1 ||
    fail "cpack: $(tail -5 "$work/cpack.log")"
  deb=$(ls "$work"/deb/quillet_*.deb)
  [ "$(dpkg-deb -f "$deb" Package)" = quillet ] || fail "package name"
  [ "$(dpkg-deb -f "$deb" Version)" = "$version" ] || fail "package version $(dpkg-deb -f "$deb" Version)"
  depends=$(dpkg-deb -f "$deb" Depends)
  # Declared by hand (opened or read at run time) and found by dpkg-shlibdeps (linked).
  for dep in libmp3lame0 fonts-dejavu-core 'libmagick++-6' libsndfile1 libpugixml1v5 libfreetype6 libexif12; do
    grep -q "$dep" <<<"$depends" || fail "Depends lacks $dep: $depends"
  done
  contents=$(dpkg-deb -c "$deb")
  for f in ./usr/bin/quillet ./usr/share/quillet/ruffle/ruffle.js ./usr/share/quillet/help/index.html \
           ./usr/share/applications/quillet.desktop ./usr/share/mime/packages/quillet.xml \
           ./usr/share/man/man1/quillet.1.gz; do
    grep -q " $f\$" <<<"$contents" || fail "the package lacks $f"
  done
  [ "$studio_built" = no ] || grep -q " ./usr/bin/quillet-studio\$" <<<"$contents" || fail "the package lacks quillet-studio"
fi
echo "install: ok"
