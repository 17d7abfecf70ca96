#!/usr/bin/env bash
# An export never destroys the movie that was there: a file-size limit (or a
# full disk) leaves the old movie whole and nothing beside it; an export that
# needs no temporary folder works with an unusable TMPDIR, and one that does
# says so and leaves the old movie too.
source "${BASH_SOURCE%/*}/lib/common.sh"
photo=/usr/share/backgrounds/mate/nature/Garden.jpg
"$QUILLET" new "$photo" "$photo" "$photo" -o "$work/show.qpj" --stage 640x480 >/dev/null
"$QUILLET" export "$work/show.qpj" -o "$work/old.swf" >/dev/null
cp "$work/old.swf" "$work/kept.swf"
left_beside() { ls -A "$work" | grep -c '^\.old\.swf' || true; }

# 40 KB (bash counts -f in 1024-byte blocks) cannot hold the 72 KB movie.
set +e
(ulimit -f 40; "$QUILLET" export "$work/show.qpj" -o "$work/old.swf" --no-cache) 2> "$work/err.txt"
status=$?
set -e
[ $status -eq 1 ] || { echo "exit status $status, want 1"; cat "$work/err.txt"; exit 1; }
grep -q "old.swf" "$work/err.txt" || { cat "$work/err.txt"; exit 1; }
cmp "$work/old.swf" "$work/kept.swf"
[ "$(left_beside)" -eq 0 ]

# A plain movie needs no temporary folder.
TMPDIR="$work/no-such-folder" "$QUILLET" export "$work/show.qpj" -o "$work/plain.swf" --uncompressed >/dev/null
head -c 3 "$work/plain.swf" | grep -q FWS

# A compressed one does: a clear error, and the old movie stays.
sed -i 's/use_compression="false"/use_compression="true"/' "$work/show.qpj"
grep -q 'use_compression="true"' "$work/show.qpj"
set +e
TMPDIR="$work/no-such-folder" "$QUILLET" export "$work/show.qpj" -o "$work/old.swf" 2> "$work/err.txt"
status=$?
set -e
[ $status -eq 1 ] || { echo "exit status $status, want 1"; exit 1; }
grep -q "temporary folder" "$work/err.txt" || { cat "$work/err.txt"; exit 1; }
cmp "$work/old.swf" "$work/kept.swf"
"$QUILLET" export "$work/show.qpj" -o "$work/old.swf" >/dev/null
head -c 3 "$work/old.swf" | grep -q CWS
[ "$(left_beside)" -eq 0 ]
echo "export safety: ok"
