"""A desk with a screen, a window manager and a session of its own, and a user at it: real clicks and keys, each counted.

What stands where is read as a screen reader does (AT-SPI); what is done goes through the X server (xdotool) alone.
"""

import ctypes
import os
import struct
import subprocess
import sys
import time
import zlib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import desktop  # noqa: E402

PATIENCE = 20  # seconds
NEEDED = ["Xvfb", "dbus-run-session", "openbox", "xdotool", "xclip", "socat"]
SCREEN = (1366, 768)
WHAT = "the tasks are"


def require():
    desktop.require(WHAT, NEEDED, ["pyatspi"])


def run_in_own_session(script, arguments):
    return desktop.run_in_own_session(WHAT, script, arguments, SCREEN)


class Failed(Exception):
    """A task that could not be done as it stands."""


def until(ask, what, patience=PATIENCE):
    answer = desktop.until(ask, patience, 0.03)
    if not answer:
        raise Failed(what)
    return answer


class Image(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("offset", ctypes.c_int), ("format", ctypes.c_int),
                ("data", ctypes.POINTER(ctypes.c_char)), ("byte_order", ctypes.c_int), ("unit", ctypes.c_int),
                ("bit_order", ctypes.c_int), ("pad", ctypes.c_int), ("depth", ctypes.c_int), ("row_bytes", ctypes.c_int),
                ("bits_per_pixel", ctypes.c_int)]


