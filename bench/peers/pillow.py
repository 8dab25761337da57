"""Measures what Pillow has for a row of the table, against a copy of the same pixels right before each run.

    pillow.py --list                      the rows, one a line: GROUP/WORK
    pillow.py GROUP WORK WIDTH HEIGHT     prints the median of time of the copy / time of the work

Pillow always works into a picture that it makes itself, so its rows are those with a new picture and the blends.
"""

import ctypes
import os
import statistics
import sys
import time

from PIL import Image, ImageChops

ITERATIONS = 9
WARM_UPS = 1

NEW = "into a new picture"
BLEND = "blend"
MIXED = "blend with opacity and mask"


def by_table(change):
    table = [value for channel in range(4) for value in (min(255, max(0, int(change(i)))) for i in range(256))]
    return lambda source, fill, mask: source.point(table)


def combine(function):
    return lambda source, fill, mask: function(source, fill)


WORKS = {
    (NEW, "brightness"): by_table(lambda i: i + 25),
    (NEW, "contrast"): by_table(lambda i: (i - 128) * 1.5625 + 128),
    (NEW, "map"): by_table(lambda i: 255 * (i / 255) ** 0.8),
    (NEW, "invert"): lambda source, fill, mask: ImageChops.invert(source),
    (BLEND, "multiply"): combine(ImageChops.multiply),
    (BLEND, "screen"): combine(ImageChops.screen),
    (BLEND, "overlay"): combine(ImageChops.overlay),
    (BLEND, "hard light"): combine(ImageChops.hard_light),
    (BLEND, "soft light"): combine(ImageChops.soft_light),
    (BLEND, "darken"): combine(ImageChops.darker),
    (BLEND, "lighten"): combine(ImageChops.lighter),
    (BLEND, "difference"): combine(ImageChops.difference),
    (BLEND, "linear dodge"): combine(ImageChops.add),
    (BLEND, "add"): combine(ImageChops.add),
    (MIXED, "normal"): lambda source, fill, mask: Image.composite(source, fill, mask),
}


def measure(work, width, height):
    size = (width, height)
    pixels = os.urandom(4 * width * height)
    source = Image.frombytes("RGBA", size, pixels)
    fill = Image.frombytes("RGBA", size, pixels[::-1])
    mask = Image.frombytes("L", size, pixels[: width * height])
    original = ctypes.create_string_buffer(pixels, len(pixels))
    copy = ctypes.create_string_buffer(pixels, len(pixels))
    ratios = []
    for _ in range(WARM_UPS + ITERATIONS):
        start = time.perf_counter()
        ctypes.memmove(copy, original, len(pixels))
        copied = time.perf_counter()
        result = work(source, fill, mask)
        ratios.append((copied - start) / (time.perf_counter() - copied))
        del result
    return statistics.median(ratios[WARM_UPS:])


def main(arguments):
    if arguments == ["--list"]:
        for group, work in WORKS:
            print(f"{group}/{work}")
        return
    group, work, width, height = arguments
    print(measure(WORKS[group, work], int(width), int(height)))


main(sys.argv[1:])
