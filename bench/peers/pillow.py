"""Measures Pillow's counterparts of the lines of the tables.

    pillow.py --list                          what it has, one a line: TABLE/MEASURED
    pillow.py TABLE MEASURED WIDTH HEIGHT     prints the median of the seconds that it takes

Pillow always makes the picture that it works into, so it has counterparts for new pictures and blends alone.
"""

import os
import statistics
import sys
import time

from PIL import Image, ImageChops

ROUNDS = 9
WARM_UPS = 1

NEW = "into a new picture"
BLEND = "blend"
MIXED = "blend with opacity and mask"


def by_table(change):
    table = [value for channel in range(4) for value in (min(255, max(0, int(change(i)))) for i in range(256))]
    return lambda source, fill, mask: source.point(table)


def combine(function):
    return lambda source, fill, mask: function(source, fill)


OPERATIONS = {
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


def measure(operation, width, height):
    size = (width, height)
    pixels = os.urandom(4 * width * height)
    source = Image.frombytes("RGBA", size, pixels)
    fill = Image.frombytes("RGBA", size, pixels[::-1])
    mask = Image.frombytes("L", size, pixels[: width * height])
    seconds = []
    for _ in range(WARM_UPS + ROUNDS):
        start = time.perf_counter()
        result = operation(source, fill, mask)
        seconds.append(time.perf_counter() - start)
        del result
    return statistics.median(seconds[WARM_UPS:])


def main(arguments):
    if arguments == ["--list"]:
        for table, measured in OPERATIONS:
            print(f"{table}/{measured}")
        return
    table, measured, width, height = arguments
    print(measure(OPERATIONS[table, measured], int(width), int(height)))


main(sys.argv[1:])
