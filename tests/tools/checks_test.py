#!/usr/bin/env python3
"""Shows the checks of tools/ small trees with one fault each, and install-packages a made-up system."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

TOOLS = Path(__file__).resolve().parents[2] / "tools"


class Checks(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = Path(folder.name)

    def write(self, files):
        for name, text in files.items():
            path = self.tree / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")

    def run_tool(self, *command, **variables):
        result = subprocess.run(command, capture_output=True, text=True, check=False,
                                env=os.environ | variables)
        return result.returncode, result.stdout + result.stderr

    def verdict(self, check, files):
        """What `check` says of a tree of just `files`: "" when it passes."""
        with tempfile.TemporaryDirectory() as folder:
            self.tree = Path(folder)
            self.write(files)
            status, said = self.run_tool(TOOLS / check, folder)
        self.assertIn(status, (0, 1), said)
        self.assertNotIn("Traceback", said)
        return said if status else ""


class LayersTest(Checks):
    ALLOWED = [
        ("text/A.h", '#include "text/B.h"\n#include <QString>\n#include <vector>\n'),
        ("app/A.cpp", '#include "document/Document.h"\n#include <QApplication>\n#include <QPrinter>\n'),
        ("view/A.cpp", '#include "editing/QPTextView.h"\n#include <QtGui/QPainter>\n'),
        ("syntax/regex/A.cpp", '#include "syntax/regex/B.h"\n#include <unicode/uregex.h>\n'),
        ("commands/A.cpp", "#include <QNetworkAccessManager>\n"),
        ("text/A.cpp", '#include "A.moc"\n#include "moc_A.cpp"\n'),
        ("view/CMakeLists.txt", "quillory_room(view LINKS quillory_editing Qt6::Widgets)\n"),
    ]
    FORBIDDEN = [
        ("text/A.h", '#include <QString>\n#include "editing/QPTextView.h"\n', "text may not know editing"),
        ("syntax/regex/A.h", '#  include "commands/B.h"\n', "syntax may not know commands"),
        ("editing/A.h", "#include <document/Document.h>\n", "editing may not know document"),
        ("view/A.h", '#include "document/Document.h"\n', "view may not know document"),
        ("preview/A.h", '#include "text/TextRange.h"\n', "preview may not know text"),
        ("text/A.h", '#include "preview/Page.h"\n', "text may not know preview"),
        ("text/A.h", "#include <QColor>\n", "text may not use QtGui"),
        ("cli/A.cpp", "#include <QtWidgets/QWidget>\n", "cli may not use QtWidgets"),
        ("document/A.cpp", "#include <qfont.h>\n", "document may not use QtGui"),
        ("editing/A.cpp", "#include <QTcpSocket>\n", "editing may not use QtNetwork"),
        ("text/A.cpp", "#include <QNoSuchThing>\n", "not installed"),
        ("text/A.cpp", '#include "../app/Main.h"\n', "write the path from src/"),
        ("text/A.cpp", '#include "B.h"\n', "write the path from src/"),
        ("cellar/A.cpp", "", "is no room"),
        ("text/CMakeLists.txt", "quillory_room(text LINKS quillory_app)\n", "may not link quillory_app"),
        ("cli/CMakeLists.txt", "quillory_room(cli LINKS Qt6::Gui)\n", "may not link Qt6::Gui"),
    ]

    def test_downward_includes_pass(self):
        for name, text in self.ALLOWED:
            with self.subTest(text=text):
                self.assertEqual(self.verdict("check-layers", {f"src/{name}": text}), "")

    def test_other_includes_fail(self):
        for name, text, fault in self.FORBIDDEN:
            with self.subTest(name=name, text=text):
                self.assertIn(fault, self.verdict("check-layers", {f"src/{name}": text}))

    def test_a_fault_is_told_by_file_and_line(self):
        said = self.verdict("check-layers", {"src/text/A.h": '#pragma once\n\n#include "app/B.h"\n'})
        self.assertTrue(said.startswith("src/text/A.h:3: "), said)


# Put together, so that the check does not find it here.
REQUIREMENTS = "specifi" + "cation"


class WordingTest(Checks):
    ALLOWED = [
        ("docs/a.md", "Part of the text, the special case, inspected.\n"),
        ("src/text/A.cpp", 'path.startsWith("~/work/") || path == relative + "/tmp/"\n'),
        ("tests/text/A.cpp", 'open("/tmp/x");\n'),
        ("tests/text/data/mail.txt", f"as the {REQUIREMENTS} says, in /work/x\n"),
        ("docs/a.md", "See https://www.unicode.org/reports/tr29/\n"),
        ("src/text/Long.cpp", "\n" * 700),
    ]
    FORBIDDEN = [
        ("src/text/A.h", f"/// As the {REQUIREMENTS} says.\n", "requirements"),
        ("docs/a.md", f"See {REQUIREMENTS[:4]}.md.\n", "requirements"),
        ("tests/text/ATest.cpp", f"// {'Part'} 3.12 wants it\n", "requirements"),
        ("src/text/A.h", f"// the {REQUIREMENTS[:4]} asks for it\n", "requirements"),
        ("CMakeLists.txt", "set(X /work/main)\n", "path of one machine"),
        ("tests/text/A.cpp", 'open("/work/main/x");\n', "path of one machine"),
        ("src/text/A.cpp", 'open("/tmp/x");\n', "path of one machine"),
        ("docs/a.md", "apt from http://deb.example.org/debian\n", "host of packages"),
        ("src/text/Long.cpp", "\n" * 701, "701 lines"),
    ]

    def test_legitimate_words_pass(self):
        for name, text in self.ALLOWED:
            with self.subTest(text=text[:60]):
                self.assertEqual(self.verdict("check-wording", {name: text}), "")

    def test_words_that_belong_elsewhere_fail(self):
        for name, text, fault in self.FORBIDDEN:
            with self.subTest(text=text[:60]):
                self.assertIn(fault, self.verdict("check-wording", {name: text}))


class InstallPackagesTest(Checks):
    """Stand-ins for dpkg-query and apt-get, found first on the PATH, play the system."""

    def system(self, installed, apt_get):
        self.write({
            "dpkg-query": f"#!/bin/sh\nfor p in {' '.join(installed)}; do echo \"installed $p\"; done\n",
            "apt-get": f'#!/bin/sh\necho "$*" >>"{self.tree}/calls"\n{apt_get}\n',
            "sudo": '#!/bin/sh\nexec "$@"\n',
        })
        for program in ("dpkg-query", "apt-get", "sudo"):
            (self.tree / program).chmod(0o755)
        status, said = self.run_tool(TOOLS / "install-packages", "run",
                                     PATH=f"{self.tree}:{os.environ['PATH']}", QUILLORY_PACKAGES="")
        calls = self.tree / "calls"
        return status, said, calls.read_text() if calls.exists() else ""

    def packages(self):
        lines = (TOOLS / "packages" / "run.txt").read_text().splitlines()
        return [line for line in lines if line and not line.startswith("#")]

    def test_nothing_missing_is_silent(self):
        self.assertEqual(self.system(self.packages(), "exit 1"), (0, "", ""))

    def test_only_what_is_missing_is_installed(self):
        present = [package for package in self.packages() if package not in ("g++", "libicu-dev")]
        status, said, calls = self.system(present, "exit 0")
        self.assertEqual(status, 0)
        self.assertIn("g++ libicu-dev\n", said)
        update, install = calls.splitlines()
        self.assertTrue(update.endswith(" update"))
        self.assertTrue(install.endswith(" install --no-install-recommends g++ libicu-dev"))

    def test_failure_names_what_is_missing(self):
        status, said, _ = self.system(self.packages()[1:], "echo no network; exit 100")
        self.assertEqual(status, 1)
        self.assertIn("no network", said)
        self.assertIn(f"could not install: {self.packages()[0]}", said)


if __name__ == "__main__":
    unittest.main()
