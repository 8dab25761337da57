#!/usr/bin/env python3
"""Tones a picture that is larger than memory, in strips, on a Dask cluster: on this machine, or on any number of them.

    python3 larger_than_memory.py                                60000 x 20000 pixels, 3.6 GB, by two workers of 400 MB
    python3 larger_than_memory.py --scheduler tcp://head:8786    on the workers of a cluster
    python3 larger_than_memory.py --plain                        without the effect, to see what it adds

The picture is a NumPy file that all workers can read, and the result is another.
"""

import argparse
import os
import time

import dask.array as da
import numpy as np
import ombrix
from dask.distributed import Client, LocalCluster


def opened(path, mode):
    return np.lib.format.open_memmap(path, mode=mode)


def painted(block_info=None):
    """A strip of the example: red grows to the right, green downwards."""
    (top, bottom), (left, right), _ = block_info[None]["array-location"]
    strip = np.empty((bottom - top, right - left, 3), np.uint8)
    strip[..., 0] = np.arange(left, right) >> 8
    strip[..., 1] = (np.arange(top, bottom) >> 6)[:, None]
    strip[..., 2] = 96
    return strip


def read(path, block_info=None):
    top, bottom = block_info[None]["array-location"][0]
    return np.array(opened(path, "r")[top:bottom])


def write(strip, path, block_info=None):
    """Returns the number of rows, as an array: the strip itself stays on its worker."""
    top, bottom = block_info[0]["array-location"][0]
    opened(path, "r+")[top:bottom] = strip
    return np.full((1, 1, 1), len(strip))


def stored(picture, path):
    """Writes the chunks of `picture` to a file as they are done."""
    np.lib.format.open_memmap(path, mode="w+", dtype=np.uint8, shape=picture.shape)
    rows = picture.map_blocks(write, path, dtype=int, chunks=((1,) * picture.numblocks[0], (1,), (1,)))
    assert rows.sum().compute() == len(picture)


def toned(path, rows, effect):
    """The effect's result for the file, as a Dask array of chunks of this many rows."""
    height, width, channels = opened(path, "r").shape
    strips = (rows,) * (height // rows) + ((height % rows,) if height % rows else ())
    picture = da.map_blocks(read, path, chunks=(strips, (width,), (channels,)), dtype=np.uint8)
    if effect is None:
        return picture
    if not effect.pixel_by_pixel:
        raise SystemExit(f"{effect!r} takes the whole picture, and cannot work on its parts")
    return picture.map_blocks(effect, dtype=np.uint8)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--scheduler", help="address of a cluster; without it, workers are started here")
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--memory", default="400MB", help="of each worker; %(default)s unless given")
    parser.add_argument("--size", default="60000x20000", help="of the picture; %(default)s unless given")
    parser.add_argument("--rows", type=int, default=250, help="in a chunk; %(default)s unless given")
    parser.add_argument("--folder", default=".", help="for the picture and its result; the current one unless given")
    parser.add_argument("--plain", action="store_true", help="copy the picture without an effect")
    options = parser.parse_args()
    width, height = map(int, options.size.split("x"))
    source, result = (os.path.abspath(os.path.join(options.folder, name)) for name in ("picture.npy", "toned.npy"))

    if options.scheduler:
        cluster = options.scheduler
    else:
        cluster = LocalCluster(
            n_workers=options.workers, threads_per_worker=1, memory_limit=options.memory, dashboard_address=None
        )
    with Client(cluster):
        if not os.path.exists(source):
            strips = (options.rows,) * (height // options.rows) + ((height % options.rows,) if height % options.rows else ())
            stored(da.map_blocks(painted, chunks=(strips, (width,), (3,)), dtype=np.uint8), source)
        start = time.perf_counter()
        stored(toned(source, options.rows, None if options.plain else ombrix.Sepia(value=30)), result)
        print(f"{time.perf_counter() - start:.2f} s")


if __name__ == "__main__":
    main()
