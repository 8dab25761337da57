"""Image effects: every effect of every plug-in is a class here.

    >>> import ombrix
    >>> warm = ombrix.Sepia(value=30)(array)

The classes are made from what the plug-ins tell when one is asked for; `dir(ombrix)` names them.
"""

from . import effects, library
from .effects import Effect
from .errors import Busy, Cancelled, Error, Forked, InvalidArgument, NotFound, Refused

_classes = {}


def load(plugin):
    """Loads a further plug-in; its effects are classes of this module from then on."""
    import os

    library.call("load", os.fspath(plugin).encode())
    _classes.clear()


def catalogue():
    """All that is known of the effects, as a dictionary; docs/catalogue.md names the fields."""
    return library.catalogue()


def _made():
    if not _classes:
        for known in library.catalogue()["effects"]:
            made = effects.made(known)
            _classes[made.__name__] = made
    return _classes


def __getattr__(name):
    if name == "__version__":
        return library.version()
    # Names such as __path__ and __wrapped__ are asked for by tools, which do not want effects to be loaded.
    if name.startswith("_") or name not in _made():
        raise AttributeError(f"module 'ombrix' has no effect {name!r}; there are {', '.join(_classes)}")
    return _classes[name]


def __dir__():
    return sorted([*(name for name in globals() if not name.startswith("_")), *_made()])
