"""python3 -m ombrix stubs: the types of all effects, for editors and type checkers."""

import inspect
import sys

import ombrix
from ombrix import effects

_TYPES = {"Boolean": "bool", "Integer": "int", "Double": "float", "Picture": "Any", "Point": "Tuple[int, int]"}
_HEAD = '''# Made by: python3 -m ombrix stubs
from typing import Any, Callable, Dict, Literal, Optional, Tuple, TypeVar, Union, overload

_Picture = TypeVar("_Picture")
_Out = TypeVar("_Out")

__version__: str

class Error(Exception): ...
class InvalidArgument(Error, ValueError): ...
class NotFound(Error, LookupError): ...
class Refused(Error, ValueError): ...
class Cancelled(Error): ...
class Busy(Error, RuntimeError): ...
class Forked(Error, RuntimeError): ...

def load(plugin: Any) -> None: ...
def catalogue() -> Dict[str, Any]: ...

class Effect:
    name: str
    pixel_by_pixel: bool
    keeps_alpha: bool
    @overload
    def __call__(
        self,
        source: _Picture,
        out: None = ...,
        *,
        layout: Optional[str] = ...,
        alpha: str = ...,
        progress: Optional[Callable[[int, int], Any]] = ...,
    ) -> _Picture: ...
    @overload
    def __call__(
        self,
        source: Any,
        out: _Out,
        *,
        layout: Optional[str] = ...,
        alpha: str = ...,
        progress: Optional[Callable[[int, int], Any]] = ...,
    ) -> _Out: ...
    def copies(self, source: Any, out: Any = ..., *, layout: Optional[str] = ..., alpha: str = ...) -> int: ...
'''


def _type(known):
    kind = _TYPES[known["type"]]
    if known["constants"]:
        words = ", ".join(f'"{constant["word"]}"' for constant in known["constants"])
        return f"Union[int, Literal[{words}]]"
    return f"Optional[{kind}]" if kind.startswith("Tuple") else kind


def stubs():
    lines = [_HEAD]
    for known in ombrix.catalogue()["effects"]:
        made = effects.made(known)
        lines += ["", f"class {made.__name__}(Effect):", "    def __init__(", "        self,"]
        kinds, starred = {each["word"]: _type(each) for each in effects.settable(known)}, False
        for parameter in made.__signature__.parameters.values():
            if parameter.kind is inspect.Parameter.KEYWORD_ONLY and not starred:
                lines.append("        *,")
                starred = True
            default = "" if parameter.default is inspect.Parameter.empty else " = ..."
            lines.append(f"        {parameter.name}: {kinds[parameter.name]}{default},")
        lines.append("    ) -> None: ...")
        lines += [f"    {word}: {kind}" for word, kind in kinds.items()]
    return "\n".join(lines) + "\n"


if __name__ == "__main__":
    if sys.argv[1:] != ["stubs"]:
        sys.exit("usage: python3 -m ombrix stubs")
    sys.stdout.write(stubs())
