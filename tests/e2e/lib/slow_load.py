#!/usr/bin/python3
"""Makes a movie behave as if it arrived slowly over a network.

usage: slow_load.py IN.swf OUT.swf BYTES_PER_MS

Ruffle fetches the whole root movie before it plays its first frame, so a
throttled server only delays the start and a preloader always reads 100 %.
This puts one script in front of the movie's first tag that replaces
MovieClip.prototype.getBytesLoaded with getTimer() * BYTES_PER_MS, so the
movie's own preloader sees its bytes arrive at that rate, on the player's
clock (the virtual clock of ruffle-shoot.mjs: the same every run).
Only uncompressed ("FWS") movies.
"""
import struct
import sys


def push_string(text):
    body = b"\0" + text.encode() + b"\0"
    return bytes([0x96]) + struct.pack("<H", len(body)) + body


def main():
    src, dst, rate = sys.argv[1], sys.argv[2], int(sys.argv[3])
    data = bytearray(open(src, "rb").read())
    if data[:3] != b"FWS":
        sys.exit(f"{src}: not an uncompressed movie")
    bits = data[8] >> 3
    first_tag = 8 + (5 + 4 * bits + 7) // 8 + 4  # after the stage rectangle, rate and frame count
    # function () { return getTimer() * rate; }
    body = bytes([0x34, 0x96]) + struct.pack("<HBi", 5, 7, rate) + bytes([0x0C, 0x3E])
    function = bytes([0x9B]) + struct.pack("<HBHH", 5, 0, 0, len(body)) + body
    code = (push_string("MovieClip") + bytes([0x1C]) + push_string("prototype") + bytes([0x4E])
            + push_string("getBytesLoaded") + function + bytes([0x4F, 0x00]))
    data[first_tag:first_tag] = struct.pack("<HI", (12 << 6) | 0x3F, len(code)) + code
    struct.pack_into("<I", data, 4, len(data))
    open(dst, "wb").write(data)


if __name__ == "__main__":
    main()
