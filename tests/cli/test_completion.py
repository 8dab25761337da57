"""Types command lines of ombrix in real shells, and looks at what these make of them.

test_completion.py OMBRIX PLUGIN"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import pexpect

OMBRIX, POSTERIZE = map(os.path.abspath, sys.argv[1:])
EFFECTS = ["blend", "brightness", "colorfilter", "contrast", "grayscale", "invert", "sepia"]
FILES = ["photo.jpg", "two words.png", "vignette.png"]

# What is typed, and what may stand in place of its last word.
LINES = [
    ("se", ["sepia"]),
    ("", ["apply", "call", "completion", "frei0r", "gallery", "list", *EFFECTS]),
    ("apply ", EFFECTS),
    ("sepia 30 photo.jpg --then inv", ["invert"]),
    ("--plugin POSTERIZE post", ["posterize"]),
    ("blend ov", ["overlay"]),
    ("blend linear_", ["linear_burn", "linear_dodge", "linear_light"]),
    ("blend Mode=ov", ["Mode=overlay"]),
    ("blend nothing", []),
    ("blend mode=overlay mod", []),
    ("blend fill_m", ["fill_mask="]),
    ("colorfilter re", ["red="]),
    ("colorfilter Re", ["Red="]),
    ("sepia mask=v", ["mask=vignette.png"]),
    ("sepia ignore_alpha=t", ["ignore_alpha=true"]),
    ("sepia --mask v", ["vignette.png"]),
    ("sepia --mask=v", ["--mask=vignette.png"]),
    ("sepia --mas", ["--mask"]),
    ("sepia 30 ph", ["photo.jpg"]),
    ("sepia 30 two\\ w", ["two words.png"]),
    ("sepia 30 -- vig", ["vignette.png"]),
    ("--cores a", ["all", "auto"]),
    ("list OmbrixU", ["OmbrixUtilities"]),
    ("list --j", ["--json"]),
    ("call SepiaEffect.ApplyI", ["SepiaEffect.ApplyInPlace"]),
    ("call ColorFilterEffect.Apply so", ["source="]),
    ("call ColorFilterEffect.Apply source=ph", ["source=photo.jpg"]),
    ("completion z", ["zsh"]),
    ("nothing ", FILES),
    ("call Nothing.Apply vig", ["vignette.png"]),
]

# Arguments, what makes the shell plain, and the keys that put several completions into the line.
SHELLS = {
    "bash": (["--norc", "--noprofile"], "PS1='> '; bind 'set enable-bracketed-paste off'", "\x1b*"),
    "zsh": (
        ["-f"],
        "PS1='> '; unsetopt zle_bracketed_paste prompt_sp 2> /dev/null; unset zle_bracketed_paste;"
        " autoload -Uz compinit; compinit -D;"
        " zstyle ':completion:*' completer _all_matches _complete; zstyle ':completion:*:all-matches:*' insert true",
        "\t",
    ),
}


class Typed(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for name in FILES:
            (self.folder / name).touch()
        self.environment = {
            "PATH": os.path.dirname(OMBRIX) + ":/usr/bin:/bin",
            "HOME": folder.name,
            "TERM": "dumb",
            "LC_ALL": "C.UTF-8",
        }

    def typed(self, line):
        return line.replace("POSTERIZE", POSTERIZE)

    def check(self, name):
        words, prepare, complete = SHELLS[name]
        shell = pexpect.spawn(
            "/usr/bin/" + name,
            words,
            env=self.environment,
            cwd=str(self.folder),
            encoding="utf-8",
            timeout=20,
            dimensions=(50, 2000),
        )
        self.addCleanup(shell.close, force=True)

        def run(keys):
            """Everything that `keys` and an Enter make the shell print."""
            shell.send(keys + "\r")
            shell.expect("(?s)(.*)<<end>>")
            return shell.match.group(1)

        run(prepare + "; source <(ombrix completion " + name + "); printf '<<%s>>' end")
        for line, candidates in LINES:
            with self.subTest(shell=name, line=line):
                # The shell completes the line of a command; what it makes of it is then printed instead.
                keys = complete if len(candidates) > 1 else "\t"
                shown = run("ombrix " + self.typed(line) + keys + "X; printf '<<%s>>' end\x01printf '[%s]' ")
                got = shown[shown.rindex("[ombrix]") :].strip("[]\r\n").split("][")[1:]
                before = self.typed(line).replace("\\ ", "\0").split(" ")[:-1]
                self.assertEqual(got[: len(before)], before)
                got = got[len(before) :]
                if not candidates:
                    self.assertEqual(got, [line.split(" ")[-1] + "X"])
                elif len(candidates) == 1 and candidates[0].endswith("="):
                    self.assertEqual(got, [candidates[0] + "X"])
                else:
                    self.assertEqual(got.pop(), "X")
                    self.assertEqual(sorted(got), sorted(candidates))

    def test_bash(self):
        self.check("bash")

    def test_zsh(self):
        self.check("zsh")

    def test_fish(self):
        for line, candidates in LINES:
            with self.subTest(shell="fish", line=line):
                script = "source (ombrix completion fish | psub); complete --do-complete $argv[1]"
                run = subprocess.run(
                    ["/usr/bin/fish", "--no-config", "-c", script, "ombrix " + self.typed(line)],
                    env=self.environment,
                    cwd=self.folder,
                    capture_output=True,
                    text=True,
                )
                self.assertEqual(run.stderr, "")
                got = [each.split("\t")[0].replace("\\ ", " ") for each in run.stdout.splitlines()]
                self.assertEqual(sorted(got), sorted(candidates))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