def screen_rows(width, height):
    """The pixels of the whole screen, pop-ups among them, which xwd may leave black."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XGetImage.restype = ctypes.POINTER(Image)
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
    image = x11.XGetImage(display, root, 0, 0, width, height, ctypes.c_ulong(0xFFFFFFFF), 2).contents
    data = image.data[:image.row_bytes * height]
    x11.XCloseDisplay(display)
    return [data[row * image.row_bytes:row * image.row_bytes + 4 * width] for row in range(height)]


def save_picture(path):
    """The whole screen as a PNG."""
    rows = bytearray()
    for line in screen_rows(*SCREEN):
        rgb = bytearray(3 * SCREEN[0])
        rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
        rows += b"\0" + rgb

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", *SCREEN, 8, 2, 0, 0, 0)) +
                   chunk(b"IDAT", zlib.compress(bytes(rows), 6)) + chunk(b"IEND", b""))


class User:
    """The hands, and the count of what they do."""

    def __init__(self, pictures):
        self.actions = 0
        self.pictures = pictures
        self.task = ""

    def begin(self, task):
        self.actions = 0
        self.task = task

    def _do(self, *command):
        subprocess.run(["xdotool", *command], check=True)
        time.sleep(0.06)  # a user is slower

    def click(self, place, times=1, keys=()):
        """A click, a double-click, or one with a key held: one action each."""
        self.actions += 1
        self._do("mousemove", str(place[0]), str(place[1]))
        for key in keys:
            self._do("keydown", key)
        self._do("click", "--repeat", str(times), "--delay", "40", "1")
        for key in keys:
            self._do("keyup", key)

    def wheel(self, place):
        """A turn of the wheel, downwards."""
        self.actions += 1
        self._do("mousemove", str(place[0]), str(place[1]))
        self._do("click", "5")

    def hold(self, place):
        self.actions += 1
        self._do("mousemove", str(place[0]), str(place[1]))
        self._do("mousedown", "1")

    def release(self):
        self._do("mouseup", "1")

    def rest(self, place):
        """The mouse lies still over something: no action, for nothing is pressed."""
        self._do("mousemove", str(place[0] - 3), str(place[1]))
        self._do("mousemove", str(place[0]), str(place[1]))
        time.sleep(1.2)

    def type(self, text):
        self.actions += 1
        self._do("type", "--delay", "15", text)

    def key(self, keys, times=1):
        """Key chords; each press is an action."""
        self.actions += times
        for _ in range(times):
            self._do("key", keys)

    def picture(self, name):
        if self.pictures:
            time.sleep(0.3)
            save_picture(os.path.join(self.pictures, f"{self.task}-{name}.png"))


class Window:
    """The program's window as a screen reader sees it."""

    LEAVES = ("ROLE_COMBO_BOX", "ROLE_TABLE", "ROLE_LIST", "ROLE_TEXT")

    def __init__(self, user, program, arguments=()):
        import pyatspi

        self.atspi = pyatspi
        self.user = user
        list(pyatspi.Registry.getDesktop(0))  # the registry is up then, which a program that comes first may miss
        self.process = subprocess.Popen([program, *arguments], stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.leaves = {getattr(pyatspi, role) for role in self.LEAVES}
        self.known = {}

    def wait_until_it_is_up(self):
        until(self.frame, "the window does not come up")
        time.sleep(0.4)  # until the window manager has placed it

    def end(self):
        desktop.end(self.process)

    def application(self):
        for application in self.atspi.Registry.getDesktop(0):
            if application is not None and application.get_process_id() == self.process.pid:
                return application
        return None

    def tops(self):
        application = self.application()
        return [top for top in application if top is not None] if application is not None else []

    def frame(self):
        return next((top for top in self.tops() if top.getRole() == self.atspi.ROLE_FRAME), None)

    def dialogs(self):
        return [top for top in self.tops() if top.getRole() in (self.atspi.ROLE_DIALOG, self.atspi.ROLE_ALERT)]

    def showing(self, node):
        return node.getState().contains(self.atspi.STATE_SHOWING)

    def enabled(self, name, role=None):
        return self.find(name, role).getState().contains(self.atspi.STATE_ENABLED)

    def below(self, node):
        for index in range(node.childCount):
            child = node.getChildAtIndex(index)
            if child is not None and self.showing(child):
                yield child
                if child.getRole() not in self.leaves:
                    yield from self.below(child)

    def name(self, node):
        """A list is called by its label: its own name is the text in it."""
        if node.getRole() == self.atspi.ROLE_COMBO_BOX or not node.name:
            for relation in node.getRelationSet():
                if relation.getRelationType() == self.atspi.RELATION_LABELLED_BY:
                    return relation.getTarget(0).name
        return node.name

    def role(self, name):
        return getattr(self.atspi, "ROLE_" + name)

    def look(self, name, role=None, among=None):
        """A name that stands twice is told where: "Scenario/Load" is the one on the right, "Page/Load" the other."""
        side, _, name = name.rpartition("/") if name.startswith(("Scenario/", "Page/")) else ("", "", name)
        for top in among if among is not None else [self.frame()]:
            for node in self.below(top):
                if (role is None or node.getRole() == self.role(role)) and self.name(node) == name and \
                        node.getRole() != self.atspi.ROLE_LABEL and self.is_on(side, node):
                    return node
        return None

    def is_on(self, side, node):
        if not side:
            return True
        left, top, width, height = self.extents(self.frame())
        x, y, _, _ = self.extents(node)
        is_right = x > left + width * 3 // 4 - 5
        return is_right == (side == "Scenario") and top + height // 8 < y < top + height - 50

    def find(self, name, role=None, among=None):
        node = self.known.get((name, role)) if among is None else None
        if node is None or not self.showing(node):
            node = until(lambda: self.look(name, role, among), f"there is no {name}")
            if among is None:
                self.known[(name, role)] = node
        return node

    def extents(self, node):
        place = node.queryComponent().getExtents(self.atspi.DESKTOP_COORDS)
        return place.x, place.y, place.width, place.height

    def middle(self, node):
        x, y, width, height = self.extents(node)
        return x + width // 2, y + height // 2

    def place(self, name, role=None):
        """Where a user clicks: a field a bit from its left edge."""
        node = self.find(name, role)
        x, y, width, height = self.extents(node)
        return x + min(width // 2, 20), y + height // 2

    def click(self, name, role=None, **how):
        self.user.click(self.place(name, role), **how)

    def press(self, name, among=None):
        """A button, a box or an option; one that is off is no place to click."""
        node = self.find(name, None, among)
        until(lambda: node.getState().contains(self.atspi.STATE_ENABLED), f"{name} stays off")
        self.user.click(self.middle(node))

    def fill(self, name, text, role=None):
        """Two actions: a triple click marks what stands there, then it is typed over."""
        self.click(name, role, times=3)
        self.user.type(text)

    def enter(self, name, text, role="COMBO_BOX"):
        """Two actions: a click into an empty field, then its text."""
        self.click(name, role)
        self.user.type(text)

    def tab_to(self, name, role=None):
        """An action for every Tab."""
        node = self.find(name, role)
        for _ in range(80):
            if self.has_focus(node):
                return
            self.user.key("Tab")
            time.sleep(0.05)
        raise Failed(f"Tab does not lead to {name}")

    def has_focus(self, node):
        focused = self.atspi.STATE_FOCUSED
        return node.getState().contains(focused) or any(
            child.getState().contains(focused) for child in (node.getChildAtIndex(i) for i in range(min(node.childCount, 3)))
            if child is not None)

    def choose(self, name, entry):
        """Two actions, as most users do: the arrow of a list, then its entry."""
        node = self.find(name, "COMBO_BOX")
        x, y, width, height = self.extents(node)
        self.user.click((x + width - 8, y + height // 2))
        row = until(lambda: self.entry(node, entry), f"{name} offers no {entry} in sight")
        time.sleep(0.5)  # a second click at once would be a double-click
        left, top, _, tall = self.extents(row)  # which may be wider than its list
        self.user.click((left + 15, top + tall // 2))

    def entry(self, combo, text):
        for child in self.below_all(combo):
            if child.getRole() == self.atspi.ROLE_LIST_ITEM and child.name == text and self.showing(child):
                return child
        return None

    def below_all(self, node):
        for index in range(min(node.childCount, 60)):
            child = node.getChildAtIndex(index)
            if child is not None:
                yield child
                yield from self.below_all(child)

    def text(self, name, role=None):
        node = self.find(name, role)
        if node.getRole() == self.atspi.ROLE_COMBO_BOX:
            return node.name
        return node.queryText().getText(0, -1)

    def shows(self, name, text, role=None, patience=PATIENCE):
        until(lambda: self.text(name, role) == text, f"{name} does not show {text!r}", patience)

    def labels(self):
        return [node.name for top in self.tops() for node in self.below(top) if node.getRole() == self.atspi.ROLE_LABEL]

    def cell(self, row, column):
        """Its place; a cell below the last row in sight is scrolled to, at an action for each turn of the wheel."""
        table = next(node for node in self.below(self.frame()) if node.getRole() == self.atspi.ROLE_TABLE)
        left, top, _, height = self.extents(table)
        for _ in range(20):
            x, y = self.middle(table.queryTable().getAccessibleAt(row, column))
            if y < top + height - 8:
                return x, y
            self.user.wheel((left + 100, top + height // 2))
        raise Failed(f"row {row} does not come into sight")

    def rows(self, name):
        return [self.find(name).getChildAtIndex(index) for index in range(self.find(name).childCount)]

    def box(self):
        """What the box or dialog on the screen says; empty where there is none."""
        return "\n".join(node.name for top in self.dialogs() for node in self.below(top)
                         if node.getRole() == self.atspi.ROLE_LABEL and node.name)

    def wait_for_box(self, words):
        return until(lambda: words in self.box() and self.box(), f"no box says {words!r}")

    def close_box(self):
        """One action: Enter, the default button."""
        self.user.key("Return")
        until(lambda: not self.dialogs(), "the box stays")
        time.sleep(0.2)

    def file_dialog(self):
        return [top for top in self.dialogs() if self.look("File name:", "TEXT", [top])]

    def choose_file(self, path):
        """Two actions: the name is typed into the dialog that has the focus, then Enter."""
        until(self.file_dialog, "there is no file dialog")
        time.sleep(0.4)
        self.user.type(path)
        self.user.key("Return")
        until(lambda: not self.file_dialog(), "the file dialog stays")
        time.sleep(0.2)
