"""The installed deck, started by the user of a clean system, seen at the windows of this screen."""

import os
import re
import signal
import subprocess
import time

PROGRAM = "/usr/bin/tavlodeck"
PATIENCE = 120  # Seconds that any news may take on a busy machine.
SOUND = "run/desk/sound"
DECK = ("Tavlo Deck", "NORMAL")


def comes(look):
    """Waits until `look` gives something, which is the result; what it gave at last otherwise."""
    end = time.monotonic() + PATIENCE
    while not (seen := look()) and time.monotonic() < end:
        time.sleep(0.05)
    return seen


def property_of(window, *names):
    """Nothing of a window that has gone meanwhile."""
    which = ["-root"] if window is None else ["-id", window]
    done = subprocess.run(["xprop", *which, *names], text=True, stderr=subprocess.DEVNULL,
                          stdout=subprocess.PIPE)
    return done.stdout if done.returncode == 0 else ""


def windows():
    """Title and kind of each window that the screen's manager shows."""
    seen = []
    for window in re.findall(r"0x[0-9a-f]+", property_of(None, "_NET_CLIENT_LIST")):
        told = property_of(window, "_NET_WM_NAME", "_NET_WM_WINDOW_TYPE")
        title = re.search(r'_NET_WM_NAME\(UTF8_STRING\) = "(.*)"', told)
        kinds = re.findall(r"_NET_WM_WINDOW_TYPE_([A-Z]+)", told)
        # What it would rather be stands first.
        seen.append((title.group(1) if title else "", kinds[0] if kinds else ""))
    return seen


class StartedDeck:
    """Ended by the end of the session when it is left as a context."""

    def __init__(self, system, home):
        self._system = system
        self._home = home
        self._errors = (system.folder / "deck.log").open("w+", encoding="utf-8")
        self._process = None

    def __enter__(self):
        variables = {"DISPLAY": os.environ["DISPLAY"], "PULSE_SERVER": f"unix:/{SOUND}"}
        self._process = self._system.start(PROGRAM, self._home, variables, self._errors)
        self.must(lambda: DECK in windows(), "the window of the deck shows")
        return self

    def __exit__(self, kind, *_):
        if kind is not None:
            self._process.kill()
            self._process.wait()
            return
        self._process.send_signal(signal.SIGTERM)
        status = self._process.wait(PATIENCE)
        assert status == 0, f"the deck ended with {status} and said:\n{self._said()}"

    def must(self, look, what):
        """Waits for what the deck brings about while it runs."""
        def news():
            if look():
                return "so"
            ended = self._process.poll()
            return None if ended is None else f"it ended with {ended}"

        state = comes(news) or "it runs"
        if state == "so":
            return
        seen = f"{state}, shows {windows()} and said:\n{self._said()}"
        raise AssertionError(f"not so: {what}; {seen}")

    def has_loaded(self, library):
        """Of the name of its file, what stands before the smaller numbers of its version."""
        maps = self._system.root / "proc" / str(self._process.pid) / "maps"
        return f"/{library}" in maps.read_text()

    def _said(self):
        self._errors.seek(0)
        return self._errors.read()
