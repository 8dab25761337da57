"""What goes wrong, as exceptions with one sentence each."""


class Error(Exception):
    """Any failure of an effect; its text says what is wrong and, where there is something, what would work."""


class InvalidArgument(Error, ValueError):
    """An array of a wrong shape, rows that overlap, or a value of a wrong type."""


class NotFound(Error, LookupError):
    """No effect, property, constant or file of this name."""


class Refused(Error, ValueError):
    """The effect refused its values or pictures."""


class Cancelled(Error):
    """The progress function asked for it."""


class Busy(Error, RuntimeError):
    """The process has another host."""


class Forked(Error, RuntimeError):
    """Effects were used before this process was forked; start processes by spawn or forkserver instead."""


OF_STATUS = {1: InvalidArgument, 2: NotFound, 3: Refused, 4: Cancelled, 6: Busy, 7: Forked}
