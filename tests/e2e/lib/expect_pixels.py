#!/usr/bin/env python3
"""Checks the pixels that ruffle-shoot.mjs probed against expected colours.

usage: expect_pixels.py RESULT.json "TIME X,Y R,G,B TOLERANCE" ... [--allow-errors]

Each expectation names a screenshot time, a probed pixel, the wanted colour
and the largest difference allowed per channel. Any Ruffle error in the
result fails the check unless --allow-errors is given. Exit 0 when all hold.
"""
import json
import sys


def main(argv):
    if len(argv) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    allow_errors = "--allow-errors" in argv
    args = [a for a in argv[1:] if a != "--allow-errors"]
    with open(args[0]) as f:
        result = json.load(f)
    failures = []
    if result.get("errors") and not allow_errors:
        failures.append("player errors: " + "; ".join(result["errors"]))
    shots = {shot["time"]: shot for shot in result.get("shots", [])}
    for table in args[1:]:
        try:
            time, point, colour, tol = table.split()
            time = float(time)
            want = [int(v) for v in colour.split(",")]
            tol = int(tol)
        except ValueError:
            print(f"expect_pixels: bad expectation {table!r}", file=sys.stderr)
            return 2
        shot = shots.get(time) or shots.get(int(time))
        if shot is None:
            failures.append(f"no screenshot at {time:g} ms")
            continue
        got = shot["pixels"].get(point)
        if got is None:
            failures.append(f"pixel {point} was not probed")
            continue
        if any(abs(g - w) > tol for g, w in zip(got[:3], want)):
            failures.append(f"{time:g} ms at {point}: got {tuple(got[:3])}, want {tuple(want)} +-{tol} ({shot['png']})")
    for line in failures:
        print(f"FAIL {result.get('movie', '?')}: {line}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
