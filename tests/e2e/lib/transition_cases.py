#!/usr/bin/env python3
"""Plays every transition, with each value of each of its options, in one movie
and checks the pictures that Ruffle shows.

usage:
  transition_cases.py plan PHOTO_A PHOTO_B WORK
      writes the show WORK/show.qpj and the timeline it should have, WORK/plan.json
  transition_cases.py locate WORK MOVIE.swf
      finds the slides in the exported movie and prints the screenshot times
      (comma-separated milliseconds) for ruffle-shoot.mjs --times
  transition_cases.py check WORK INFO.json SHOTS.json SHEET.png
      checks the movie's timeline (INFO.json from `quillet info --json`) and the
      screenshots (SHOTS.json from ruffle-shoot.mjs), writes a contact sheet;
      prints every failure and exits 1 if there was any

TRANSITION_CASES="Push,Wipe On" (names, comma-separated) keeps only those
transitions; the default is all of them. TRANSITION_VERBOSE=1 prints each
case's distances to both photos.

The show: photo A held for a second, photo B cut in and held for a second (the
two reference pictures), then for each case A cut in for one frame and B brought
in by the transition under test, held for three frames. Every case therefore
goes from the same outgoing picture to the same incoming one, so the pictures of
two cases can be compared with each other.
"""
import json
import os
import subprocess
import sys
from itertools import combinations
from operator import sub
from xml.sax.saxutils import quoteattr

FPS = 12
WIDTH, HEIGHT = 320, 240
TRANSITION_MS = 2000
HOLD_MS = 250        # 3 frames of the incoming slide alone after its transition
CUT_MS = 100         # 1 frame of the outgoing slide before each transition
REFERENCE_MS = 1000  # 12 frames of each plain photo at the start

# The transitions and their options. Each entry: name, then the cases as a list
# of (option group, {attribute: value}) -- a group's cases are compared with
# each other (different values must give different pictures half way) -- and
# optionally how its progress shows, when not as "towards": the picture comes
# closer to the incoming photo from 25 to 50 to 75 %.
#   "colour": half way it is the colour of the `fade_color` option
#   "moves":  the photos slide rather than blend, so the distance to the
#             incoming photo falls only at the end; the three shots must
#             differ from each other instead
#   "turns":  the slide turns about its placement point (its top-left
#             corner), which carries it off the stage for part of a turn; at
#             least one shot must show something new, and no order is checked
#   "fades":  it shrinks and fades at once, so little is left at 75 %: that
#             shot is not required to differ from the incoming photo


def sweep(attribute, *values):
    """One case per value of one option, the other options left at their defaults."""
    return [(attribute, {attribute: v}) for v in values]


WIPE_DIRECTIONS = ("up", "down", "right", "left", "to_bottom_right", "to_bottom_left", "to_top_right",
                   "to_top_left", "diag_to_bottom_right", "diag_to_bottom_left", "diag_to_top_right",
                   "diag_to_top_left")
ZOOM_DIRECTIONS = ("none", "up", "down", "right", "left", "top_left", "top_right", "bottom_left", "bottom_right")
BLINDS_DIRECTIONS = ("horizontal_up", "horizontal_down", "vertical_left", "vertical_right")
SLIDE_DOOR_DIRECTIONS = ("horizontal", "vertical", "horizontal_opposite_left_to_right",
                         "horizontal_opposite_right_to_left", "vertical_opposite_top_to_bottom",
                         "vertical_opposite_bottom_to_top", "corners")
# The end of the move in twips (20 per pixel) and its scale.
SLIDE_MOVE = [("options", {}),
              ("options", {"final_x": "3200", "final_y": "0", "final_sx": "1", "final_sy": "1",
                           "fade_out": "false"})]
SPIN = [("options", {}), ("options", {"spins": "0.5"}), ("options", {"clockwise": "false"})]

