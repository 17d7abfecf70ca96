#!/usr/bin/env bash
# Installs a built package on a fresh minimal Debian (a debootstrap chroot, no
# recommended packages) and checks that it is complete there: quillet runs,
# makes a show with captions, music and controls, publishes a Ruffle page with
# the installed player, and quillet-studio opens the show under Xvfb (a
# screenshot is left beside the package). Needs root and the network; takes a
# few minutes. Not part of the test suite.
#
#   sudo bash packaging/check-fresh-install.sh build/quillet_0.1.0_amd64.deb
set -euo pipefail
deb=$(realpath "${1:?usage: check-fresh-install.sh quillet_VERSION_ARCH.deb}")
command -v debootstrap >/dev/null || apt-get install -y -qq --no-install-recommends debootstrap >/dev/null
root=$(mktemp -d /tmp/quillet-fresh.XXXXXX)
cleanup() { umount "$root/proc" 2>/dev/null || true; rm -rf "$root"; }
trap cleanup EXIT

debootstrap --variant=minbase bookworm "$root" http://deb.debian.org/debian >"$root.log" 2>&1 ||
  { tail -5 "$root.log"; exit 1; }
rm -f "$root.log"
cat > "$root/etc/apt/sources.list" <<'EOF'
deb http://deb.debian.org/debian bookworm main
deb http://deb.debian.org/debian bookworm-updates main
deb http://deb.debian.org/debian-security bookworm-security main
EOF
mount -t proc proc "$root/proc"  # the programs find their data through /proc/self/exe
cp "$deb" "$root/root/quillet.deb"
convert -size 320x240 xc:'#20e080' "$root/root/pic.jpg"
sox -n -r 44100 -c 2 "$root/root/tone.wav" synth 2 sine 440

cat > "$root/root/check.sh" <<'EOF'
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive LC_ALL=C QUILLET_CONFIG_DIR=/root/cfg XDG_CACHE_HOME=/root/cache
apt-get update -qq
apt-get install -y -qq --no-install-recommends /root/quillet.deb >/root/apt.log 2>&1 || { tail -20 /root/apt.log; exit 1; }
quillet --version
cd /root && mkdir -p out
quillet new pic.jpg pic.jpg -o trip.qpj --music tone.wav --captions name --transition "Cross Fade" --controls "Dark Bar"
quillet publish trip.qpj --output out --targets swf,ruffle
test -f out/ruffle/ruffle.js
quillet info out/trip.swf >info.txt
grep -q DefineSound info.txt || { echo "no sound in the movie (MP3 encoder missing?)"; exit 1; }
# The desktop program under a virtual display (test tools only, not dependencies).
apt-get install -y -qq --no-install-recommends xvfb xauth x11-apps >/dev/null 2>&1
export QTWEBENGINE_DISABLE_SANDBOX=1
xvfb-run -a -s "-screen 0 800x600x24" bash -c '
  quillet-studio /root/trip.qpj >/root/studio.log 2>&1 & pid=$!
  sleep 8
  kill -0 $pid || { cat /root/studio.log; exit 1; }
  xwd -root -silent >/root/studio.xwd
  kill $pid'
echo "fresh install: ok"
EOF
chroot "$root" bash /root/check.sh
convert "$root/root/studio.xwd" "${deb%.deb}-fresh-studio.png"
echo "screenshot: ${deb%.deb}-fresh-studio.png"
