#!/usr/bin/env python3
"""Makes the figures and the picture of docs/reference.md with ffc and recorded frames.

    FFC_TEST_DATA=FOLDER scripts/reference-figures.py [--picture docs/images/reference.png] [--ffc build/release/bin/ffc]

FOLDER/emva1288_set001 has bright_000.png to bright_039.png and dark_000.png to dark_007.png. References are made of the
first frames; residuals are those of the last twenty, which are in no reference.
"""
import argparse
import array
import json
import math
import os
import struct
import subprocess
import sys
import tempfile
import zlib

WIDTH, HEIGHT = 640, 480
CROP = (200, 150, 240, 180)  # column, line, width, height of what the picture shows
GREYS = 16
CONTRAST = 0.02  # white and black lie so far from the mean


def run(arguments):
    result = subprocess.run(arguments, capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit(result.stderr)
    return [json.loads(line) for line in result.stdout.splitlines()]


def files(folder, kind, first, end):
    return [os.path.join(folder, f"{kind}_{n:03}.png") for n in range(first, end)]


def make(ffc, folder, method, count, flat):
    """Makes a flat of the first frames; answers what the tool tells of it."""
    lines = run([ffc, "make", "--json", "--force", "--pixel-format", "Mono12", "--method", method, "-o", flat,
                 "--dark", *files(folder, "dark", 0, min(count, 8)), "--bright", *files(folder, "bright", 0, count)])
    return next(line for line in lines if line.get("status") == "made")


def check(ffc, folder, flat):
    """Answers PRNU before and after, percent."""
    line = run([ffc, "check", flat, "--json", *files(folder, "bright", 20, 40), "--dark",
                *files(folder, "dark", 0, 8)])[0]
    return line["before"]["prnuPercent"], line["after"]["prnuPercent"]


def print_table(ffc, folder, flat):
    print("| bright frames | uncorrected | average | weighted | weight of the finest detail | noise from |")
    print("|---|---|---|---|---|---|")
    for count in (1, 2, 4, 8, 16):
        make(ffc, folder, "average", count, flat)
        before, average = check(ffc, folder, flat)
        made = make(ffc, folder, "weighted", count, flat)
        weighted = check(ffc, folder, flat)[1]
        print(f"| {count} | {before:.3f} % | {average:.3f} % | {weighted:.3f} % | {made['detailWeight']:.3f} | "
              f"{made['noise']} |")


def read_response(flat):
    """The response of each pixel, as the table takes it: the reciprocal of its gain, with a mean of 1."""
    gains = array.array("H")
    with open(flat, "rb") as file:
        gains.frombytes(file.read(WIDTH * HEIGHT * 2))
    if sys.byteorder == "big":
        gains.byteswap()
    response = [1 / gain for gain in gains]
    mean = math.fsum(response) / len(response)
    return [value / mean for value in response]


def write_png(path, lines):
    """Grey lines of 4 bits."""
    packed = b"".join(b"\0" + bytes(line[n] << 4 | line[n + 1] for n in range(0, len(line), 2)) for line in lines)

    def chunk(name, content):
        return struct.pack(">I", len(content)) + name + content + struct.pack(">I", zlib.crc32(name + content))

    header = struct.pack(">IIBBBBB", len(lines[0]), len(lines), 4, 0, 0, 0, 0)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(packed, 9)) +
                   chunk(b"IEND", b""))


def paint(ffc, folder, flat, path):
    """Average, weighted and their difference, of one frame."""
    make(ffc, folder, "average", 1, flat)
    average = read_response(flat)
    make(ffc, folder, "weighted", 1, flat)
    weighted = read_response(flat)
    difference = [1 + one - other for one, other in zip(average, weighted)]
    left, top, width, height = CROP

    def grey(value):
        return max(0, min(GREYS - 1, int((value - 1 + CONTRAST) / (2 * CONTRAST) * GREYS)))

    write_png(path, [[grey(image[line * WIDTH + column]) for image in (average, weighted, difference)
                      for column in range(left, left + width)] for line in range(top, top + height)])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--ffc", default="build/release/bin/ffc")
    parser.add_argument("--picture")
    options = parser.parse_args()
    folder = os.path.join(os.environ.get("FFC_TEST_DATA", ""), "emva1288_set001")
    if not os.path.isdir(folder):
        sys.exit("FFC_TEST_DATA names no folder with emva1288_set001")
    with tempfile.TemporaryDirectory() as scratch:
        flat = os.path.join(scratch, "flat.ffc")
        print_table(options.ffc, folder, flat)
        if options.picture:
            paint(options.ffc, folder, flat, options.picture)


main()