TRANSITIONS = [
    ("Sliding Bars", sweep("direction", "horizontal", "horizontal_top_to_bottom", "horizontal_bottom_to_top",
                           "horizontal_middle_in", "horizontal_middle_out", "vertical", "vertical_left_to_right",
                           "vertical_right_to_left", "vertical_middle_in", "vertical_middle_out")),
    ("Blinds In", sweep("direction", *BLINDS_DIRECTIONS)),
    ("Blinds Out", sweep("direction", *BLINDS_DIRECTIONS)),
    ("Blur In", [(None, {})]),
    ("Blur Out", [(None, {})]),
    ("Checker", sweep("type", "appear", "fade_in", "zoom_in", "drop_left", "drop_right", "drop_up", "drop_down",
                      "drop_random")
     + sweep("direction", "horizontal_left_to_right_down", "horizontal_left_to_right_up",
             "horizontal_right_to_left_down", "horizontal_right_to_left_up", "vertical_top_to_bottom_right",
             "vertical_top_to_bottom_left", "vertical_bottom_to_top_right", "vertical_bottom_to_top_left",
             "spiral_top_left_cw", "spiral_top_left_ccw", "spiral_top_right_cw", "spiral_top_right_ccw",
             "spiral_bottom_left_cw", "spiral_bottom_left_ccw", "spiral_bottom_right_cw",
             "spiral_bottom_right_ccw", "random")),
    ("Circular Sweep On", [(None, {})]),
    # Out to the colour in the first half, in from it in the second.
    ("Color Fade", sweep("fade_color", "16777215", "255"), "colour"),
    ("Cross Fade", [(None, {})]),
    ("Cross Scale", [(None, {})]),
    ("Curtain", [(None, {})]),
    ("Fade In", [(None, {})]),
    ("Fade Out", [(None, {})]),
    ("Page Flip", [(None, {})]),
    ("Push", sweep("direction", "up", "down", "right", "left", "to_top_left", "to_top_right", "to_bottom_left",
                   "to_bottom_right"), "moves"),
    ("Slide Close", sweep("direction", *SLIDE_DOOR_DIRECTIONS)),
    ("Slide Open", sweep("direction", *SLIDE_DOOR_DIRECTIONS)),
    ("Slide In From", SLIDE_MOVE),
    ("Slide Out To", SLIDE_MOVE, "fades"),
    ("Slide Triangle Open", sweep("direction", "horizontal_right_to_left", "horizontal_left_to_right",
                                  "vertical_bottom_to_top", "vertical_top_to_bottom", "top_left_bottom_right",
                                  "top_left_bottom_right_opposite", "top_right_bottom_left",
                                  "top_right_bottom_left_opposite", "corners")),
    ("Spin In", SPIN, "turns"),
    ("Spin Out", SPIN, "turns"),
    # "rectangle_close" is left out: it reads back as square_close.
    ("Window", sweep("type", "square_close", "square_open", "rectangle_open", "circle_close", "circle_open",
                     "star_close", "star_open", "star12_close", "star12_open", "diamond_close", "diamond_open")),
    ("Wipe On", sweep("direction", *WIPE_DIRECTIONS)),
    ("Wipe On 2", sweep("direction", *WIPE_DIRECTIONS)),
    ("Wipe Off", sweep("direction", *WIPE_DIRECTIONS)),
    ("Zoom In", sweep("direction", *ZOOM_DIRECTIONS)),
    ("Zoom Out", sweep("direction", *ZOOM_DIRECTIONS)),
]

# Thresholds, as mean absolute differences over the stage (channels 0..255).
# Two shots of the same still picture come out byte for byte the same (0.0); the
# two photos differ by about 68, so a difference of d means roughly d/68 of the
# stage changed from one photo to the other. The least a working transition shows
# at 25 % is 1/16 of the stage (a picture growing from a corner: 4.3).
MOVED = 2.0        # a shot differs from a plain photo: about 3 % of the stage changed
SAME = 1.0         # a shot equals a plain photo: less than 1.5 % of the stage left over...
ALLOWED_PIXEL_OFF = 0.002  # ...and at most 0.2 % of its pixels off by more than 24 (a 1-px edge is more)
DISTINCT = 2.0     # two option values give different pictures half way
SLACK = 1.0        # how far the distance to a photo may go the wrong way between 25/50/75 %
COLOUR_CLOSE = 3.0  # a colour fade half way shows its colour


