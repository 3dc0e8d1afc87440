#!/usr/bin/python3
"""The windows of a session come back with the next one: windows_test.py PROGRAM"""

import signal
import subprocess
import sys
import time

import session
from session import equal, until

session.enter_bus()
session.need_programs("xprop")

WRITTEN = 2  # seconds after which what changed is on the disk


def main(program):
    with session.Session() as desktop:
        desktop.write_setting("restoresWindows", "true")

        def run(*command):
            answer = subprocess.run(command, env=desktop.environment, capture_output=True,
                                    check=False)
            return answer.stdout.decode("utf-8", "replace").strip()

        def windows():
            """Name and place of each window, from the one in front."""
            ids = run("xprop", "-root", "_NET_CLIENT_LIST_STACKING").partition("# ")[2]
            found = []
            for window in filter(None, reversed(ids.split(", "))):
                name = run("xdotool", "getwindowname", window)
                place = run("xdotool", "getwindowgeometry", "--shell", window).splitlines()[1:5]
                found.append((name, *place))
            return found

        def window_of(name):
            return until(lambda: run("xdotool", "search", "--name", "^" + name), name + " is there")

        def place(name, x, y, width, height):
            window = window_of(name)
            run("xdotool", "windowsize", "--sync", window, str(width), str(height))
            run("xdotool", "windowmove", "--sync", window, str(x), str(y))

        def opened(count):
            until(lambda: len(windows()) == count and "?" not in str(windows()), f"{count} windows")
            time.sleep(0.5)  # what was placed stays there

        files = [desktop.write(name, "one\ntwo\nthree\n" * 100) for name in ("a.txt", "b.txt", "c.txt")]
        running = desktop.start(program, *map(str, files))
        opened(3)
        place("a.txt", 40, 60, 500, 300)
        place("b.txt", 300, 200, 560, 350)
        place("c.txt", 120, 300, 600, 250)
        run("xdotool", "windowactivate", "--sync", window_of("b.txt"))
        desktop.keys("ctrl+End")
        time.sleep(WRITTEN)
        arranged = windows()
        equal([name.split()[0] for name, *_ in arranged], ["b.txt", "c.txt", "a.txt"], "the order")

        desktop.keys("ctrl+q")
        until(lambda: running.poll() is not None, "the program ends without a question")
        running = desktop.start(program)
        opened(3)
        equal(windows(), arranged, "the windows of the next start")
        equal(desktop.active_title(), arranged[0][0] + "\n", "the window with the keyboard")

        # The caret is where it was, too.
        desktop.keys("x", "ctrl+s")
        until(lambda: files[1].read_text().endswith("three\nx"), "the caret is at the end")
        time.sleep(WRITTEN)
        running.send_signal(signal.SIGKILL)
        running.wait()
        running = desktop.start(program)
        opened(3)
        equal(windows(), arranged, "the windows after a kill")

        # So do texts that are not saved, with their windows, once each.
        desktop.keys("y")
        time.sleep(WRITTEN)
        running.send_signal(signal.SIGKILL)
        running.wait()
        running = desktop.start(program)
        opened(3)
        equal(sorted(place for _, *place in windows()), sorted(place for _, *place in arranged),
              "the windows with edits")
        equal(files[1].read_text().count("y"), 0, "what is not saved")
        until(lambda: "b.txt" in desktop.active_title(), "the one that was in front")
        desktop.keys("ctrl+s")
        until(lambda: files[1].read_text().endswith("xy"), "the edit was brought back")
        time.sleep(WRITTEN)

        # A file that is asked for comes to the front.
        desktop.keys("ctrl+q")
        until(lambda: running.poll() is not None, "the program ends")
        running = desktop.start(program, str(files[0]))
        opened(3)
        until(lambda: "a.txt" in desktop.active_title(), "the file that was asked for is in front")
        equal(sorted(windows()), sorted(arranged), "the places of all")

        desktop.keys("ctrl+alt+shift+q")
        until(lambda: running.poll() is not None, "the program ends for good")
        running = desktop.start(program)
        opened(1)
        until(lambda: "Untitled" in desktop.active_title(), "a new document")


main(sys.argv[1])
