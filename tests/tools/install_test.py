#!/usr/bin/env python3
"""Installs a build tree into an empty folder and uses what is there: install_test.py BUILD

What the programs say of themselves must be in their manuals and completions too.
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD = Path(sys.argv.pop(1)).resolve()
SOURCES = Path(__file__).resolve().parents[2]


def said(*command, **variables):
    return subprocess.run(command, check=True, capture_output=True, text=True, cwd="/",
                          env=os.environ | variables).stdout


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        home = Path(cls.folder.name) / "home"
        cls.root = Path(cls.folder.name) / "root"
        cls.variables = {"HOME": str(home), "QT_QPA_PLATFORM": "offscreen", "QUILLORY_RESOURCES": "",
                         "XDG_DATA_HOME": "", "XDG_CONFIG_HOME": "", "XDG_STATE_HOME": "",
                         "XDG_CACHE_HOME": ""}
        said("cmake", "--install", str(BUILD), "--prefix", str(cls.root))

    def run_installed(self, program, *arguments):
        return said(str(self.root / "bin" / program), *arguments, **self.variables)

    def test_finds_what_was_installed_with_it(self):
        definitions = self.run_installed("quillory-cli", "definitions")
        self.assertIn(f"{self.root}/share/quillory/Definitions/C++.plist", definitions)

    def test_paints_a_window_and_prints(self):
        text = Path(self.folder.name) / "text.txt"
        text.write_text("a line\n")
        picture, pages = text.with_suffix(".png"), text.with_suffix(".pdf")
        self.run_installed("quillory", "--render", str(picture), str(text))
        self.assertEqual(picture.read_bytes()[:4], b"\x89PNG")
        self.run_installed("quillory-cli", "print", str(text), str(pages))
        self.assertEqual(pages.read_bytes()[:5], b"%PDF-")

    def test_every_option_is_in_manual_and_completions(self):
        for program in ("quillory", "quillory-cli"):
            help_text = self.run_installed(program, "--help")
            words = set(re.findall(r"--([a-z][a-z-]+)", help_text))
            if program == "quillory-cli":
                commands = re.findall(r"^  ([a-z]+)\b", help_text, re.MULTILINE)
                self.assertIn("info", commands)
                words |= set(commands)
            manual = (SOURCES / f"docs/man/{program}.1").read_text()
            fish = (SOURCES / f"resources/completions/{program}.fish").read_text()
            others = [(SOURCES / f"resources/completions/quillory.{shell}").read_text()
                      for shell in ("bash", "zsh")]
            for word in words:
                for text in (manual.replace("Fl -", "Fl "), fish, *others):
                    with self.subTest(program=program, word=word):
                        self.assertRegex(text, rf"(?<![a-z]){word}(?![a-z])")

    def test_installs_nothing_else(self):
        tops = {str(path.relative_to(self.root)) for path in self.root.glob("*/*")}
        self.assertEqual(tops - {"bin/quillory", "bin/quillory-cli", "lib/quillory"},
                         {f"share/{name}" for name in
                          ("applications", "bash-completion", "doc", "fish", "icons", "man",
                           "metainfo", "mime", "quillory", "zsh")})


if __name__ == "__main__":
    unittest.main()
