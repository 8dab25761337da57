# Made by: python3 -m ombrix stubs
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


class ColorFilter(Effect):
    def __init__(
        self,
        red: int = ...,
        green: int = ...,
        blue: int = ...,
        *,
        ignore_alpha: bool = ...,
        mask: Any = ...,
        multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]] = ...,
    ) -> None: ...
    red: int
    green: int
    blue: int
    ignore_alpha: bool
    mask: Any
    multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]]

class Contrast(Effect):
    def __init__(
        self,
        value: int = ...,
        *,
        ignore_alpha: bool = ...,
        mask: Any = ...,
        multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]] = ...,
    ) -> None: ...
    value: int
    ignore_alpha: bool
    mask: Any
    multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]]

class Brightness(Effect):
    def __init__(
        self,
        value: int = ...,
        *,
        ignore_alpha: bool = ...,
        mask: Any = ...,
        multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]] = ...,
    ) -> None: ...
    value: int
    ignore_alpha: bool
    mask: Any
    multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]]

class Sepia(Effect):
    def __init__(
        self,
        value: int,
        *,
        ignore_alpha: bool = ...,
        mask: Any = ...,
        multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]] = ...,
    ) -> None: ...
    value: int
    ignore_alpha: bool
    mask: Any
    multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]]

class Blend(Effect):
    def __init__(
        self,
        mode: Union[int, Literal["normal", "multiply", "screen", "overlay", "darken", "lighten", "color_dodge", "color_burn", "soft_light", "hard_light", "difference", "exclusion", "hue", "saturation", "color", "luminosity", "pin_light", "sharp_light", "vivid_light", "linear_light", "power_light", "linear_burn", "linear_dodge", "add"]] = ...,
        fill_picture: Any = ...,
        opacity: float = ...,
        fill_mask: Any = ...,
        location: Optional[Tuple[int, int]] = ...,
        size: Optional[Tuple[int, int]] = ...,
        *,
        multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]] = ...,
    ) -> None: ...
    mode: Union[int, Literal["normal", "multiply", "screen", "overlay", "darken", "lighten", "color_dodge", "color_burn", "soft_light", "hard_light", "difference", "exclusion", "hue", "saturation", "color", "luminosity", "pin_light", "sharp_light", "vivid_light", "linear_light", "power_light", "linear_burn", "linear_dodge", "add"]]
    fill_picture: Any
    opacity: float
    fill_mask: Any
    location: Optional[Tuple[int, int]]
    size: Optional[Tuple[int, int]]
    multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]]

class Invert(Effect):
    def __init__(
        self,
        *,
        ignore_alpha: bool = ...,
        mask: Any = ...,
        multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]] = ...,
    ) -> None: ...
    ignore_alpha: bool
    mask: Any
    multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]]

class Grayscale(Effect):
    def __init__(
        self,
        type: Union[int, Literal["ntsc_pal", "itu_r", "average", "weightedaverage"]] = ...,
        *,
        ignore_alpha: bool = ...,
        mask: Any = ...,
        multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]] = ...,
    ) -> None: ...
    type: Union[int, Literal["ntsc_pal", "itu_r", "average", "weightedaverage"]]
    ignore_alpha: bool
    mask: Any
    multiprocessing_hint: Union[int, Literal["machine_core_count", "automatic", "1_core", "2_cores", "3_cores", "4_cores", "5_cores", "6_cores", "7_cores", "8_cores"]]
