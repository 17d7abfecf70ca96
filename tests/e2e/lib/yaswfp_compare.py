#!/usr/bin/python3
"""Compares what Debian's yaswfp parser sees in a movie with `quillet info --json`.

usage: yaswfp_compare.py MOVIE.swf INFO.json

Checks: signature, version, file length, frame rate bytes, frame count, the
tag codes in order (recursively inside sprites, with their frame counts), and
that every offset and length that quillet reports points at such a tag header.
yaswfp stops at the End tag and does not list it, so End tags are left out of
the comparison; a tag that yaswfp knows but fails to parse fails the check.
"""
import json
import sys
import zlib

import yaswfp.swfparser as sp

CODE_BY_NAME = {name: code for code, name in sp.TAG_NAMES.items()}


def yaswfp_tags(tags, where, problems):
    out = []
    for tag in tags:
        kind = type(tag).__name__
        name = tag.name
        if kind == "FailingObject":
            problems.append(f"{where}: yaswfp could not parse {name}")
        if kind == "UnknownObject" and name.startswith("UnspecifiedObject"):
            problems.append(f"{where}: yaswfp does not know {name}")
            continue
        entry = {"code": CODE_BY_NAME.get(name, -1), "name": name}
        if name == "DefineSprite" and kind != "FailingObject":
            entry["frameCount"] = tag.FrameCount
            entry["tags"] = yaswfp_tags(tag.ControlTags, f"{where}/sprite {tag.CharacterID}", problems)
        out.append(entry)
    return out


def ours(tags):
    out = []
    for tag in tags:
        if tag["code"] == 0:
            continue
        entry = {"code": tag["code"], "name": tag["name"]}
        if tag["code"] == 39:
            entry["frameCount"] = tag["frameCount"]
            entry["tags"] = ours(tag["tags"])
        out.append(entry)
    return out


def check_offsets(data, tags, where, problems):
    """Each reported offset must hold a tag header of that code and body length."""
    for tag in tags:
        at = tag["offset"]
        if at + 2 > len(data):
            problems.append(f"{where}: offset {at} of {tag['name']} is beyond the movie")
            continue
        head = data[at] | data[at + 1] << 8
        length = head & 0x3F
        if length == 0x3F:
            length = int.from_bytes(data[at + 2:at + 6], "little")
        if head >> 6 != tag["code"] or length != tag["length"]:
            problems.append(f"{where}: offset {at} holds code {head >> 6} length {length}, "
                            f"not {tag['code']} length {tag['length']}")
        if "tags" in tag:
            check_offsets(data, tag["tags"], where, problems)


def main(argv):
    if len(argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    with open(argv[1], "rb") as f:
        parsed = sp.SWFParser(f)
    with open(argv[2]) as f:
        info = json.load(f)
    problems = []
    h = parsed.header
    if h.Signature != info["signature"]:
        problems.append(f"signature {h.Signature} vs {info['signature']}")
    if h.Version != info["version"]:
        problems.append(f"version {h.Version} vs {info['version']}")
    if h.FileLength != info["fileLength"]:
        problems.append(f"file length {h.FileLength} vs {info['fileLength']}")
    if abs(h.FrameRate / 256.0 - info["frameRate"]) > 1e-6:
        problems.append(f"frame rate {h.FrameRate / 256.0} vs {info['frameRate']}")
    if h.FrameCount != info["frameCount"]:
        problems.append(f"frame count {h.FrameCount} vs {info['frameCount']}")
    # yaswfp reads the four stage values as unsigned numbers; ours are never negative.
    rect = info["frameRect"]
    if tuple(h.FrameSize) != (rect["xMin"], rect["xMax"], rect["yMin"], rect["yMax"]):
        problems.append(f"stage {tuple(h.FrameSize)} vs {rect}")
    with open(argv[1], "rb") as f:
        raw = f.read()
    if raw[:1] == b"C":
        raw = b"FWS" + raw[3:8] + zlib.decompress(raw[8:])
    check_offsets(raw, info["tags"], argv[1], problems)
    theirs = yaswfp_tags(parsed.tags, argv[1], problems)
    mine = ours(info["tags"])
    if theirs != mine:
        problems.append("tag lists differ:\n  yaswfp: " + json.dumps(theirs) + "\n  quillet: " + json.dumps(mine))
    shows = sum(1 for t in mine if t["code"] == 1)
    if shows != info["frameCount"]:
        problems.append(f"{shows} ShowFrame tags but the header says {info['frameCount']} frames")
    for p in problems:
        print(f"FAIL {argv[1]}: {p}")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
