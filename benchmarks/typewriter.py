"""A keyboard at the virtual screen that is pressed at a moment that is known, and a letter that has
it: what is pressed goes to an editor of another program."""

import ctypes
import subprocess
import time
from contextlib import contextmanager

from figures import running


class Typewriter:
    """Presses keys as a keyboard does, by the display's own test extension."""

    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.test = ctypes.CDLL("libXtst.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.x11.XStringToKeysym.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))

    def press(self, key, down):
        """The moment at which the key went down or up."""
        symbol = self.x11.XStringToKeysym(key.encode())
        code = self.x11.XKeysymToKeycode(self.display, ctypes.c_ulong(symbol))
        moment = time.monotonic()
        self.test.XTestFakeKeyEvent(self.display, code, int(down), ctypes.c_ulong(0))
        self.x11.XFlush(self.display)
        return moment


def title_of_keyboard():
    found = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True, check=False)
    return found.stdout


@contextmanager
def letter(folder):
    """An editor that has the keyboard for as long as the block."""
    path = folder / "letter.txt"
    path.touch()
    with running(["l3afpad", str(path)], stderr=subprocess.DEVNULL) as editor:
        deadline = time.monotonic() + 30
        while "letter" not in title_of_keyboard():
            if time.monotonic() > deadline:
                raise RuntimeError("the editor did not get the keyboard")
            subprocess.run(["xdotool", "search", "--name", "letter", "windowactivate"],
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
            time.sleep(0.1)
        yield editor
