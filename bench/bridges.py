"""Measures the effects in other programs beside what these do themselves: ./run bench --bridges.

libvips works on uncompressed files, and from start to exit. ffmpeg makes frames of 3840 x 2160, which it does not write;
what a filter costs is the CPU time of the whole run less that of a run without it."""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile

from files import PHOTO, Work, measure, show, vips

FRAMES = 60
SEPIA = "3 3\n0.393 0.769 0.189\n0.349 0.686 0.168\n0.272 0.534 0.131\n"
FILTERS = {
    "frei0r=ombrix_sepia": "format=rgba,frei0r=ombrix_sepia:0.4",
    "colorchannelmixer": "format=rgba,colorchannelmixer=.393:.769:.189:0:.349:.686:.168:0:.272:.534:.131",
    "frei0r=ombrix_invert": "format=rgba,frei0r=ombrix_invert",
    "negate": "format=rgba,negate",
}


def works():
    def prepare():
        vips("replicate", PHOTO, "large.v", 4, 4)
        vips("rot", "large.v", "fill.v", "d180")
        with open("sepia.mat", "w", encoding="ascii") as matrix:
            matrix.write(SEPIA)

    def own(*words):
        return ["vips", words[0], "large.v", *words[1:]]

    yield Work("sepia of 4800 x 3200 in libvips",
               {"ombrix": own("ombrix_sepia", "{out}/a.v", "30"), "recomb": own("recomb", "{out}/a.v", "sepia.mat"),
                "copy": own("copy", "{out}/a.v")}, prepare)
    yield Work("overlay of 4800 x 3200 in libvips",
               {"ombrix": own("ombrix_blend", "fill.v", "{out}/a.v", "--mode", "overlay"),
                "composite2": own("composite2", "fill.v", "{out}/a.v", "overlay"),
                "copy": own("copy", "{out}/a.v")}, prepare)


def huge_works():
    def prepare():
        vips("replicate", PHOTO, "huge.tif[compression=jpeg,tile,Q=90,bigtiff]", 50, 75)

    script = ('require "vips"; Vips::Image.new_from_file("huge.tif", access: :sequential).ombrix_contrast(value: 20)'
              '.ombrix_sepia(30).ombrix_brightness(value: 10).dzsave(ARGV[0] + "tiles")')
    yield Work("three effects of 60000 x 60000 into a pyramid of tiles",
               {"ombrix": ["ruby", "-e", script, "{out}/"]}, prepare, memory_limit=300, rounds=1)


# At most, of what the other operation takes beyond a copy.
BARS = {"recomb": 1 / 3, "composite2": 1 / 9}


def show_net(measured):
    """Less what reading and writing take."""
    if "copy" not in measured:
        return
    net = {name: statistics.median(each.seconds) - statistics.median(measured["copy"].seconds)
           for name, each in measured.items()}
    for name, bar in BARS.items():
        if name in net:
            share = net["ombrix"] / net[name]
            print(f"  beyond a copy: {share:.2f} of {name} (at most {bar:.2f}) {'ok' if share <= bar else 'ABOVE'}")


def cpu_seconds(filter_):
    words = ["ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"testsrc2=size=3840x2160:rate=25,{filter_}", "-frames:v",
             str(FRAMES), "-f", "null", "-"]
    process = subprocess.Popen(words)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"bench: {' '.join(words)} failed")
    return usage.ru_utime + usage.ru_stime


def show_frames(rounds):
    seconds = {name: [] for name in FILTERS}
    for _ in range(rounds):
        plain = cpu_seconds("format=rgba")
        for name, filter_ in FILTERS.items():
            seconds[name].append((cpu_seconds(filter_) - plain) / FRAMES)
    print("\na frame of 3840 x 2160 in ffmpeg\n  " + f"{'':22} {'CPU ms':>8}")
    for name, each in seconds.items():
        print(f"  {name:22} {statistics.median(each) * 1000:8.1f}")


def main():
    parser = argparse.ArgumentParser(
        prog="./run bench --bridges", description="Measures the effects in libvips and ffmpeg beside their own filters."
    )
    parser.add_argument("--bridges", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--build", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--rounds", type=int, default=7, metavar="N", help="rounds that count; %(default)s unless given")
    parser.add_argument("--huge", action="store_true", help="60000 x 60000 pixels alone; takes minutes and gigabytes of disk")
    options = parser.parse_args()
    build = os.path.abspath(options.build)
    os.environ.update(VIPSHOME=build + "/vips", FREI0R_PATH=build + "/frei0r-1")
    with tempfile.TemporaryDirectory(prefix="ombrix-bench-") as folder:
        os.chdir(folder)
        for work in huge_works() if options.huge else works():
            work.prepare()
            measured = measure(work, work.rounds or options.rounds)
            show(work, measured)
            show_net(measured)
            sys.stdout.flush()
        os.chdir(os.sep)
    if not options.huge:
        show_frames(options.rounds)


if __name__ == "__main__":
    main()
