"""Classes for effects, made from the catalogue."""

import ctypes
import inspect
import threading

from . import library, pixels

_NO_PROGRESS = library.Progress()


class Effect:
    """The base class of all effects. `effect(array)` gives a new array; `effect(array, out=other)` writes to another,
    or to the same; an image of Pillow gives an image of its mode.

    Arrays are of uint8: height x width x 3 (red, green, blue), x 4 (with alpha) or height x width (grey), with any
    distance between rows. Any thread may use effects; one object is used by one thread after the other.
    """

    name = ""
    #: Whether the result over the parts of a picture is the result over the whole.
    pixel_by_pixel = False
    #: Whether the fourth channel stays as it is, and the colours do not depend on it.
    keeps_alpha = False
    _known = {}

    def __init__(self, *arguments, **named):
        given = self.__signature__.bind(*arguments, **named).arguments
        self._handle = ctypes.c_void_p()
        self._values = {}
        self._kept = {}
        self._lock = threading.Lock()
        library.call("effect_new", self.name.encode(), ctypes.byref(self._handle))
        for word, value in given.items():
            self._set(word, value)

    def __del__(self, free=library.free_effect):  # which is there until the interpreter has ended
        if getattr(self, "_handle", None):
            free(self._handle)

    def __repr__(self):
        values = ", ".join(f"{word}={value!r}" for word, value in self._values.items())
        return f"ombrix.{type(self).__name__}({values})"

    def __reduce__(self):
        return _remade, (self.name, self._values)

    def _set(self, word, value):
        kind, name = self._known[word]["type"], word.encode()
        with self._lock:
            if kind == "Picture":
                self._set_picture(name, word, value)
            elif isinstance(value, str):
                library.call("set_text", self._handle, name, value.encode())
            elif kind == "Boolean":
                library.call("set_boolean", self._handle, name, bool(value))
            elif kind == "Double":
                library.call("set_number", self._handle, name, value)
            elif kind == "Point":
                library.call("set_point", self._handle, name, *value)
            else:
                library.call("set_integer", self._handle, name, value)
            self._values[word] = value

    def _set_picture(self, name, word, value):
        if value is None:
            library.call("set_picture", self._handle, name, None)
            self._kept.pop(word, None)
            return
        array, alpha = pixels.of_image(value) if pixels.is_image(value) else (value, "straight")
        kept = pixels.read(array, word, None, alpha)
        library.call("set_picture", self._handle, name, ctypes.byref(kept.rows))
        self._kept[word] = kept

    def __call__(self, source, out=None, *, layout=None, alpha="straight", progress=None):
        """The effect's result for a picture.

        out: where to put it; the picture itself for in place. Without it, a new array.
        layout: the order of the channels where it is not RGB or RGBA: "bgr", "bgra", "argb" or "abgr".
        alpha: what a fourth channel is: "straight", "premultiplied" or "none".
        progress: a function that is called with the rows that are done and all there are; an exception ends the work.
        """
        read = pixels.packed(source, layout, alpha)
        if read is None:
            if pixels.is_image(source):
                return self._image(source, out, progress)
            read = pixels.read(source, "the picture", layout, alpha)
        if out is None:
            out = pixels.new_like(source, read.shape)
        if out is source and not read.is_readonly:
            written = read
        else:
            written = pixels.packed(out, layout, alpha)
            if written is None or written.is_readonly:
                written = pixels.written(out, "out", layout, alpha)
        self._apply(read, written, progress)
        return out

    def _image(self, image, out, progress):
        if out is not None:
            raise TypeError("out is for arrays; an image gives a new image")
        from PIL import Image

        array, alpha = pixels.of_image(image)
        result = bytearray(array.nbytes)
        target = memoryview(result).cast("B", array.shape)
        self._apply(pixels.read(array, "the image", None, alpha), pixels.written(target, "out", None, alpha), progress)
        return Image.frombytes(image.mode, image.size, bytes(result))

    def _apply(self, read, written, progress):
        if progress is None:
            with self._lock:
                status = library.apply(self._handle, ctypes.byref(read.rows), ctypes.byref(written.rows))
                if status:
                    library.fail(status)
            return
        thrown = []

        def report(_data, done, in_all):
            try:
                progress(done, in_all)
            except BaseException as exception:  # which must not pass through C
                thrown.append(exception)
            return len(thrown)

        with self._lock:
            function = library.Progress(report)
            library.call("set_progress", self._handle, function, None)
            try:
                library.call("apply", self._handle, ctypes.byref(read.rows), ctypes.byref(written.rows))
            except library.errors.Cancelled:
                raise thrown[0] from None
            finally:
                library.call("set_progress", self._handle, _NO_PROGRESS, None)

    def copies(self, source, out=None, *, layout=None, alpha="straight"):
        """How many passes over the pixels a call takes beside the effect's own; 0 where the arrays are used as they lie.

        Without `out`, for the same in place."""
        read = pixels.read(source, "the picture", layout, alpha)
        written = read if out is None else pixels.written(out, "out", layout, alpha)
        count = ctypes.c_int()
        with self._lock:
            library.call("copies", self._handle, ctypes.byref(read.rows), ctypes.byref(written.rows), ctypes.byref(count))
        return count.value


