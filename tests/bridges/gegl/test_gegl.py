"""Runs the effects in GEGL, by its command, and compares with the command ombrix.

test_gegl.py OMBRIX MODULE EXAMPLES"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import numpy
from PIL import Image

OMBRIX, MODULE, EXAMPLES = map(os.path.abspath, sys.argv[1:])

FILTERS = [
    ("sepia 28", ["ombrix:sepia", "value=28"]),
    ("sepia 10", ["ombrix:sepia"]),
    ("invert", ["ombrix:invert"]),
    ("contrast -40", ["ombrix:contrast", "value=-40"]),
    ("colorfilter 40 0 -30", ["ombrix:colorfilter", "red=40", "blue=-30"]),
    ("grayscale ntsc_pal", ["ombrix:grayscale", "type=ntsc_pal"]),
]


class Gegl(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        modules = subprocess.run(
            ["pkg-config", "--variable=pluginsdir", "gegl-0.4"], capture_output=True, text=True, check=True
        ).stdout.strip()
        self.environment = {**os.environ, "GEGL_PATH": modules + ":" + os.path.dirname(MODULE), "HOME": folder.name}
        with Image.open(os.path.join(EXAMPLES, "photo.jpg")) as photo:
            photo.save(self.folder / "photo.png")
            photo.crop((0, 0, 301, 203)).save(self.folder / "odd.png")
        with Image.open(os.path.join(EXAMPLES, "texture.jpg")) as texture:
            texture.save(self.folder / "texture.png")
            texture = texture.crop((0, 0, 301, 203))
            texture.save(self.folder / "opaque.png")
            alpha = Image.fromarray(numpy.tile(numpy.arange(301) % 256, (203, 1)).astype("uint8"))
            texture.putalpha(alpha)
            texture.save(self.folder / "transparent.png")

    def run_program(self, *words):
        run = subprocess.run(words, env=self.environment, cwd=self.folder, capture_output=True, text=True, errors="replace", timeout=120)
        self.assertEqual(run.returncode, 0, (words, run.stdout, run.stderr))
        return run.stdout + run.stderr

    def pixels(self, name):
        with Image.open(self.folder / name) as image:
            return numpy.asarray(image.convert("RGB")).astype(int)

    def check(self, source, work, operation, tolerance=0):
        self.run_program(OMBRIX, *work.split(), source, "expected.png", "--force")
        said = self.run_program("gegl", source, "-o", "got.png", "--", *operation)
        self.assertNotIn("ombrix", said)
        got, expected = self.pixels("got.png"), self.pixels("expected.png")
        self.assertLessEqual(numpy.abs(got - expected).max(), tolerance)

    def test_filters(self):
        for source in ("photo.png", "odd.png"):
            for work, operation in FILTERS:
                with self.subTest(source=source, work=work):
                    self.check(source, work, operation)

    def test_blends(self):
        def aux(file):
            return ["aux=[", "load", "path=" + file, "]"]

        for mode in ("hue", "overlay", "color_dodge"):
            with self.subTest(mode=mode):
                self.check("photo.png", f"blend {mode} texture.png", ["ombrix:blend", "mode=" + mode, *aux("texture.png")])
                self.check("odd.png", f"blend {mode} opaque.png 60%",
                           ["ombrix:blend", "mode=" + mode, "opacity=0.6", *aux("opaque.png")])
        # A mask is a step off where it shows all or nothing; GEGL's tiles take those pixels without it.
        self.check("odd.png", "blend hue transparent.png", ["ombrix:blend", "mode=hue", *aux("transparent.png")], 1)
        # What is transparent shows the picture itself, what is opaque the whole fill, wherever it lies.
        self.run_program("gegl", "odd.png", "-o", "got.png", "--", "ombrix:blend", *aux("transparent.png"))
        numpy.testing.assert_array_equal(self.pixels("got.png")[:, 0], self.pixels("odd.png")[:, 0])
        numpy.testing.assert_array_equal(self.pixels("got.png")[:, 255], self.pixels("opaque.png")[:, 255])

    def test_operations_tell_what_they_take(self):
        listed = self.run_program("gegl", "--list-all").split()
        words = subprocess.run([OMBRIX, "list", "--json"], capture_output=True, text=True, check=True).stdout
        self.assertEqual(sorted(each for each in listed if each.startswith("ombrix:")),
                         sorted("ombrix:" + each["word"] for each in json.loads(words)["effects"]))
        info = self.run_program("gegl", "--info", "ombrix:sepia")
        self.assertIn("How strong the tone is", info)
        self.assertIn("10", info)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
