#!/usr/bin/env bash
# Makes the demo show's sounds into demo/out/ (not kept in the repository):
# music.wav, an eight-second plucked arpeggio made with sox that the show
# loops, and storm.wav, a spoken line made with espeak-ng for the "Storm"
# slide. demo.qpj names them relative to its own folder.
set -euo pipefail
out="$(dirname "$0")/out"
mkdir -p "$out"
if [ ! -s "$out/music.wav" ]; then
  notes=(C4 E4 G4 C5 A3 C4 E4 A4 F3 A3 C4 F4 G3 B3 D4 G4)
  parts=()
  for n in "${notes[@]}"; do parts+=("|sox -n -r 44100 -c 1 -p synth 0.5 pluck $n"); done
  sox "${parts[@]}" -c 2 -b 16 "$out/music.tmp.wav" reverb 40 gain -n -3
  mv "$out/music.tmp.wav" "$out/music.wav"
fi
if [ ! -s "$out/storm.wav" ]; then
  espeak-ng -v en -s 150 -w "$out/storm.tmp.wav" "Here comes the storm."
  mv "$out/storm.tmp.wav" "$out/storm.wav"
fi