def _remade(name, values):
    """An effect as it was pickled. Its class is made anew where plug-ins are loaded by other names."""
    import ombrix

    return getattr(ombrix, class_name(name))(**values)


def class_name(effect):
    """Sepia for SepiaEffect"""
    return effect[: -len("Effect")] if effect.endswith("Effect") and effect != "Effect" else effect


def _default(known):
    for constant in known["constants"]:
        if constant["value"] == known["default"]:
            return constant["word"]
    return tuple(known["default"]) if isinstance(known["default"], list) else known["default"]


def _takes(known):
    """What values a property has, in words."""
    if known["constants"]:
        return ", ".join(constant["word"] for constant in known["constants"])
    ends = known["range"] or known["bounds"]
    if ends and ends["low"] is not None and ends["high"] is not None:
        return f"{ends['low']} to {ends['high']}"
    return {"Picture": "an array or an image", "Point": "x, y in pixels"}.get(known["type"], known["type"])


def _property(word, known):
    def get(self):
        return self._values.get(word, _default(known))

    def put(self, value):
        self._set(word, value)

    return property(get, put, doc=f"{_takes(known)}. {known['description']}".strip())


def settable(known):
    """The properties that a program sets, those by position first."""
    taken = [
        each
        for each in known["properties"]
        if not each["readOnly"] and each["type"] in ("Integer", "Boolean", "Double", "Picture", "Point")
    ]
    return sorted(taken, key=lambda each: (each["position"] is None, each["position"] or 0, each["inherited"]))


def made(known):
    """The class of an effect, from its part of the catalogue."""
    properties = settable(known)
    parameters = []
    for each in properties:
        # Once one has a default, so have all that follow; a picture that is missing is refused when it is needed.
        needed = each["refusesDefault"] and each["type"] != "Picture"
        needed &= all(earlier.default is inspect.Parameter.empty for earlier in parameters)
        parameters.append(
            inspect.Parameter(
                each["word"],
                inspect.Parameter.KEYWORD_ONLY if each["position"] is None else inspect.Parameter.POSITIONAL_OR_KEYWORD,
                default=inspect.Parameter.empty if needed else _default(each),
            )
        )
    lines = [known["description"], ""]
    lines += [f"{each['word']}: {_takes(each)}. {each['description']}".rstrip() for each in properties]
    body = {each["word"]: _property(each["word"], each) for each in properties}
    body["name"] = known["name"]
    body["pixel_by_pixel"] = known["pixelByPixel"]
    body["keeps_alpha"] = known["keepsAlpha"]
    body["_known"] = {each["word"]: each for each in properties}
    body["__doc__"] = "\n".join(lines)
    body["__signature__"] = inspect.Signature(parameters)
    body["__module__"] = "ombrix"
    return type(class_name(known["name"]), (Effect,), body)
