"""The package ombrix on arrays, images and other buffers, against plain effects on packed rows."""

import inspect
import os
import pickle
import subprocess
import sys
import threading
import unittest

import numpy as np
import ombrix
from PIL import Image

RANDOM = np.random.default_rng(7)


def noise(*shape):
    return RANDOM.integers(0, 256, shape, dtype=np.uint8)


def views(array):
    """The same pixels in other places: arrays that are to give the same results."""
    high = np.zeros((array.shape[0] + 3, array.shape[1] + 5, *array.shape[2:]), np.uint8)
    high[1:-2, 2:-3] = array
    yield "crop", high[1:-2, 2:-3]
    yield "upside down", np.ascontiguousarray(array[::-1])[::-1]
    wide = np.zeros((array.shape[0], 2 * array.shape[1], *array.shape[2:]), np.uint8)
    wide[:, ::2] = array
    yield "gaps between pixels", wide[:, ::2]
    yield "columns backwards", np.ascontiguousarray(array[:, ::-1])[:, ::-1]
    if array.ndim == 3:
        yield "channels backwards", np.ascontiguousarray(array[..., ::-1])[..., ::-1]
        yield "planes", np.ascontiguousarray(array.transpose(2, 0, 1)).transpose(1, 2, 0)
    readonly = array.copy()
    readonly.flags.writeable = False
    yield "read-only", readonly


