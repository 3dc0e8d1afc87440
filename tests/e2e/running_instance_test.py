#!/usr/bin/python3
"""Starts of the program while it runs: running_instance_test.py PROGRAM"""

import signal
import subprocess
import sys

import session
from session import equal, until

session.enter_bus()
session.need_programs("git")


def main(program):
    with session.Session() as desktop:
        # The programs that are killed here are not to leave windows to the next.
        desktop.write_setting("restoresWindows", "false")

        def start(*arguments, **options):
            return desktop.start(program, *map(str, arguments), **options)

        def ended(process, status, what):
            until(lambda: process.poll() is not None, what + " returns")
            equal(process.returncode, status, what)

        first, second, third = (desktop.write(name, "one\ntwo\n") for name in ("1.txt", "2.txt", "3.txt"))

        # A second start leaves its files to the first, by whatever path it knows them.
        running = start(first)
        desktop.await_active("1.txt")
        ended(start(f"{second.name}:2", cwd=desktop.folder), 0, "a second start")
        desktop.await_active("2.txt")
        desktop.keys("x", "ctrl+s")
        until(lambda: second.read_text() == "one\nxtwo\n", "the line that was asked for is shown")
        ended(start(first), 0, "a start with a file that is shown")
        desktop.await_active("1.txt")

        # One that waits returns with its windows only, however many others there are.
        waiting = start("--wait", second, third)
        desktop.await_active("3.txt")
        desktop.keys("ctrl+w")
        until(lambda: "3.txt" not in desktop.active_title(), "the window is closed")
        equal(waiting.poll(), None, "one that waits for two, after the first")
        ended(start(second), 0, "raising the other")
        desktop.await_active("2.txt")
        desktop.keys("ctrl+w")
        ended(waiting, 0, "one that waits")
        equal(running.poll(), None, "the program")

        # Who is stopped or killed hinders nobody.
        apart = start("--new-instance", third)
        desktop.await_active("3.txt")
        desktop.keys("ctrl+w")
        ended(apart, 0, "an instance of its own")
        waiting = start("--wait", second)
        desktop.await_active("2.txt")
        running.send_signal(signal.SIGKILL)
        ended(waiting, 1, "one that waits for a program that is killed")
        running = start(first)
        desktop.await_active("1.txt")
        desktop.keys("ctrl+w")
        ended(running, 0, "the program, with its last window")

        # As other programs call an editor; none runs yet.
        def git(*arguments, **options):
            return subprocess.run(["git", "-c", "user.name=Ann", "-c", "user.email=ann@example.org",
                                   *arguments], cwd=desktop.folder, check=True, capture_output=True,
                                  text=True, **options).stdout

        git("init", "-q")
        git("add", "1.txt")
        committing = desktop.start("git", "-c", "user.name=Ann", "-c", "user.email=ann@example.org",
                                   "-c", f"core.editor={program} --wait", "commit", cwd=desktop.folder)
        desktop.await_active("COMMIT_EDITMSG")
        desktop.keys("A", "d", "d", "ctrl+s", "ctrl+w")
        ended(committing, 0, "a commit")
        equal(git("log", "--format=%s").strip(), "Add", "the message")


main(sys.argv[1])
