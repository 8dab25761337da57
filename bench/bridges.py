"""Measures the effects in other programs beside what these do themselves: ./run bench --bridges.

Works are done by turns, and the medians of their rounds compared. Time is from start to exit, CPU time and memory as the
system counts them for the process (wait4)."""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile

from files import machine_line, run  # noqa: F401

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir)
