"""For mypy, not to be run."""

from typing import Tuple

import ombrix

memory = memoryview(bytearray(12)).cast("B", (2, 2, 3))
sepia = ombrix.Sepia(value=30)
sepia.value = 40
result: memoryview = sepia(memory)
other: bytearray = sepia(memory, out=bytearray(12))
copies: int = sepia.copies(memory)
blend = ombrix.Blend("soft_light", memory, opacity=0.6, location=(3, -4))
blend.mode = "overlay"
place: Tuple[int, int] = blend.location or (0, 0)

number: int = sepia(memory)  # wrong
ombrix.Sepia(strength=30)  # wrong
ombrix.Sepia("much")  # wrong
ombrix.Blend("softly", memory)  # wrong
blend.location = 7  # wrong
sepia.vlaue = 30  # wrong
ombrix.Sepa(30)  # wrong