def frames_of_transition(name, duration_ms):
    if name == "None":
        return 0
    n = int(duration_ms * 0.001 * FPS + 0.5)
    return 2 * (n // 2) if name == "Color Fade" else n


def frames_of_hold(duration_ms):
    return int(duration_ms * 0.001 * FPS)


def shot_time(frame):
    """The middle of 1-based movie frame `frame`, in ms."""
    return round((frame + 0.5) * 1000 / FPS)


def option_text(case):
    return " ".join(f"{k}={v}" for k, v in case["attrs"].items()) or "defaults"


def selected_cases():
    wanted = os.environ.get("TRANSITION_CASES", "").strip()
    names = {n.strip().lower() for n in wanted.split(",") if n.strip()} if wanted else None
    known = {t[0].lower() for t in TRANSITIONS}
    if names and not names <= known:
        sys.exit(f"transition_cases: TRANSITION_CASES names unknown transitions: {sorted(names - known)}")
    cases = []
    for entry in TRANSITIONS:
        name, variants = entry[0], entry[1]
        progress = entry[2] if len(entry) > 2 else "towards"
        if names and name.lower() not in names:
            continue
        for group, attrs in variants:
            case = {"name": name, "group": group, "attrs": attrs, "progress": progress}
            case["label"] = name if group is None else f"{name}: {option_text(case)}"
            cases.append(case)
    return cases


def plan(photo_a, photo_b, work):
    """Writes the show and the timeline we expect its movie to have."""
    cases = selected_cases()
    slides = [(photo_a, REFERENCE_MS, "None", {}), (photo_b, REFERENCE_MS, "None", {})]
    for case in cases:
        slides.append((photo_a, CUT_MS, "None", {}))
        case["slide"] = len(slides) + 1  # 1-based number of the slide it brings in
        slides.append((photo_b, HOLD_MS, case["name"], case["attrs"]))

    # Each slide runs its transition, then holds; the movie ends on one more frame.
    layout, frame = [], 1
    for photo, hold, name, attrs in slides:
        layout.append({"start": frame, "transition": frames_of_transition(name, TRANSITION_MS),
                       "hold": frames_of_hold(hold)})
        frame += layout[-1]["transition"] + layout[-1]["hold"]

    xml = ['<xml version="1.0">', '<quillet version_major="1" version_minor="119">',
           f'<slide_show width="{WIDTH}" height="{HEIGHT}" fps="{FPS}" bg_color="0" use_compression="false">',
           "<slides>"]
    for photo, hold, name, attrs in slides:
        # Every photo fills the stage (stretched), so each case starts from a full picture.
        xml.append(f'<slide type="image" src={quoteattr(photo)} duration="{hold}" keep_aspect_ratio="false" >')
        if name != "None":
            options = "".join(f" {k}={quoteattr(v)}" for k, v in attrs.items())
            xml += ["<transition_in>",
                    f'<transition name={quoteattr(name)} duration="{TRANSITION_MS}"{options} />',
                    "</transition_in>"]
        xml.append("</slide>")
    xml += ["</slides>", "</slide_show>", "</quillet>", "", "</xml>", ""]
    with open(os.path.join(work, "show.qpj"), "w") as f:
        f.write("\n".join(xml))
    with open(os.path.join(work, "plan.json"), "w") as f:
        json.dump({"frame_count": frame, "layout": layout, "cases": cases}, f, indent=1)


def movie_labels(movie):
    """The movie's frame labels (1-based frame numbers) and its number of frames,
    read by Debian's yaswfp."""
    import yaswfp.swfparser as sp
    frame, labels = 1, {}
    for tag in sp.parsefile(movie).tags:
        if tag.name == "ShowFrame":
            frame += 1
        elif tag.name == "FrameLabel":
            labels[tag.Name] = frame
    return labels, frame - 1


def locate(work, movie):
    """Finds each slide in the movie and picks the frames to shoot; prints their times.

    The movie labels each slide's first frame "slidepre_N" (its transition) and
    the first frame after its transition "slide_N". Going by them, a case whose
    transition has the wrong length does not shift the frames looked at for every
    case after it; the lengths are checked against the plan in `check`.
    """
    path = os.path.join(work, "plan.json")
    with open(path) as f:
        the_plan = json.load(f)
    layout = the_plan["layout"]
    labels, frame_count = movie_labels(movie)
    found = []
    for k, expected in enumerate(layout, start=1):
        pre, main = labels.get(f"slidepre_{k}"), labels.get(f"slide_{k}")
        if pre is None or main is None:
            found = None  # not labelled: go by the plan
            break
        found.append({"start": pre, "transition": main - pre})
    if found:
        for here, after in zip(found, found[1:]):
            here["hold"] = after["start"] - here["start"] - here["transition"]
        last = found[-1]  # the movie's last frame follows its hold
        last["hold"] = frame_count - last["start"] - last["transition"]
    the_plan["found"] = found
    where = found or layout

    refs = {"A": where[0]["start"] + where[0]["transition"] + where[0]["hold"] // 2,
            "B": where[1]["start"] + where[1]["transition"] + where[1]["hold"] // 2}
    for case in the_plan["cases"]:
        slide = where[case["slide"] - 1]
        start, n = slide["start"], slide["transition"]
        after = start + n
        if n >= 4:
            # Frame k of the n (1-based) shows k/n of the transition.
            middle = {"25": start - 1 + n // 4, "50": start - 1 + n // 2, "75": start - 1 + 3 * n // 4}
        else:
            middle = {"25": after, "50": after, "75": after}  # no transition to look at
        case["frames"] = {"cut": start - 1, **middle, "after": after}
    the_plan["refs"] = refs
    with open(path, "w") as f:
        json.dump(the_plan, f, indent=1)
    frames = sorted(set(refs.values()) | {f for c in the_plan["cases"] for f in c["frames"].values()})
    print(",".join(str(shot_time(f)) for f in frames))


def read_pictures(paths):
    """RGB bytes of each PNG, decoded by ImageMagick (a batch per call)."""
    size = WIDTH * HEIGHT * 3
    out = {}
    paths = sorted(set(paths))
    for i in range(0, len(paths), 80):
        batch = paths[i:i + 80]
        raw = subprocess.run(["convert", *batch, "-depth", "8", "rgb:-"], check=True, capture_output=True).stdout
        if len(raw) != size * len(batch):
            sys.exit(f"transition_cases: screenshots are not {WIDTH}x{HEIGHT}: {batch}")
        for j, p in enumerate(batch):
            out[p] = raw[j * size:(j + 1) * size]
    return out


def coarse(picture):
    """Every second pixel of every second row, as three planes: a quarter of the
    work for the measures of how far a transition has got, which are averages
    over changes that span the stage."""
    row = WIDTH * 3
    rows = b"".join(picture[y * row:(y + 1) * row] for y in range(0, HEIGHT, 2))
    return rows[0::6] + rows[1::6] + rows[2::6]


def mad(a, b):
    """Mean absolute difference of two pictures of the same size."""
    return 0.0 if a == b else sum(map(abs, map(sub, a, b))) / len(a)


# Maps a channel difference to 1 when it is more than 24, else to 0.
OFF_BY_MORE_THAN_24 = bytes(int(v > 24) for v in range(256))


def share_off(a, b):
    """The share of pixels with a channel off by more than 24."""
    if a == b:
        return 0.0
    flags = bytes(map(abs, map(sub, a, b))).translate(OFF_BY_MORE_THAN_24)
    r, g, b_ = (int.from_bytes(flags[i::3], "little") for i in range(3))
    return bin(r | g | b_).count("1") / (len(flags) // 3)


def equals(a, b):
    return a == b or (mad(a, b) <= SAME and share_off(a, b) <= ALLOWED_PIXEL_OFF)


def solid(value):
    v = int(value)  # the lowest byte is red
    return bytes([v & 255, (v >> 8) & 255, (v >> 16) & 255]) * (WIDTH * HEIGHT)


def check(work, info_path, shots_path, sheet):
    with open(os.path.join(work, "plan.json")) as f:
        the_plan = json.load(f)
    with open(info_path) as f:
        info = json.load(f)
    with open(shots_path) as f:
        shots = json.load(f)
    cases, layout, found = the_plan["cases"], the_plan["layout"], the_plan["found"]
    general = []
    if info["frameCount"] != the_plan["frame_count"]:
        line = f"the movie has {info['frameCount']} frames, {the_plan['frame_count']} were expected"
        if found and info["frameCount"] == 1 + sum(s["transition"] + s["hold"] for s in found):
            line += " (accounted for by the slides whose transitions have other lengths)"
        general.append(line)
    if found is None:
        general.append("the movie does not label its slides: the shots are taken where the plan puts them")
    else:
        case_slides = {c["slide"] for c in cases}
        for k, (want, got) in enumerate(zip(layout, found), start=1):
            if got["transition"] != want["transition"] and k not in case_slides:
                general.append(f"slide {k} starts with {got['transition']} frames of transition, "
                               f"not {want['transition']}")
            if got["hold"] != want["hold"]:
                general.append(f"slide {k} holds for {got['hold']} frames, not {want['hold']}")
    if shots["errors"]:
        general.append("Ruffle reported errors: " + "; ".join(shots["errors"]))
    png_at = {round(s["time"]): s["png"] for s in shots["shots"]}

    def png(frame):
        return png_at[shot_time(frame)]

    frames = set(the_plan["refs"].values()) | {f for c in cases for f in c["frames"].values()}
    missing = sorted(f for f in frames if shot_time(f) not in png_at)
    if missing:
        general.append(f"{len(missing)} of {len(frames)} screenshots are missing (frames {missing[:5]}...)")
        return report(general, None, cases)
    sheet_job = start_sheet(cases, png, sheet)  # ImageMagick works on it meanwhile
    pictures = read_pictures(png(f) for f in frames)
    small = {p: coarse(v) for p, v in pictures.items()}
    a = pictures[png(the_plan["refs"]["A"])]
    b = pictures[png(the_plan["refs"]["B"])]
    small_a, small_b = coarse(a), coarse(b)
    apart = mad(a, b)
    print(f"the photos differ by {apart:.1f} on average")
    if apart < 30:
        general.append(f"the two photos look too alike on the stage (mean difference {apart:.1f})")

    verbose = bool(os.environ.get("TRANSITION_VERBOSE"))
    problems = {}
    for case in cases:
        p = problems.setdefault(case["label"], [])
        f = case["frames"]
        shot = {k: pictures[png(v)] for k, v in f.items()}
        # Where the transition is in the movie.
        want = layout[case["slide"] - 1]["transition"]
        got = found[case["slide"] - 1]["transition"] if found else want
        if got != want:
            p.append(f"the transition lasts {got} frames, not {want}" + (" (it cuts at once)" if got == 0 else ""))
        if not equals(shot["cut"], a):
            p.append(f"frame {f['cut']} before the transition is not the outgoing photo "
                     f"(mean difference {mad(shot['cut'], a):.1f}): the movie is not laid out as planned")
        # (c) It ends on the incoming photo.
        if not equals(shot["after"], b):
            p.append(f"frame {f['after']} after the transition is not the incoming photo "
                     f"(mean difference {mad(shot['after'], b):.1f}, "
                     f"{100 * share_off(shot['after'], b):.1f} % of pixels off)")
        if f["25"] == f["after"]:
            continue  # no frames in between to look at
        # (a) On the way it is neither photo.
        to_a = {k: mad(small[png(f[k])], small_a) for k in ("25", "50", "75")}
        to_b = {k: mad(small[png(f[k])], small_b) for k in ("25", "50", "75")}
        if verbose:
            print(f"{case['label']}: from outgoing {to_a['25']:.1f}/{to_a['50']:.1f}/{to_a['75']:.1f}, "
                  f"from incoming {to_b['25']:.1f}/{to_b['50']:.1f}/{to_b['75']:.1f}")
        if case["progress"] == "turns":
            if all(to_a[k] <= MOVED or to_b[k] <= MOVED for k in ("25", "50", "75")):
                p.append("no shot at 25/50/75 % differs from both photos")
            continue
        for k in ("25", "50", "75"):
            if case["progress"] == "fades" and k == "75":
                continue
            if to_a[k] <= MOVED:
                p.append(f"{k} % (frame {f[k]}) still shows the outgoing photo (difference {to_a[k]:.1f} <= {MOVED})")
            if to_b[k] <= MOVED:
                p.append(f"{k} % (frame {f[k]}) already shows the incoming photo "
                         f"(difference {to_b[k]:.1f} <= {MOVED})")
        # (b) It gets there step by step.
        if case["progress"] == "colour":
            d = mad(shot["50"], solid(case["attrs"]["fade_color"]))
            if d > COLOUR_CLOSE:
                p.append(f"50 % (frame {f['50']}) is not the fade colour (difference {d:.1f} > {COLOUR_CLOSE})")
        elif case["progress"] == "moves":
            for k1, k2 in (("25", "50"), ("50", "75")):
                d = mad(small[png(f[k1])], small[png(f[k2])])
                if d <= MOVED:
                    p.append(f"{k1} % and {k2} % look the same (difference {d:.1f} <= {MOVED})")
        else:
            d25, d50, d75 = to_b["25"], to_b["50"], to_b["75"]
            if not (d50 <= d25 + SLACK and d75 <= d50 + SLACK and d75 < d25 - SLACK):
                p.append(f"does not move towards the incoming photo: difference to it at 25/50/75 % is "
                         f"{d25:.1f}/{d50:.1f}/{d75:.1f}")

    # (d) Different values of one option give different pictures half way.
    groups = {}
    for case in cases:
        if case["group"] is not None and case["frames"]["50"] != case["frames"]["after"]:
            groups.setdefault((case["name"], case["group"]), []).append(case)
    for members in groups.values():
        alike = {c["label"]: [] for c in members}
        for c1, c2 in combinations(members, 2):
            d = mad(small[png(c1["frames"]["50"])], small[png(c2["frames"]["50"])])
            if d <= DISTINCT:
                alike[c1["label"]].append(f"{option_text(c2)} ({d:.1f})")
                alike[c2["label"]].append(f"{option_text(c1)} ({d:.1f})")
        for label, others in alike.items():
            if others:
                problems[label].append(f"50 % looks the same as with {', '.join(others)} "
                                       f"(difference <= {DISTINCT})")

    if sheet_job.wait() != 0:
        general.append(f"ImageMagick could not write the contact sheet {sheet}")
    else:
        print(f"contact sheet: {sheet}")
    return report(general, problems, cases)


def report(general, problems, cases):
    for line in general:
        print(f"FAIL: {line}")
    if problems is None:
        print(f"none of the {len(cases)} transition cases could be checked")
        return 1
    failed = [c["label"] for c in cases if problems.get(c["label"])]
    for label in failed:
        print(f"FAIL {label}:")
        for line in problems[label]:
            print(f"    {line}")
    failed_names = sorted({c["name"] for c in cases if problems.get(c["label"])})
    passed_names = sorted({c["name"] for c in cases} - set(failed_names))
    print(f"{len(cases) - len(failed)} of {len(cases)} transition cases pass")
    if passed_names:
        print("transitions whose cases all pass: " + ", ".join(passed_names))
    if failed_names:
        print("transitions with failing cases: " + ", ".join(failed_names))
    return 1 if general or failed else 0


SHEET_ROWS = 60  # cases per panel; panels stand side by side (ImageMagick takes 16000 pixels at most)


def start_sheet(cases, png, sheet):
    """Starts ImageMagick on the contact sheet: one row per case, its label, then
    the shots at 25, 50 and 75 %."""
    os.makedirs(os.path.dirname(os.path.abspath(sheet)), exist_ok=True)
    args = ["convert", "-background", "white", "-fill", "black", "-font", "DejaVu-Sans", "-pointsize", "11"]
    for first in range(0, len(cases), SHEET_ROWS):
        args += ["(", "(", "-size", "280x18", "xc:white"]
        for column in ("25 %", "50 %", "75 %"):
            args += ["-size", "164x18", "-gravity", "center", f"label:{column}"]
        args += ["+append", ")"]
        for case in cases[first:first + SHEET_ROWS]:
            # "Name: option=value", one option to a line.
            text = case["name"] + (":" if case["group"] else "")
            text += "".join(f"\n  {k}={v}" for k, v in case["attrs"].items())
            if case["group"] and not case["attrs"]:
                text += "\n  defaults"
            if case["frames"]["25"] == case["frames"]["after"]:
                text += "\n(no transition frames)"
            args += ["(", "-size", "280x124", "-gravity", "West", f"label:{text}"]
            for k in ("25", "50", "75"):
                args += ["(", png(case["frames"][k]), "-scale", "50%", "-bordercolor", "white",
                         "-border", "2", ")"]
            args += ["+append", ")"]
        args += ["-append", ")"]
    args += ["-gravity", "North", "+append", "+repage", "-depth", "8", sheet]
    return subprocess.Popen(args)


def main(argv):
    if len(argv) == 5 and argv[1] == "plan":
        plan(*argv[2:])
        return 0
    if len(argv) == 4 and argv[1] == "locate":
        locate(*argv[2:])
        return 0
    if len(argv) == 6 and argv[1] == "check":
        return check(*argv[2:])
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv))
