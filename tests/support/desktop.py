"""A screen and a session of a test's own, and an end for whatever it has started, whichever way the test ends."""

import contextlib
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIPPED = 77


def skip(what, reason):
    print(f"notice: {what} left out: {reason}")
    sys.exit(SKIPPED)


def require(what, commands, modules=()):
    for command in commands:
        if shutil.which(command) is None:
            skip(what, f"there is no {command}")
    for module in modules:
        try:
            __import__(module)
        except (ImportError, ValueError) as error:
            skip(what, str(error))


def until(ask, patience, pause=0.05):
    """Asks again and again, until there is an answer; None where there is none for so many seconds."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        answer = ask()
        if answer:
            return answer
        time.sleep(pause)
    return None


def end_as_by_an_exception():
    """Whoever ends the test, ctest's time limit too, lets it clean up."""
    for end in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(end, lambda number, _: sys.exit(128 + number))


def end(process):
    """Asks a program to end, and ends it where it does not."""
    process.terminate()
    try:
        process.wait(timeout=10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


@contextlib.contextmanager
def started(*command, **how):
    """A program that is ended at the end of the block."""
    process = subprocess.Popen(command, **how)
    try:
        yield process
    finally:
        end(process)


@contextlib.contextmanager
def screen(what, size=(1280, 1024)):
    """A screen without a monitor. @return its process and its name"""
    read_end, write_end = os.pipe()
    with started("Xvfb", "-displayfd", str(write_end), "-screen", "0", "{}x{}x24".format(*size), "-nolisten", "tcp",
                 pass_fds=[write_end], stderr=subprocess.DEVNULL) as process:
        os.close(write_end)
        with os.fdopen(read_end) as told:
            number = told.readline().strip()
        if not number:
            skip(what, "Xvfb does not start")
        yield process, f":{number}"


def surroundings_on(name, **more):
    """The environment of a program that is to know that screen alone."""
    surroundings = {**os.environ, "DISPLAY": name, "QT_QPA_PLATFORM": "xcb", "LC_ALL": "C.UTF-8", **more}
    for foreign in ["WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS", "SESSION_MANAGER"]:
        if foreign not in more:
            surroundings.pop(foreign, None)
    return surroundings


def run_in_own_session(what, script, arguments, size=(1280, 1024)):
    """Calls a script again, on a screen and in a session of its own; both end with it. @return what it returns"""
    end_as_by_an_exception()
    with tempfile.TemporaryDirectory() as home, screen(what, size) as (_, name):
        surroundings = surroundings_on(name, XDG_RUNTIME_DIR=home, HOME=home, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        with started("dbus-run-session", "--", sys.executable, script, "--inside", *arguments, env=surroundings) as session:
            return session.wait()
