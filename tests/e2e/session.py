"""A desktop session of its own for one test: an X server, a window manager, a session bus, folders.

A test that lacks a facility of the machine says which, and ends with the status that ctest shows as
skipped.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
PATIENCE = 20  # seconds that the slowest machine may take for one step


def skip(reason):
    print("skipped:", reason)
    sys.exit(SKIPPED)


def need_programs(*names):
    missing = [name for name in names if not shutil.which(name)]
    if missing:
        skip("this machine has no " + ", no ".join(missing))


def enter_bus():
    """Runs the test again inside a session bus of its own, which ends with it."""
    if "QUILLORY_TEST_BUS" in os.environ:
        return
    need_programs("dbus-run-session", "Xvfb", "openbox", "xdotool")
    environment = dict(os.environ, QUILLORY_TEST_BUS="1")
    for name in ("DISPLAY", "WAYLAND_DISPLAY", "XMODIFIERS", "QT_IM_MODULE", "AT_SPI_BUS_ADDRESS"):
        environment.pop(name, None)
    command = ["dbus-run-session", "--", sys.executable, *sys.argv]
    os.execvpe(command[0], command, environment)


class Session:
    """The X server, the window manager and the folders; `with` ends all that was started."""

    def __init__(self, **environment):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillory-e2e-"))
        self.processes = []
        self.environment = dict(os.environ, QT_QPA_PLATFORM="xcb", LC_ALL="C.UTF-8",
                                NO_AT_BRIDGE="1", **environment)
        for name in ("CONFIG_HOME", "DATA_HOME", "STATE_HOME", "CACHE_HOME", "RUNTIME_DIR"):
            path = self.folder / name.lower()
            path.mkdir(mode=0o700)
            self.environment["XDG_" + name] = str(path)
        self.environment["HOME"] = str(self.folder)

    def __enter__(self):
        # The server picks a number that is free, and tells it.
        reading, writing = os.pipe()
        self.start("Xvfb", "-displayfd", str(writing), "-screen", "0", "1000x700x24",
                   "-nolisten", "tcp", pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise SystemExit("Xvfb did not start")
        self.environment["DISPLAY"] = ":" + number
        os.environ.update(self.environment)
        # A window that comes before the window manager would wait in vain for the keyboard.
        ready = self.folder / "ready"
        self.start("openbox", "--sm-disable", "--startup", f"touch {ready}")
        until(ready.exists, "the window manager is there")
        return self

    def __exit__(self, failure, *_):
        if failure:
            for log in [*self.folder.glob("*.log"), *self.folder.glob("journal")]:
                print(f"--- {log.name}:", log.read_text(errors="replace")[-3000:], sep="\n")
        for process in reversed(self.processes):
            process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                process.kill()
        shutil.rmtree(self.folder, ignore_errors=True)

    def start(self, *command, **options):
        with open(self.folder / (pathlib.Path(command[0]).name + ".log"), "ab") as log:
            process = subprocess.Popen(command, stdout=log, stderr=log, env=self.environment,
                                       **options)
        self.processes.append(process)
        return process

    def write(self, name, text, encoding="utf-8"):
        path = self.folder / name
        path.write_bytes(text.encode(encoding))
        return path

    def write_setting(self, key, value):
        """For the programs that are started afterwards; replaces what was set."""
        path = self.folder / "config_home" / "Quillory" / "Quillory.conf"
        path.parent.mkdir(parents=True, exist_ok=True)
        # As after the very first start, so that no welcome takes the keyboard.
        path.write_text(f"[General]\nshowWelcome=false\n{key}={value}\n")

    def edit(self, program, path):
        """Opens a file in the editor, and waits until its window has the keyboard."""
        self.start(program, str(path))
        self.await_active(path.name)

    def active_title(self):
        answer = subprocess.run(["xdotool", "getactivewindow", "getwindowname"],
                                env=self.environment, capture_output=True, check=False)
        return answer.stdout.decode("utf-8", "replace")

    def await_active(self, name):
        until(lambda: name in self.active_title(), f"{name} has the keyboard")
        time.sleep(0.3)  # the window manager names the active window before the keys go there

    def keys(self, *names):
        subprocess.run(["xdotool", "key", "--delay", "20", *names], env=self.environment,
                       check=True)


def until(happened, what, step=lambda: time.sleep(0.02)):
    """Waits for an answer that is true, which it returns; fails when none comes."""
    deadline = time.monotonic() + PATIENCE
    while True:
        answer = happened()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError("in vain waited until " + what)
        step()


def equal(found, expected, what):
    if found != expected:
        raise AssertionError(f"{what}: {found!r} instead of {expected!r}")
