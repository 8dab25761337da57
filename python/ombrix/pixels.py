"""Arrays and images as rows of pixels, without copies."""

import ctypes
import sys

from .errors import InvalidArgument
from .library import Rows

LAYOUTS = {"grey": 1, "rgb": 2, "bgr": 3, "rgba": 4, "bgra": 5, "argb": 6, "abgr": 7}
ALPHAS = {"none": 0, "straight": 1, "premultiplied": 2}
_REVERSED = {"rgb": "bgr", "bgr": "rgb", "rgba": "abgr", "abgr": "rgba", "bgra": "argb", "argb": "bgra", "grey": "grey"}


class _Buffer(ctypes.Structure):
    """Py_buffer."""

    _fields_ = [
        ("buf", ctypes.c_void_p),
        ("obj", ctypes.py_object),
        ("len", ctypes.c_ssize_t),
        ("itemsize", ctypes.c_ssize_t),
        ("readonly", ctypes.c_int),
        ("ndim", ctypes.c_int),
        ("format", ctypes.c_char_p),
        ("shape", ctypes.POINTER(ctypes.c_ssize_t)),
        ("strides", ctypes.POINTER(ctypes.c_ssize_t)),
        ("suboffsets", ctypes.POINTER(ctypes.c_ssize_t)),
        ("internal", ctypes.c_void_p),
    ]


_get = ctypes.pythonapi.PyObject_GetBuffer
_get.argtypes = [ctypes.py_object, ctypes.POINTER(_Buffer), ctypes.c_int]
_release = ctypes.pythonapi.PyBuffer_Release
_release.argtypes = [ctypes.POINTER(_Buffer)]
_release.restype = None
_STRIDED, _FORMAT, _WRITABLE = 0x18, 0x4, 0x1


class Packed:
    """An array of NumPy without gaps, of the usual layout: the case that has to be quick."""

    __slots__ = ("array", "shape", "is_readonly", "rows")

    def __init__(self, array, interface, layout, alpha):
        base, self.is_readonly = interface["data"]
        self.array, self.shape = array, interface["shape"]
        height, width, channels = self.shape
        self.rows = Rows(_ROWS_SIZE, base, width * channels, width, height, layout, alpha)


_ROWS_SIZE = ctypes.sizeof(Rows)
_USUAL_LAYOUTS = {3: LAYOUTS["rgb"], 4: LAYOUTS["rgba"]}


def packed(array, layout, alpha):
    """None where it takes a closer look."""
    numpy = sys.modules.get("numpy")
    if numpy is None or type(array) is not numpy.ndarray or layout is not None or alpha != "straight":
        return None
    interface = array.__array_interface__
    shape = interface["shape"]
    if interface["strides"] is not None or interface["typestr"] != "|u1" or len(shape) != 3:
        return None
    usual = _USUAL_LAYOUTS.get(shape[2])
    return None if usual is None else Packed(array, interface, usual, ALPHAS["straight"])


class Pixels:
    """What a buffer holds, which it keeps alive and in its place."""

    def __init__(self, array, what, layout=None, alpha="straight", writable=False):
        if alpha not in ALPHAS:
            raise InvalidArgument(f"there is no alpha {alpha!r}; there are {', '.join(ALPHAS)}")
        self._buffer = _Buffer()
        self._held = False
        try:
            _get(array, ctypes.byref(self._buffer), _STRIDED | _FORMAT | (_WRITABLE if writable else 0))
        except (BufferError, ValueError) as problem:
            raise InvalidArgument(f"{what} cannot be used: {problem}") from None
        except TypeError:
            raise InvalidArgument(f"{what} is a {type(array).__name__}; arrays and images are taken") from None
        self._held = True
        self.is_readonly = bool(self._buffer.readonly)
        shape = self._buffer.shape[: self._buffer.ndim]
        strides = self._buffer.strides[: self._buffer.ndim]
        self.shape = tuple(shape)
        if self._buffer.itemsize != 1 or (self._buffer.format or b"B") not in (b"B", b"b", b"c"):
            raise InvalidArgument(f"{what} has items of {self._buffer.itemsize} bytes; it has to be of uint8")
        channels = 1 if len(shape) == 2 else shape[2] if len(shape) == 3 else 0
        usual = {1: "grey", 3: "rgb", 4: "rgba"}.get(channels)
        if usual is None:
            raise InvalidArgument(
                f"{what} has the shape {self.shape}; it has to be height x width, or that x 3 or x 4"
            )
        layout = usual if layout is None or channels == 1 else layout.lower()
        if layout not in LAYOUTS or len(layout) != len(usual):
            fitting = [name for name in LAYOUTS if len(name) == len(usual)]
            raise InvalidArgument(f"{channels} channels cannot be {layout!r}; they are {', '.join(fitting)}")
        if len(shape) == 2:
            strides = [*strides, 1]
        base = self._buffer.buf
        if channels > 1 and strides[2] == -1:
            layout, base = _REVERSED[layout], base - (channels - 1)
        #: Whether the memory can be used as it lies.
        self.is_straight = channels == 1 or abs(strides[2]) == 1
        self.is_straight &= strides[1] == channels or shape[1] <= 1
        self.rows = Rows(
            ctypes.sizeof(Rows), base, strides[0], shape[1], shape[0], LAYOUTS[layout], ALPHAS[alpha]
        )

    def __del__(self):
        if self._held:
            _release(ctypes.byref(self._buffer))


def _packed(array):
    """A copy without gaps between pixels, of an array of any kind."""
    view = memoryview(array)
    return memoryview(view.tobytes()).cast("B", view.shape)


def read(array, what, layout, alpha):
    """Pixels to read; a copy only where there are gaps between them."""
    pixels = Pixels(array, what, layout, alpha)
    return pixels if pixels.is_straight else Pixels(_packed(array), what, layout, alpha)


def written(array, what, layout, alpha):
    """Pixels to write."""
    pixels = Pixels(array, what, layout, alpha, writable=True)
    if not pixels.is_straight:
        raise InvalidArgument(f"{what} has gaps between its pixels; only its rows may lie apart")
    return pixels


def new_like(array, shape):
    """Uninitialised for NumPy; otherwise a memoryview of a bytearray."""
    numpy = sys.modules.get("numpy")
    if numpy is not None and isinstance(array, numpy.ndarray):
        return numpy.empty(shape, numpy.uint8)
    count = 1
    for side in shape:
        count *= side
    return memoryview(bytearray(count)).cast("B", shape)


_IMAGE_ALPHA = {"L": "none", "RGB": "none", "RGBA": "straight", "RGBa": "premultiplied", "RGBX": "none"}


def is_image(picture):
    """Whether it is an image of Pillow, which need not be installed."""
    return any(each.__module__ == "PIL.Image" and each.__name__ == "Image" for each in type(picture).__mro__)


def of_image(image):
    """The array of an image and the alpha that it has."""
    if image.mode not in _IMAGE_ALPHA:
        raise InvalidArgument(
            f"images of mode {image.mode} are not taken; those of {', '.join(_IMAGE_ALPHA)} are: convert it first"
        )
    width, height = image.size
    channels = len(image.getbands())
    shape = (height, width) if channels == 1 else (height, width, channels)
    return memoryview(image.tobytes()).cast("B", shape), _IMAGE_ALPHA[image.mode]