class Pixels(unittest.TestCase):
    def test_arrays_wherever_their_pixels_lie(self):
        for effect in (ombrix.Sepia(30), ombrix.ColorFilter(40, -20, 7), ombrix.Invert()):
            for shape in ((7, 9, 3), (7, 9, 4), (1, 1, 3), (5, 1, 4), (7, 9)):
                array = noise(*shape)
                before, expected = array.copy(), effect(array)
                self.assertEqual(expected.shape, array.shape)
                for name, view in views(array):
                    with self.subTest(effect=effect, shape=shape, view=name):
                        np.testing.assert_array_equal(effect(view), expected)
                out = np.zeros((20, 20, *shape[2:]), np.uint8)[3 : 3 + shape[0], 4 : 4 + shape[1]]
                self.assertIs(effect(array, out=out), out)
                np.testing.assert_array_equal(out, expected)
                np.testing.assert_array_equal(array, before)
                effect(array, out=array)
                np.testing.assert_array_equal(array, expected)

    def test_values_of_pixels(self):
        array = noise(4, 5, 4)
        inverted = ombrix.Invert()(array)
        np.testing.assert_array_equal(inverted[..., :3], 255 - array[..., :3])
        np.testing.assert_array_equal(inverted[..., 3], array[..., 3])
        added = ombrix.ColorFilter(red=40)(array, layout="bgra")
        np.testing.assert_array_equal(added[..., 2], np.minimum(array[..., 2].astype(int) + 40, 255))
        np.testing.assert_array_equal(added[..., :2], array[..., :2])

    def test_images_keep_their_mode(self):
        for mode, channels in (("L", 1), ("RGB", 3), ("RGBA", 4)):
            array = noise(6, 8, channels).squeeze()
            image = Image.fromarray(array, mode)
            result = ombrix.Sepia(20)(image)
            self.assertEqual(result.mode, mode)
            np.testing.assert_array_equal(np.asarray(result), ombrix.Sepia(20)(array))
        with self.assertRaisesRegex(ombrix.InvalidArgument, "mode P"):
            ombrix.Invert()(Image.new("P", (2, 2)))

    def test_other_buffers(self):
        memory = bytearray(range(24))
        result = ombrix.Invert()(memoryview(memory).cast("B", (2, 4, 3)))
        self.assertEqual(result.tobytes(), bytes(255 - byte for byte in memory))

    def test_masks_and_fills(self):
        array, fill = noise(8, 8, 3), noise(8, 8, 3)
        np.testing.assert_array_equal(ombrix.Blend("normal", fill)(array), fill)
        half = ombrix.Blend("normal", fill, 0.5)(array)
        self.assertTrue((np.abs(half.astype(int) - (array.astype(int) + fill) // 2) <= 1).all())
        placed = ombrix.Blend("normal", fill, location=(6, 6))(array)
        np.testing.assert_array_equal(placed[6:, 6:], fill[:2, :2])
        np.testing.assert_array_equal(placed[:6], array[:6])
        mask = np.zeros((8, 8, 3), np.uint8)
        masked = ombrix.Invert(mask=mask)
        np.testing.assert_array_equal(masked(array), ombrix.Invert()(array))
        mask[:] = 255  # is read anew
        self.assertTrue((np.abs(masked(array).astype(int) - array) <= 1).all())
        masked.mask = None
        np.testing.assert_array_equal(masked(array), ombrix.Invert()(array))


class Behaviour(unittest.TestCase):
    def test_refusals_are_sentences(self):
        array = noise(3, 3, 3)
        for kind, words, action in (
            (ombrix.Refused, "from 10 to 55", lambda: ombrix.Sepia(99)(array)),
            (ValueError, "overly", lambda: ombrix.Blend("overly")),
            (ombrix.Refused, "INVALID_SOURCE", lambda: ombrix.Blend()(array)),
            (ombrix.InvalidArgument, "uint8", lambda: ombrix.Invert()(array.astype(float))),
            (ombrix.InvalidArgument, "height x width", lambda: ombrix.Invert()(noise(3, 3, 2))),
            (ombrix.InvalidArgument, "arrays", lambda: ombrix.Invert()(3)),
            (ombrix.InvalidArgument, "rgb, bgr", lambda: ombrix.Invert()(array, layout="argb")),
            (ombrix.InvalidArgument, "gaps", lambda: ombrix.Invert()(array, out=noise(3, 6, 3)[:, ::2])),
            (ombrix.InvalidArgument, "3x3", lambda: ombrix.Invert()(array, out=noise(4, 3, 3))),
            (ombrix.InvalidArgument, "overlap", lambda: ombrix.Invert()(array[:2], out=array[1:])),
            (TypeError, "value", lambda: ombrix.Sepia()),
            (AttributeError, "Sepia", lambda: ombrix.Sepa),
        ):
            with self.subTest(words=words), self.assertRaisesRegex(kind, words):
                action()

    def test_says_what_it_takes(self):
        self.assertEqual(list(inspect.signature(ombrix.Blend).parameters)[:3], ["mode", "fill_picture", "opacity"])
        self.assertIn("overlay", ombrix.Blend.__doc__)
        self.assertIn("10 to 55", ombrix.Sepia.value.__doc__)
        self.assertIn("Sepia", dir(ombrix))
        self.assertEqual(repr(ombrix.Sepia(value=30)), "ombrix.Sepia(value=30)")

    def test_pickles(self):
        effect = ombrix.Blend("screen", noise(4, 4, 3), opacity="60%")
        array = noise(4, 4, 3)
        np.testing.assert_array_equal(pickle.loads(pickle.dumps(effect))(array), effect(array))

    def test_progress_hears_all_and_can_end_the_work(self):
        heard = []
        ombrix.Sepia(30)(noise(3000, 400, 3), progress=lambda done, in_all: heard.append((done, in_all)))
        self.assertEqual(heard[-1], (3000, 3000))

        def stop(done, in_all):
            raise KeyError("enough")

        effect = ombrix.Sepia(30)
        with self.assertRaisesRegex(KeyError, "enough"):
            effect(noise(3000, 400, 3), progress=stop)
        effect(noise(3, 3, 3))

    def test_threads(self):
        array, effect = noise(40, 50, 3), ombrix.Sepia(30)
        expected, wrong = effect(array), []

        def work(own):
            for _ in range(50):
                if not (own(array) == expected).all():
                    wrong.append(own)

        threads = [threading.Thread(target=work, args=(each,)) for each in (effect, effect, ombrix.Sepia(30))]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(wrong, [])

    def test_forked_processes_are_told(self):
        for before, status in (("pass", 0), ("import numpy; ombrix.Invert()(numpy.zeros((2, 2, 3), 'u1'))", 3)):
            program = f"""
import os, sys, ombrix
{before}
child = os.fork()
if child == 0:
    try:
        ombrix.Sepia(30)
    except ombrix.Forked:
        os._exit(3)
    os._exit(0)
sys.exit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))
"""
            self.assertEqual(subprocess.run([sys.executable, "-c", program], timeout=60).returncode, status)

    def test_stubs_are_up_to_date(self):
        made = subprocess.run([sys.executable, "-m", "ombrix", "stubs"], capture_output=True, text=True, check=True)
        with open(os.path.join(os.path.dirname(ombrix.__file__), "__init__.pyi"), encoding="utf-8") as committed:
            self.assertEqual(made.stdout, committed.read())


if __name__ == "__main__":
    unittest.main()
