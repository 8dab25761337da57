"""What the documents and the examples show has to work, and the types to be what they say."""

import ast
import glob
import os
import re
import subprocess
import sys
import tempfile
import unittest

import numpy as np
import ombrix

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir)


def python_of(document):
    with open(os.path.join(ROOT, "docs", document), encoding="utf-8") as text:
        return re.findall(r"^```python\n(.*?)^```", text.read(), re.MULTILINE | re.DOTALL)


class Documents(unittest.TestCase):
    def test_what_they_show_runs(self):
        for document in ("python.md", "many-machines.md"):
            blocks = python_of(document)
            self.assertTrue(blocks)
            exec("\n".join(blocks), {})

    def test_a_picture_larger_than_memory(self):
        script = os.path.join(ROOT, "examples", "python", "larger_than_memory.py")
        with tempfile.TemporaryDirectory() as folder:
            size = ["--size", "900x700", "--rows", "64", "--folder", folder, "--memory", "2GB"]
            subprocess.run([sys.executable, script, *size], check=True, capture_output=True, timeout=300)
            picture, result = (np.load(os.path.join(folder, name)) for name in ("picture.npy", "toned.npy"))
        self.assertEqual(picture.shape, (700, 900, 3))
        np.testing.assert_array_equal(result, ombrix.Sepia(30)(picture))

    def test_the_oldest_python_reads_the_package(self):
        for file in glob.glob(os.path.join(os.path.dirname(ombrix.__file__), "*.py*")):
            with open(file, encoding="utf-8") as text:
                ast.parse(text.read(), file, feature_version=(3, 9))

    def test_types(self):
        """mypy complains of each line that says so, and of no other."""
        program = os.path.join(ROOT, "tests", "python", "typed.py")
        with open(program, encoding="utf-8") as text:
            wrong = {number for number, line in enumerate(text, 1) if "# wrong" in line}
        with tempfile.TemporaryDirectory() as cache:
            run = subprocess.run(
                ["mypy", "--cache-dir", cache, "--no-error-summary", "--ignore-missing-imports", program],
                capture_output=True,
                text=True,
                env={**os.environ, "MYPYPATH": os.path.join(ROOT, "python")},
            )
        told = {int(number) for number in re.findall(r"typed\.py:(\d+): error", run.stdout)}
        self.assertEqual(told, wrong, run.stdout + run.stderr)


if __name__ == "__main__":
    unittest.main()
