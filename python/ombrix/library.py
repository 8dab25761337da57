"""The C interface of libombrix_host.so, by ctypes."""

import ctypes
import json
import os

from . import errors


class Rows(ctypes.Structure):
    """ombrix_rows: pixels in memory of the program."""

    _fields_ = [
        ("size", ctypes.c_size_t),
        ("base", ctypes.c_void_p),
        ("row_bytes", ctypes.c_ssize_t),
        ("width", ctypes.c_int64),
        ("height", ctypes.c_int64),
        ("layout", ctypes.c_int),
        ("alpha", ctypes.c_int),
    ]


Progress = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_int64, ctypes.c_int64)


def _file():
    """$OMBRIX_LIBRARY, else that of the clone that this file lies in, else the system's."""
    if os.environ.get("OMBRIX_LIBRARY"):
        return os.environ["OMBRIX_LIBRARY"]
    clone = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
    built = os.path.join(clone, "build", "release", "libombrix_host.so.0")
    return built if os.path.exists(built) else "libombrix_host.so.0"


_effect, _text, _rows = ctypes.c_void_p, ctypes.c_char_p, ctypes.POINTER(Rows)
_library = ctypes.CDLL(_file())
for _name, _types in {
    "load": [_text],
    "catalogue": [ctypes.POINTER(ctypes.c_void_p)],
    "effect_new": [_text, ctypes.POINTER(_effect)],
    "set_integer": [_effect, _text, ctypes.c_int64],
    "set_number": [_effect, _text, ctypes.c_double],
    "set_boolean": [_effect, _text, ctypes.c_int],
    "set_point": [_effect, _text, ctypes.c_int64, ctypes.c_int64],
    "set_text": [_effect, _text, _text],
    "set_picture": [_effect, _text, _rows],
    "set_progress": [_effect, Progress, ctypes.c_void_p],
    "apply": [_effect, _rows, _rows],
    "copies": [_effect, _rows, _rows, ctypes.POINTER(ctypes.c_int)],
}.items():
    getattr(_library, "ombrix_" + _name).argtypes = _types
_library.ombrix_version.restype = _text
_library.ombrix_last_error.restype = _text
_library.ombrix_free.argtypes = [ctypes.c_void_p]
_library.ombrix_free.restype = None
_library.ombrix_effect_free.argtypes = [_effect]
_library.ombrix_effect_free.restype = None

free_effect = _library.ombrix_effect_free
#: As it is, for a status that the caller looks at: small pictures are to cost little.
apply = _library.ombrix_apply


def version():
    return _library.ombrix_version().decode()


def call(name, *arguments):
    """Calls ombrix_<name>; an exception of `errors`, or a MemoryError, when it fails."""
    status = getattr(_library, "ombrix_" + name)(*arguments)
    if status:
        fail(status)


def fail(status):
    """Raises what the status of this thread's last call stands for."""
    sentence = _library.ombrix_last_error().decode(errors="replace")
    if status == 5:
        raise MemoryError(sentence)
    raise errors.OF_STATUS.get(status, errors.Error)(sentence)


def catalogue():
    """All that is known of the effects."""
    text = ctypes.c_void_p()
    call("catalogue", ctypes.byref(text))
    try:
        return json.loads(ctypes.string_at(text.value))
    finally:
        _library.ombrix_free(text)
