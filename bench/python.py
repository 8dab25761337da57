"""Measures the Python package beside NumPy: ./run bench --python.

All programs of a line take turns, and the medians of their rounds are compared.
"""

import argparse
import statistics
import time

import numpy as np
import ombrix

RANDOM = np.random.default_rng(1)


def noise(height, width, channels):
    return RANDOM.integers(0, 256, (height, width, channels), dtype=np.uint8)


def sepia_by_numpy(array):
    """The formula of ombrix.Sepia(30), as one writes it with NumPy."""
    luma = np.trunc(array @ np.array([0.299, 0.587, 0.114]))[..., None]
    return np.clip(luma + np.floor(30 * np.array([0.956, -0.272, -1.105])), 0, 255).astype(np.uint8)


def medians(works, rounds, repeat):
    """Seconds of one call of each function."""
    times = {name: [] for name in works}
    for count in range(rounds + 1):
        for name, work in works.items():
            start = time.perf_counter()
            for _ in range(repeat):
                work()
            if count > 0:  # the first round fills caches
                times[name].append((time.perf_counter() - start) / repeat)
    return {name: statistics.median(each) for name, each in times.items()}


def verdict(kept):
    return "ok" if kept else "MISSED"


def main():
    parser = argparse.ArgumentParser(prog="./run bench --python", description=__doc__.splitlines()[0])
    parser.add_argument("--python", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--rounds", type=int, default=15, metavar="N", help="rounds that count; %(default)s unless given")
    rounds = parser.parse_args().rounds
    sepia = ombrix.Sepia(30)
    missed = 0

    print("A call on 16 x 16 pixels, in microseconds")
    bar = 10
    for channels in (3, 4):
        small = noise(16, 16, channels)
        out = np.empty_like(small)
        works = {"new": lambda: sepia(small), "out=": lambda: sepia(small, out=out), "in place": lambda: sepia(out, out=out)}
        for name, seconds in medians(works, rounds, 2000).items():
            missed += seconds * 1e6 > bar
            print(f"  {channels} channels, {name:10} {seconds * 1e6:6.1f} (at most {bar}) {verdict(seconds * 1e6 <= bar)}")

    large = noise(3000, 4000, 3)
    out = np.empty_like(large)
    np.testing.assert_array_equal(sepia(large[:400]), sepia_by_numpy(large[:400]))
    print("\nSepia of 12 megapixels, by the time of np.copyto of the same array")
    works = {"np.copyto": lambda: np.copyto(out, large), "out=": lambda: sepia(large, out=out), "in place": lambda: sepia(out, out=out)}
    times = medians(works, rounds, 3)
    for name in ("out=", "in place"):
        ratio = times[name] / times["np.copyto"]
        missed += ratio > 3
        print(f"  {name:10} {ratio:5.2f} (at most 3) {verdict(ratio <= 3)}")
    by_numpy = medians({"NumPy": lambda: sepia_by_numpy(large)}, 3, 1)["NumPy"] / times["out="]
    missed += by_numpy < 40
    print(f"  the formula in NumPy takes {by_numpy:.0f} times as long as out= (at least 40) {verdict(by_numpy >= 40)}")
    print(f"\nBars that are missed: {missed}")


if __name__ == "__main__":
    main()
