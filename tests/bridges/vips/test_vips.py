"""Runs the effects in libvips, by its command, ruby-vips and GObject introspection, and compares with the command ombrix.

test_vips.py OMBRIX MODULE EXAMPLES"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import numpy
from PIL import Image

OMBRIX, MODULE, EXAMPLES = map(os.path.abspath, sys.argv[1:])
PHOTO, TEXTURE, VIGNETTE = (os.path.join(EXAMPLES, name) for name in ("photo.jpg", "texture.jpg", "vignette.png"))

# What the command ombrix is given, and what an operation, without files in and out.
WORKS = [
    ("sepia 30", ["ombrix_sepia", "{in}", "{out}", "30"]),
    ("invert", ["ombrix_invert", "{in}", "{out}"]),
    ("contrast -40", ["ombrix_contrast", "{in}", "{out}", "--value", "-40"]),
    ("grayscale ntsc_pal", ["ombrix_grayscale", "{in}", "{out}", "--type", "ntsc-pal"]),
    ("colorfilter 40 0 -30 --mask MASK", ["ombrix_colorfilter", "{in}", "{out}", *"--red 40 --blue -30 --mask MASK".split()]),
    ("blend hue TEXTURE", ["ombrix_blend", "{in}", "TEXTURE", "{out}", "--mode", "hue"]),
    (
        "blend overlay TEXTURE 60% Location=-20,40 Size=300,-1 FillMask=MASK",
        ["ombrix_blend", "{in}", "TEXTURE", "{out}", *"--mode overlay --opacity 0.6 --x -20 --y 40 --width 300".split()]
        + ["--fill-mask", "MASK"],
    ),
]


def pixels(file):
    with Image.open(file) as image:
        return numpy.asarray(image)


class Vips(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.environment = {**os.environ, "VIPSHOME": str(pathlib.Path(MODULE).parents[2])}
        with Image.open(PHOTO) as photo, Image.open(VIGNETTE) as mask, Image.open(TEXTURE) as texture:
            self.file("mask.png", mask.resize(photo.size))
            self.file("texture.png", texture.resize(mask.size))

    def file(self, name, image):
        image.save(self.folder / name)
        return str(self.folder / name)

    def run_program(self, *words, status=0):
        run = subprocess.run(words, env=self.environment, cwd=self.folder, capture_output=True, text=True)
        self.assertEqual(run.returncode, status, (words, run.stdout, run.stderr))
        return run.stdout + run.stderr

    def words(self, words, **files):
        known = {"MASK": "mask.png", "TEXTURE": "texture.png" if "fill-mask" in " ".join(words) else TEXTURE, **files}
        return [known.get(word.strip("{}"), word) for word in words]

    def command(self, work, source):
        """The pixels that the command ombrix makes; it has to work with the module installed."""
        fill = "texture.png" if "FillMask" in work else TEXTURE
        words = work.replace("MASK", "mask.png").replace("TEXTURE", fill).split()
        self.assertEqual(self.run_program(OMBRIX, *words, source, "expected.png", "--force", "--quiet"), "")
        return pixels(self.folder / "expected.png")

    def test_bytes_are_the_commands_however_the_work_is_parted(self):
        for work, words in WORKS:
            expected = self.command(work, PHOTO)
            for options in (
                [],
                ["--vips-concurrency=1"],
                ["--vips-concurrency=7", "--vips-fatstrip-height=1"],
                ["--vips-concurrency=3", "--vips-fatstrip-height=37", "--vips-tile-width=17", "--vips-tile-height=5"],
            ):
                with self.subTest(work=work, options=options):
                    self.run_program("vips", *options, *self.words(words, **{"in": PHOTO, "out": "got.png"}))
                    numpy.testing.assert_array_equal(pixels(self.folder / "got.png"), expected)

    def test_any_tile_of_the_result(self):
        for work, words in WORKS:
            expected = self.command(work, PHOTO)
            self.run_program("vips", *self.words(words, **{"in": PHOTO, "out": "got.v"}))
            self.run_program("vips", "dzsave", "got.v", "tiles", "--tile-size", "61", "--overlap", "0", "--suffix", ".png",
                             "--depth", "one")
            with self.subTest(work=work):
                tile = pixels(self.folder / "tiles_files" / "0" / "2_1.png")
                numpy.testing.assert_array_equal(tile, expected[61:122, 122:183])

    def test_formats_are_converted_and_alpha_stays(self):
        photo = Image.open(PHOTO).resize((61, 43))
        alpha = Image.open(VIGNETTE).resize(photo.size).convert("L")
        with_alpha = photo.copy()
        with_alpha.putalpha(alpha)
        self.file("rgb.png", photo)
        self.run_program("vips", "cast", "rgb.png", "deep.v", "ushort", "--shift")
        self.run_program("vips", "copy", "deep.v", "deep.png", "--interpretation", "rgb16")
        sources = [self.file("alpha.png", with_alpha), self.file("grey.png", photo.convert("L")), "deep.png",
                   self.file("bits.png", photo.convert("1"))]
        for source in sources:
            for work, words in WORKS[:4]:
                with self.subTest(work=work, source=source):
                    expected = self.command(work, source)
                    self.run_program("vips", *self.words(words, **{"in": source, "out": "got.png"}))
                    got = pixels(self.folder / "got.png")
                    if expected.ndim < got.ndim:
                        expected = numpy.stack([expected] * 3, -1)
                    numpy.testing.assert_array_equal(got, expected)
        # A transparent fill shows its shape.
        self.run_program("vips", "ombrix_blend", PHOTO, "alpha.png", "got.png", "--mode", "hue", "--x", "30")
        expected = self.command("blend hue alpha.png Location=30,0", PHOTO)
        numpy.testing.assert_array_equal(pixels(self.folder / "got.png"), expected)
        # Bands beyond alpha stay too.
        self.run_program("vips", "bandjoin", "alpha.png grey.png", "five.v")
        self.run_program("vips", "ombrix_invert", "five.v", "got.v")
        self.run_program("vips", "extract_band", "got.v", "last.png", "3", "--n", "2")
        numpy.testing.assert_array_equal(pixels(self.folder / "last.png")[..., 0], numpy.asarray(alpha))

    def test_refusals_are_one_sentence(self):
        self.file("small.png", Image.new("RGB", (7, 5)))
        for words, sentence in (
            (["ombrix_sepia", PHOTO, "no.png", "60"], "ombrix_sepia: value takes 10 to 55, not 60\n"),
            (["ombrix_brightness", PHOTO, "no.png", "--value", "-1000"], "takes -255 to 255, not -1000\n"),
            (["ombrix_blend", PHOTO, TEXTURE, "no.png", "--mode", "overlya"], "no member 'overlya'"),
            (["ombrix_invert", PHOTO, "no.png", "--mask", "small.png"], "mask is 7 x 5 pixels, smaller than the input"),
        ):
            with self.subTest(words=words):
                self.assertIn(sentence, self.run_program("vips", *words, status=1))
                self.assertFalse((self.folder / "no.png").exists())

    def test_ruby(self):
        expected = self.command(WORKS[0][0], PHOTO)
        # What libvips keeps of one value must not be taken for another.
        script = ('require "vips"; photo = Vips::Image.new_from_file(ARGV[0]);'
                  ' photo.ombrix_sepia(31).avg; photo.ombrix_sepia(30).write_to_file("got.png")')
        self.assertEqual(self.run_program("ruby", "-e", script, PHOTO), "")
        numpy.testing.assert_array_equal(pixels(self.folder / "got.png"), expected)
        blend = ('require "vips"; a, b = ARGV.map { |f| Vips::Image.new_from_file(f) };'
                 ' a.ombrix_blend(b, mode: :hue).write_to_file("got.png")')
        self.run_program("ruby", "-e", blend, PHOTO, TEXTURE)
        numpy.testing.assert_array_equal(pixels(self.folder / "got.png"), self.command("blend hue TEXTURE", PHOTO))

    def test_introspection(self):
        script = """
import sys, gi
gi.require_version("Vips", "8.0")
from gi.repository import Vips

def run(name, **values):
    operation = Vips.Operation.new(name)
    for key, value in values.items():
        setattr(operation.props, key.rstrip("_"), value)
    return Vips.cache_operation_build(operation).props

Vips.init("test")
run("pngsave", in_=run("ombrix_sepia", in_=run("jpegload", filename=sys.argv[1]).out, value=30).out, filename="got.png")
"""
        self.run_program("/usr/bin/python3", "-c", script, PHOTO)
        numpy.testing.assert_array_equal(pixels(self.folder / "got.png"), self.command("sepia 30", PHOTO))

    def test_as_a_plugin_that_is_named(self):
        del self.environment["VIPSHOME"]
        self.run_program("vips", "--plugin", MODULE, "ombrix_sepia", PHOTO, "got.png", "30")
        numpy.testing.assert_array_equal(pixels(self.folder / "got.png"), self.command("sepia 30", PHOTO))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
