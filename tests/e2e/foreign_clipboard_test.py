#!/usr/bin/python3
"""Pasting what another program holds, be it slow or long: foreign_clipboard_test.py PROGRAM"""

import signal
import subprocess
import sys

import session
from session import equal, until

session.enter_bus()
session.need_programs("xclip")

LONG = "a line of another program\r\n" * 400_000  # 10 MB, which come in pieces


def own(desktop, text):
    """Has another program own the clipboard."""
    path = desktop.write("clip.txt", text)
    return desktop.start("xclip", "-quiet", "-selection", "clipboard", "-i", str(path))


def main(program):
    with session.Session() as desktop:
        path = desktop.write("paste.txt", "")
        desktop.edit(program, path)

        def saved(text):
            def look():
                desktop.keys("ctrl+s")
                return path.read_text(encoding="utf-8") == text
            return look

        owner = own(desktop, "sh\u00f6rt \U0001f600|")
        until(lambda: "TARGETS" in subprocess.run(["xclip", "-selection", "clipboard", "-o", "-t", "TARGETS"],
              env=desktop.environment, capture_output=True, check=False).stdout.decode(), "the clipboard is owned")
        # A key right behind it comes behind the text.
        desktop.keys("ctrl+v", "x")
        until(saved("sh\u00f6rt \U0001f600|x"), "a short text is there")

        # Who does not answer keeps nobody from typing; the text comes to where it was asked for.
        owner.send_signal(signal.SIGSTOP)
        desktop.keys("Home", "ctrl+v", "End", "y")
        until(saved("sh\u00f6rt \U0001f600|xy"), "the window takes keys while it waits")
        owner.send_signal(signal.SIGCONT)
        until(saved("sh\u00f6rt \U0001f600|" * 2 + "xy"), "the text is there")
        desktop.keys("ctrl+z")
        until(saved("sh\u00f6rt \U0001f600|xy"), "it is undone by itself")

        owner.terminate()
        own(desktop, LONG)
        until(lambda: owner.poll() is not None, "the owner is gone")
        desktop.keys("ctrl+a", "ctrl+v")
        until(lambda: saved(LONG.replace("\r\n", "\n"))(), "a long text is there")


main(sys.argv[1])
