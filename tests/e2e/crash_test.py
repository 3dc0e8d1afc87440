#!/usr/bin/python3
"""The program is killed while it is typed into, and brings the text back: crash_test.py PROGRAM"""

import random
import signal

import session
from session import equal, until

session.enter_bus()

ROUNDS = 3
SEED = 20


def main(program):
    with session.Session() as desktop:
        recovery = desktop.folder / "state_home" / "Quillory" / "Recovery"
        settings = desktop.folder / "config_home" / "Quillory"
        settings.mkdir()
        (settings / "Quillory.conf").write_text(
            "[General]\ndontAsk=true\nshowWelcome=false\nautosaveInPlace=false\n")

        def journals():
            return list(recovery.glob("*.journal"))

        def ended(process, what):
            until(lambda: process.poll() is not None, what)

        def end(process, number):
            process.send_signal(number)
            ended(process, f"signal {number} ends the program")

        # Of any key press that was answered nothing is missing after a kill, whenever it comes.
        for seed in range(SEED, SEED + ROUNDS):
            print("seed", seed, flush=True)
            moments = random.Random(seed)
            file = desktop.write("named.txt", "one\n")
            first = desktop.start(program, str(file))
            desktop.await_active("named.txt")
            letters = [moments.choice("abcdefgh") for _ in range(moments.randint(3, 30))]
            desktop.keys(*letters)
            typed = "".join(letters)
            # What was sent is seen once it was written; what is to be killed is the typing of more.
            until(lambda: any(typed_in(path).endswith(typed.encode()) for path in journals()),
                  "all that was typed is in the journal")
            end(first, signal.SIGKILL)
            equal(file.read_text(), "one\n", "the file")

            again = desktop.start(program)
            desktop.await_active("named.txt")
            desktop.keys("ctrl+s")
            until(lambda: file.read_text() == typed + "one\n", "the text is back, and saved")
            until(lambda: not journals(), "the journal goes with the save")
            desktop.keys("ctrl+w")
            ended(again, "the program ends with its window")

        # The system's word to end is no crash, but asks nothing either; a document without a file.
        for number, key in ((signal.SIGTERM, "x"), (signal.SIGHUP, "y"), (signal.SIGINT, "z")):
            running = desktop.start(program)
            desktop.await_active("Untitled")
            desktop.keys(key)
            until(lambda: len(journals()) == 1, "there is a journal")
            end(running, number)
            equal(running.returncode, 128 + number, "the status")
        # One that runs apart leaves the others' texts alone.
        file = desktop.write("other.txt", "other\n")
        apart = desktop.start(program, "--new-instance", str(file))
        desktop.await_active("other.txt")
        desktop.keys("ctrl+w")
        ended(apart, "an instance of its own")
        running = desktop.start(program)
        desktop.await_active("Untitled")
        desktop.keys("ctrl+a", "ctrl+c")
        target = desktop.folder / "saved.txt"
        desktop.keys("ctrl+s")
        until(lambda: "Untitled" not in desktop.active_title(), "it asks where to save")
        desktop.keys("ctrl+a")
        session.subprocess.run(["xdotool", "type", str(target)], env=desktop.environment, check=True)
        desktop.keys("Return")
        until(lambda: target.exists() and target.read_text() == "xyz", "all three are back")
        until(lambda: not journals(), "nothing is left")
        running.terminate()
        ended(running, "the program")


def typed_in(path):
    """What the edits of a journal put in, one after the other; docs/formats.md has the form."""
    data = path.read_bytes()
    at = 8
    typed = b""
    while at + 12 < len(data):
        payload = data[at + 12:][:int.from_bytes(data[at:at + 4], "little")]
        at += 12 + len(payload)
        if payload[0] & 0x7F == 3:
            typed += payload[22:]
    return typed


main(session.sys.argv[1])
