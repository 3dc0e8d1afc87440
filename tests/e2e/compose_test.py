#!/usr/bin/python3
"""Dead keys and the Compose key in the editor: compose_test.py PROGRAM"""

import subprocess
import sys

import session
from session import until

session.enter_bus()
session.need_programs("setxkbmap")

# A table of its own, so that no system's tables are needed.
COMPOSE = """<dead_acute> <e> : "\u00e9" eacute
<dead_acute> <space> : "'" apostrophe
<Multi_key> <o> <c> : "\u00a9" copyright
<Multi_key> <h> <s> : "\U0001f600"
"""
TYPED = [
    (["a"], "a"),  # from then on keys surely go to the text
    (["dead_acute", "e"], "\u00e9"),
    (["dead_acute", "space"], "'"),
    (["Multi_key", "o", "c"], "\u00a9"),
    (["Multi_key", "h", "s"], "\U0001f600"),  # two code units, which one key press inserts
    (["dead_acute", "x"], "x"),  # there is no such character
    (["Multi_key", "Escape", "z"], "z"),
]


def main(program):
    with session.Session() as desktop:
        desktop.environment["XCOMPOSEFILE"] = str(desktop.write("Compose", COMPOSE))
        subprocess.run(["setxkbmap", "us", "-variant", "intl", "-option", "compose:menu"],
                       env=desktop.environment, check=True)
        path = desktop.write("write.txt", "")
        desktop.edit(program, path)
        expected = ""
        for keys, text in TYPED:
            desktop.keys(*keys)
            expected += text
            def saved():
                desktop.keys("ctrl+s")
                return path.read_text(encoding="utf-8") == expected
            try:
                until(saved, f"{keys} give {text!r}")
            except AssertionError as failure:
                raise AssertionError(f"{failure}: {path.read_text(encoding='utf-8')!r}") from None


main(sys.argv[1])
