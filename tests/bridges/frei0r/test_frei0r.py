"""Runs the effects as frei0r plug-ins in programs for video, and compares their frames with the command ombrix.

test_frei0r.py OMBRIX PLUGINS POSTERIZE: the folder of the set, and a plug-in elsewhere."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import numpy
from PIL import Image

OMBRIX, PLUGINS, POSTERIZE = map(os.path.abspath, sys.argv[1:])
SIZE = (176, 91)  # ffmpeg leaves the end of frames of other widths than multiples of sixteen as it is

# What the command ombrix is given, and ffmpeg: the name of a plug-in and its parameters.
FILTERS = [
    ("sepia 28", "ombrix_sepia", ["0.4"]),
    ("invert", "ombrix_invert", []),
    ("contrast -100", "ombrix_contrast", ["0"]),
    ("brightness 255", "ombrix_brightness", ["1"]),
    ("colorfilter 51 0 -255", "ombrix_colorfilter", ["0.6", "0.5", "0"]),
    ("grayscale ntsc_pal", "ombrix_grayscale", ["ntsc_pal"]),
]


class Frei0r(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.environment = {**os.environ, "FREI0R_PATH": PLUGINS, "MLT_FREI0R_PLUGIN_PATH": PLUGINS, "HOME": folder.name,
                            "GST_REGISTRY": str(self.folder / "registry")}
        self.random = numpy.random.default_rng(1)
        self.frames("a")
        self.frames("b")

    def frames(self, name, count=3):
        for i in range(count):
            y, x = numpy.mgrid[: SIZE[1], : SIZE[0]]
            base = numpy.stack([x + 20 * i, y * 2, x + y], -1) + self.random.integers(0, 60, (SIZE[1], SIZE[0], 3))
            Image.fromarray((base % 256).astype("uint8")).save(self.folder / f"{name}{i}.png")

    def run_program(self, *words, status=0, **more):
        run = subprocess.run(words, env={**self.environment, **more}, cwd=self.folder, capture_output=True, text=True,
                             timeout=120)
        self.assertEqual(run.returncode, status, (words, run.stdout, run.stderr))
        return run.stdout + run.stderr

    def pixels(self, name):
        with Image.open(self.folder / name) as image:
            return numpy.asarray(image.convert("RGB"))

    def expected(self, work, source, *options):
        self.run_program(OMBRIX, *options, *work.split(), source, "expected.png", "--force")
        return self.pixels("expected.png")

    def ffmpeg(self, *words, **more):
        return self.run_program("ffmpeg", "-v", "error", "-y", *words, **more)

    def test_filters_in_ffmpeg(self):
        for work, name, values in FILTERS:
            for threads in ("1", "4"):
                with self.subTest(work=work, threads=threads):
                    filter_ = f"format=rgba,frei0r={name}" + (":" + "|".join(values) if values else "")
                    self.ffmpeg("-filter_threads", threads, "-i", "a%d.png", "-vf", filter_, "-pix_fmt", "rgb24", "got%d.png")
                    for i in range(3):
                        numpy.testing.assert_array_equal(self.pixels(f"got{i + 1}.png"), self.expected(work, f"a{i}.png"))

    def test_values_without_parameters_are_taken(self):
        self.ffmpeg("-i", "a0.png", "-vf", "format=rgba,frei0r=ombrix_sepia", "got.png")
        numpy.testing.assert_array_equal(self.pixels("got.png"), self.expected("sepia 10", "a0.png"))

    def test_mixers_in_ffmpeg_by_a_blend_mode(self):
        # ffmpeg has filters and sources alone: a mixer says so, and nothing breaks.
        said = self.run_program("ffmpeg", "-v", "error", "-i", "a0.png", "-vf", "frei0r=ombrix_blend", "-y", "got.png", status=1)
        self.assertIn("frei0r", said)

    def test_filters_and_mixers_in_gstreamer(self):
        caps = f"video/x-raw,format=RGBA,width={SIZE[0]},height={SIZE[1]}"
        self.run_program(*f"gst-launch-1.0 -q filesrc location=a0.png ! pngdec ! videoconvert ! {caps} !"
                         " frei0r-filter-ombrix-sepia value=0.4 ! pngenc ! filesink location=got.png".split())
        numpy.testing.assert_array_equal(self.pixels("got.png"), self.expected("sepia 28", "a0.png"))
        self.run_program(*"gst-launch-1.0 -q frei0r-mixer-ombrix-blend name=mix mode=overlay ! pngenc snapshot=true !"
                         f" filesink location=got.png filesrc location=a0.png ! pngdec ! videoconvert ! {caps} ! mix.sink_0"
                         f" filesrc location=b0.png ! pngdec ! videoconvert ! {caps} ! mix.sink_1".split())
        numpy.testing.assert_array_equal(self.pixels("got.png"), self.expected("blend overlay b0.png", "a0.png"))

    def test_filters_and_transitions_in_mlt(self):
        def melt(*words):
            profile = self.folder / "profile"
            profile.write_text(f"description=test\nframe_rate_num=25\nframe_rate_den=1\nwidth={SIZE[0]}\nheight={SIZE[1]}\n"
                               "progressive=1\nsample_aspect_num=1\nsample_aspect_den=1\ndisplay_aspect_num=16\n"
                               "display_aspect_den=9\ncolorspace=709\n")
            consumer = ["-consumer", "avformat:got%d.png", "vcodec=png", "pix_fmt=rgb24", "f=image2", "real_time=-2"]
            self.run_program("melt", "-silent", "-profile", str(profile), *words, *consumer, QT_QPA_PLATFORM="offscreen")

        melt("a0.png", "out=2", "-filter", "frei0r.ombrix_sepia", "value=0.4")
        numpy.testing.assert_array_equal(self.pixels("got1.png"), self.expected("sepia 28", "a0.png"))
        melt("a0.png", "out=2", "-track", "b0.png", "out=2", "-transition", "frei0r.ombrix_blend", "mode=hue", "in=0", "out=2",
             "a_track=0", "b_track=1")
        numpy.testing.assert_array_equal(self.pixels("got2.png"), self.expected("blend hue b0.png", "a0.png"))

    def test_the_set_of_a_plugin_elsewhere(self):
        self.run_program(OMBRIX, "frei0r", "--plugin", POSTERIZE, "-o", "mine/set")
        self.assertEqual(sorted(os.listdir(self.folder / "mine/set")), ["ombrix-plugins.txt", "ombrix_posterize.so"])
        self.assertIn("exists", self.run_program(OMBRIX, "frei0r", "--plugin", POSTERIZE, "-o", "mine/set", status=1))
        self.ffmpeg("-i", "a0.png", "-vf", "format=rgba,frei0r=ombrix_posterize:0", "got.png",
                    FREI0R_PATH=str(self.folder / "mine/set"))
        expected = self.expected("posterize 2", "a0.png", "--plugin", POSTERIZE)
        numpy.testing.assert_array_equal(self.pixels("got.png"), expected)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
