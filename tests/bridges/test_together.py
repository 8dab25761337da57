"""Several ways to the effects in one process, which share one host: Python, libvips by introspection, and frei0r.

test_together.py FREI0R_PLUGINS; VIPSHOME, PYTHONPATH and OMBRIX_LIBRARY lead to what was built."""

import ctypes
import sys
import threading
import unittest

import gi
import numpy
import ombrix

gi.require_version("Vips", "8.0")
from gi.repository import GLib, Vips  # noqa: E402

PIXELS = numpy.arange(16 * 12 * 4, dtype="uint8").reshape(12, 16, 4)
EXPECTED = ombrix.Sepia(value=28)(PIXELS)


def by_vips():
    def run(name, **values):
        operation = Vips.Operation.new(name)
        for key, value in values.items():
            setattr(operation.props, key.rstrip("_"), value)
        return Vips.cache_operation_build(operation).props.out

    image = Vips.Image.new_from_memory(PIXELS.tobytes(), 16, 12, 4, Vips.BandFormat.UCHAR)
    toned = run("ombrix_sepia", in_=run("copy", in_=image, interpretation=Vips.Interpretation.SRGB), value=28)
    return numpy.frombuffer(toned.write_to_memory(), "uint8").reshape(PIXELS.shape)


def by_frei0r():
    plugin = ctypes.CDLL(sys.argv[1] + "/ombrix_sepia.so")
    plugin.f0r_construct.restype = ctypes.c_void_p
    instance = ctypes.c_void_p(plugin.f0r_construct(16, 12))
    share = ctypes.c_double(0.4)
    plugin.f0r_set_param_value(instance, ctypes.byref(share), 0)
    source, result = PIXELS.copy(), numpy.zeros_like(PIXELS)
    plugin.f0r_update(instance, ctypes.c_double(0), source.ctypes.data_as(ctypes.c_void_p),
                      result.ctypes.data_as(ctypes.c_void_p))
    plugin.f0r_destruct(instance)
    return result


class Together(unittest.TestCase):
    def test_one_process_has_one_host(self):
        self.assertEqual(Vips.init("test"), 0)
        failures = []

        def work(way):
            for _ in range(50):
                try:
                    numpy.testing.assert_array_equal(way(), EXPECTED)
                except (AssertionError, GLib.Error, ombrix.Error) as failure:
                    failures.append((way.__name__, failure))
                    return

        ways = [by_vips, by_frei0r, lambda: ombrix.Sepia(value=28)(PIXELS)]
        threads = [threading.Thread(target=work, args=(way,)) for way in ways]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
