#!/usr/bin/python3
"""An input method run by ibus, and the editor: input_method_test.py PROGRAM"""

import json
import pathlib
import subprocess
import sys

import session
from session import equal, until

session.enter_bus()
session.need_programs("ibus-daemon", "import")
try:
    import gi

    gi.require_version("IBus", "1.0")
except (ImportError, ValueError) as lacking:
    session.skip(f"no ibus for Python: {lacking}")

ENGINE = pathlib.Path(__file__).with_name("composing_engine.py")
TEXT = "first\nsecond line\n"


class Typist:
    """Types into the editor, and looks at the file that it saves and at what ibus was told."""

    def __init__(self, desktop, path, journal):
        self.desktop = desktop
        self.path = path
        self.journal = journal

    def keys(self, *names):
        self.desktop.keys(*names)

    def expect_saved(self, text, what):
        def saved():
            self.keys("ctrl+s")
            return self.path.read_text(encoding="utf-8") == text
        try:
            until(saved, what)
        except AssertionError:
            equal(self.path.read_text(encoding="utf-8"), text, what)

    def told(self, key):
        """All that ibus was told of one kind."""
        lines = self.journal.read_text(encoding="utf-8").splitlines()
        return [told[key] for told in map(json.loads, lines) if key in told]

    def caret(self):
        return self.told("caret_at")[-1]

    def colours(self, x, y, width, height):
        """The number of colours in a part of the screen."""
        answer = subprocess.run(
            ["import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-format", "%k",
             "info:"], env=self.desktop.environment, capture_output=True, check=True)
        return int(answer.stdout)


def check_composing(typist):
    until(lambda: typist.told("caret_at"), "ibus knows the caret's place")
    start = typist.caret()[0]
    typist.keys("End")
    until(lambda: typist.caret()[0] > start + 20, "ibus knows that the caret moved")
    x, y, _width, height = typist.caret()
    equal(typist.colours(x + 4, y, 60, height), 1, "colours of nothing")
    typist.keys("a", "b", "c")
    until(lambda: typist.caret()[0] > x + 15, "the candidates move along with the composed text")
    equal(typist.caret()[1], y, "row of the candidates")
    until(lambda: typist.colours(x + 4, y, 60, height) > 3, "the composed text is shown")
    typist.expect_saved(TEXT, "composed text is no part of the text")
    typist.keys("space")
    typist.expect_saved("firstABC\nsecond line\n", "the commit is typed")
    typist.keys("ctrl+z")
    typist.expect_saved(TEXT, "and is undone")


def check_cancelling(typist):
    typist.keys("ctrl+Home", "shift+End", "x", "y", "Escape")
    typist.expect_saved(TEXT, "what was selected comes back")
    typist.keys("x", "y", "space")
    typist.expect_saved("XY\nsecond line\n", "the commit replaces what was selected")
    typist.keys("ctrl+z")
    typist.expect_saved(TEXT, "one step back")


def check_surroundings(typist):
    typist.keys("ctrl+End", "Up", "End", "F8")
    typist.expect_saved("first\nsecond lin<e>\n", "the input method replaced what is around")
    equal(typist.told("surrounding")[-1], "second line", "surrounding text")
    equal(typist.told("caret")[-1], len("second line"), "caret in the surrounding text")
    typist.keys("ctrl+z")
    typist.expect_saved(TEXT, "which is undone in one step")


def check_clicking(typist):
    """A click elsewhere commits what is composed, where it was."""
    x, y, _width, height = typist.caret()
    typist.keys("ctrl+Home", "q")
    until(lambda: typist.caret()[1] < y, "the caret is on the first line")
    subprocess.run(["xdotool", "mousemove", str(x + 200), str(y + height // 2), "click", "1"],
                   env=typist.desktop.environment, check=True)
    until(lambda: typist.caret()[1] == y, "the caret is where the click was")
    typist.expect_saved("q" + TEXT, "the composed text stays")


def main(program):
    with session.Session(QT_IM_MODULE="ibus") as desktop:
        journal = desktop.write("journal", "")
        desktop.start("ibus-daemon", "--panel=disable", "--config=disable", "--emoji-extension=disable",
                      "--cache=none")
        until(lambda: list(desktop.folder.glob("config_home/ibus/bus/*")), "ibus is there")
        desktop.start(sys.executable, str(ENGINE), str(journal))
        path = desktop.write("write.txt", TEXT)
        typist = Typist(desktop, path, journal)
        until(lambda: typist.told("ready") == [True], "the engine is there")
        desktop.edit(program, path)
        check_composing(typist)
        check_cancelling(typist)
        check_surroundings(typist)
        check_clicking(typist)


main(sys.argv[1])
