"""Measures the command on image files beside other programs: ./run bench --files.

Each work is done by all programs by turns, and the medians of its rounds are compared with the first of the others.
Time is from start to exit. Memory is the largest resident set of all the processes that a program starts, each by
itself, as the system counts it when they end (ru_maxrss of wait4, which takes in the children that were waited for).
"""

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field
from typing import Callable, Dict, List, Optional

PHOTO = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "examples", "photo.jpg")
# Names that no other program has come first.
MAGICK = next((name for name in ("magick", "convert-im6") if shutil.which(name)), "convert")
CHAIN = "invert --then brightness 20 --then contrast 15 --then colorfilter Red=20 Blue=-20 --then sepia 20".split()


@dataclass
class Work:
    """One line of the table. Commands are for files in the current folder; {out} is a folder for results."""

    name: str
    commands: Dict[str, List[str]]  # by program; the first is measured, the second is what its bars are ratios to
    prepare: Callable[[], None]
    time_bar: Optional[float] = None  # at most, of the second
    memory_bar: Optional[float] = None  # at most, of the second
    memory_limit: Optional[int] = None  # at most, in MB
    rounds: Optional[int] = None


@dataclass
class Measured:
    seconds: List[float] = field(default_factory=list)
    megabytes: List[float] = field(default_factory=list)


def run(command):
    """Seconds and MB of a command, whose output is shown if it fails."""
    with tempfile.TemporaryFile() as output:
        start = time.perf_counter()
        to_output = [(os.POSIX_SPAWN_DUP2, output.fileno(), 1), (os.POSIX_SPAWN_DUP2, output.fileno(), 2)]
        process = os.posix_spawnp(command[0], command, os.environ, file_actions=to_output)
        _, status, usage = os.wait4(process, 0)
        seconds = time.perf_counter() - start
        if status != 0:
            output.seek(0)
            sys.exit(f"bench: {' '.join(command)} failed:\n{output.read().decode(errors='replace')}")
    return seconds, usage.ru_maxrss / 1000


def vips(*words):
    subprocess.run(["vips", *map(str, words)], check=True)


def enlarged(name, width, height, source=PHOTO):
    """The photograph side by side with itself: larger, but no smoother."""
    if os.path.exists(name):
        return
    across, down = -(-width // 1200), -(-height // 800)
    vips("replicate", source, "whole.v", across, down)
    vips("crop", "whole.v", f"{name}[Q=90]", 0, 0, width, height)
    os.remove("whole.v")


def invert(ombrix, source, target, q="[Q=90]"):
    return {
        "ombrix": [ombrix, "apply", "invert", source, "{out}/" + target],
        "vips": ["vips", "invert", source, "{out}/" + target + q],
        "ImageMagick": [MAGICK, source, "-negate", "-quality", "90", "{out}/" + target],
        "ffmpeg": ["ffmpeg", "-loglevel", "error", "-y", "-i", source, "-vf", "negate", "-q:v", "3", "{out}/" + target],
    }


def works(ombrix, huge):
    def photograph(megapixels):
        width, height = {12: (4000, 3000), 48: (8000, 6000)}[megapixels]
        return lambda: enlarged(f"{megapixels}.jpg", width, height)

    def tiny():
        vips("crop", PHOTO, "tiny.png", 0, 0, 10, 10)

    def pair():
        photograph(12)()
        vips("rot", "12.jpg", "turned.jpg[Q=90]", "d180")

    def large():
        vips("replicate", PHOTO, "large.tif[compression=jpeg,Q=90,bigtiff]", 50, 75)

    if huge:
        commands = invert(ombrix, "large.tif", "huge.tif", "[compression=jpeg,Q=90,bigtiff]")
        commands["ombrix"][-1] += "[compression=jpeg,Q=90]"
        both = {program: commands[program] for program in ("ombrix", "vips")}
        yield Work("invert, 60000 x 60000", both, large, memory_limit=300, rounds=1)
        return
    for megapixels in (12, 48):
        commands = invert(ombrix, f"{megapixels}.jpg", "inverted.jpg")
        yield Work(f"invert, {megapixels} megapixels", commands, photograph(megapixels), 1.05, memory_bar=1.5)
    five = {
        "ombrix": [ombrix, "apply", *CHAIN, "12.jpg", "{out}/five.jpg"],
        "ombrix, one": [ombrix, "apply", "invert", "12.jpg", "{out}/inverted.jpg"],
    }
    yield Work("five effects, 12 megapixels", five, photograph(12), 1.15)
    blend = {
        "ombrix": [ombrix, "apply", "blend", "overlay", "turned.jpg", "60%", "12.jpg", "{out}/blend.jpg"],
        "vips": ["vips", "composite2", "12.jpg", "turned.jpg", "{out}/blend.jpg[Q=90]", "overlay"],
        "ImageMagick": [MAGICK, *"12.jpg turned.jpg -compose overlay -composite -quality 90 {out}/blend.jpg".split()],
        "ffmpeg": "ffmpeg -loglevel error -y -i 12.jpg -i turned.jpg -filter_complex "
        "blend=all_mode=overlay:all_opacity=0.6 -q:v 3 {out}/blend.jpg".split(),
    }
    yield Work("overlay at 60%, 12 megapixels", blend, pair, 0.6, memory_limit=100)
    yield Work("invert, 10 x 10", invert(ombrix, "tiny.png", "inverted.png", ""), tiny, 1.2, rounds=41)


def is_there(command):
    return shutil.which(command[0]) is not None


def measure(work, rounds):
    """Measures the programs that are there."""
    measured = {program: Measured() for program, command in work.commands.items() if is_there(command)}
    for count in range(rounds + (rounds > 1)):
        for program in measured:
            with tempfile.TemporaryDirectory(dir=".", prefix="out-") as out:
                seconds, megabytes = run([word.replace("{out}/", out) for word in work.commands[program]])
            if count > 0 or rounds == 1:  # the first round fills caches
                measured[program].seconds.append(seconds)
                measured[program].megabytes.append(megabytes)
    return measured


def verdict(value, bar):
    return "" if bar is None else f" (at most {bar:g}) {'ok' if value <= bar else 'ABOVE'}"


def show(work, measured):
    """Prints the lines of a work. Returns how many bars it misses."""
    seconds = {program: statistics.median(each.seconds) for program, each in measured.items()}
    # What a work takes at its worst counts.
    megabytes = {program: max(each.megabytes) for program, each in measured.items()}
    print(f"\n{work.name}\n  {'':12} {'ms':>8} {'MB':>7}", end="")
    print("   time and memory of ombrix by those of the program")
    missed = 0
    own, peer = list(work.commands)[:2]
    for program in measured:
        line = f"  {program:12} {seconds[program] * 1000:8.0f} {megabytes[program]:7.0f}"
        said = []
        if program == own and work.memory_limit:
            said.append(f"memory{verdict(megabytes[own], work.memory_limit)}")
        if program != own:
            by_time, by_memory = seconds[own] / seconds[program], megabytes[own] / megabytes[program]
            bars = (work.time_bar, work.memory_bar) if program == peer else (None, None)
            said.append(f"{by_time:.2f}{verdict(by_time, bars[0])}")
            said.append(f"{by_memory:.2f}{verdict(by_memory, bars[1])}")
        print(line + "   " + ", ".join(said))
        missed += " ".join(said).count("ABOVE")
    return missed


def main():
    parser = argparse.ArgumentParser(
        prog="./run bench --files",
        description="Measures ombrix on image files beside vips, ImageMagick and ffmpeg, as far as they are installed.",
    )
    parser.add_argument("--files", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--ombrix", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--rounds", type=int, default=7, metavar="N", help="rounds that count; %(default)s unless given")
    parser.add_argument(
        "--huge", action="store_true", help="a picture of 60000 x 60000 pixels alone; takes minutes and 4 GB of disk"
    )
    options = parser.parse_args()
    all_works = list(works(os.path.abspath(options.ombrix), options.huge))
    programs = {command[0]: program for work in all_works for program, command in work.commands.items()}
    for command, program in programs.items():
        if not is_there([command]):
            print(f"{program} is left out: it is not installed.")
    if not is_there(["vips"]):
        sys.exit("bench: vips makes the files, so this needs it (Debian's libvips-tools)")
    missed = 0
    with tempfile.TemporaryDirectory(prefix="ombrix-bench-") as folder:
        os.chdir(folder)
        for work in all_works:
            work.prepare()
            missed += show(work, measure(work, work.rounds or options.rounds))
            sys.stdout.flush()
        os.chdir(os.sep)
    print(f"\nBars that are missed: {missed}")


if __name__ == "__main__":
    main()
