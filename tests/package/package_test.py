#!/usr/bin/env python3
"""Takes the Debian package through its life on a system that holds nothing but Debian's base: it is
installed, started, upgraded to a newer build and removed; the user's settings and documents stay.

    package_test.py FOLDER PACKAGE NEWER RECORDER READER_DATA

FOLDER keeps what was downloaded from one run to the next, and the log of the last run. RECORDER is
the program dss_recorder of the build; READER_DATA has settings of older releases in Access format.
The screen and the sound card are those of tools/virtual_desk. The exit status is 77 on a machine
that does not allow such a system, and then it says why.
"""

import hashlib
import io
import math
import os
import re
import shutil
import sqlite3
import struct
import subprocess
import sys
import tarfile
import wave
from pathlib import Path

# The sources stay as they are.
sys.dont_write_bytecode = True
from clean_system import USER, CleanSystem, enter_namespace  # noqa: E402
from started_deck import SOUND, StartedDeck, windows  # noqa: E402

ICON_SIZES = [16, 22, 24, 32, 48, 64, 128, 256, 512]
# Files that a person or the system looks for, each where it is looked for.
LOOKED_FOR = [
    "usr/bin/tavlodeck",
    "usr/lib/udev/rules.d/70-tavlo-deck-pedals.rules",
    "usr/libexec/tavlodeck/read_access_database",
    "usr/share/applications/tavlodeck.desktop",
    "usr/share/doc/tavlodeck/changelog.Debian.gz",
    "usr/share/doc/tavlodeck/changelog.gz",
    "usr/share/doc/tavlodeck/copyright",
    "usr/share/doc/tavlodeck/guide/index.html",
    "usr/share/icons/hicolor/scalable/apps/tavlodeck.svg",
    "usr/share/man/man1/tavlodeck.1.gz",
    "usr/share/metainfo/tavlodeck.metainfo.xml",
    "usr/share/tavlodeck/Guide/index.html",
]
# What it loads while it runs, which no tool finds in the program.
LOADED_LATE = ["libavcodec.so.59", "libavformat.so.59", "libhidapi-hidraw.so.0", "libqxcb.so",
               "PedalWatch.so"]
ROOT = "Lyrane/TavloDeck"
SETTINGS = f"{ROOT}/Lyrane_Tavlo_Deck.mdb"
STEM = "0021 0 Petersen 310 3 10 2004 9 {minute} 0 6 0 8 referral 0 0_"
RATE = 8000
SECONDS = 3


def field_of(package, field):
    return subprocess.check_output(["dpkg-deb", "--field", package, field], text=True).strip()


def files_of(package):
    """All that it holds but folders, as paths below the root."""
    archive = io.BytesIO(subprocess.check_output(["dpkg-deb", "--fsys-tarfile", package]))
    with tarfile.open(fileobj=archive) as files:
        return [each.name.removeprefix("./") for each in files if not each.isdir()]


def tone():
    """Samples of 16 bits, in which a codec of speech finds something."""
    steps = range(RATE * SECONDS)
    return b"".join(struct.pack("<h", round(9000 * math.sin(step * 0.35))) for step in steps)


def seconds_of(path):
    """Of a wave of any coding."""
    chunks = {}
    with path.open("rb") as file:
        assert file.read(12)[8:] == b"WAVE", f"{path.name} is no wave"
        while head := file.read(8):
            name, size = struct.unpack("<4sI", head)
            chunks[name] = file.read(size + size % 2)[:size]
    bytes_a_second = struct.unpack_from("<I", chunks[b"fmt "], 8)[0]
    return len(chunks[b"data"]) / bytes_a_second


def all_below(folder):
    """Every file and link with what it holds."""
    found = {}
    for path in folder.rglob("*"):
        name = str(path.relative_to(folder))
        if path.is_symlink():
            found[name] = os.readlink(path)
        elif path.is_file():
            found[name] = hashlib.sha256(path.read_bytes()).hexdigest()
    return found


def sound_clients():
    return subprocess.check_output(["pactl", "list", "clients"], text=True)


def settings_of(home):
    with sqlite3.connect(home / SETTINGS) as database:
        database.row_factory = sqlite3.Row
        row = dict(database.execute("SELECT * FROM GeneralSettings").fetchone())
        row["Revision"] = database.execute("SELECT Revision FROM RevisionInfo").fetchone()[0]
    database.close()
    return row


class Life:
    """The chapters stand in the order in which they happen, and each goes on where the last one
    ended."""

    def __init__(self, folder, package, newer, recorder, reader_data):
        self.package, self.newer, self.recorder = package, newer, recorder
        self.reader_data = Path(reader_data)
        self.version = field_of(package, "Version")
        self.files = files_of(package)
        self.system = CleanSystem(folder)
        self.home = self.system.home
        self.documents = {}
        sound_server = os.environ["PULSE_SERVER"].removeprefix("unix:")
        self.system.share(sound_server, SOUND)
        self.system.share("/tmp/.X11-unix", "tmp/.X11-unix")

    def deck(self, home=f"/home/{USER}"):
        return StartedDeck(self.system, home)

    def installed_version(self):
        return self.system.run("dpkg-query", "-W", "-f", "${Version}", "tavlodeck")

    def is_installed_whole(self):
        self.system.install(self.package)
        assert self.installed_version() == self.version
        root = self.system.root
        entry = (root / "usr/share/applications/tavlodeck.desktop").read_text(encoding="utf-8")
        opened = re.findall(r"^Exec=.* /(usr/\S+)$", entry, re.MULTILINE)
        assert opened, "no action of the desktop entry opens the guide"
        wanted = [*LOOKED_FOR, *self.files, *opened]
        missing = [name for name in wanted if not os.path.lexists(root / name)]
        assert not missing, f"missing: {missing}"
        for size in ICON_SIZES:
            icon = root / f"usr/share/icons/hicolor/{size}x{size}/apps/tavlodeck.png"
            assert struct.unpack(">II", icon.read_bytes()[16:24]) == (size, size), icon

    def lacks_no_library(self):
        for name in self.files:
            path = self.system.root / name
            if path.is_symlink():
                assert self.system.run("readlink", "-e", f"/{name}"), f"{name} leads nowhere"
            elif path.read_bytes()[:4] == b"\x7fELF":
                libraries = self.system.run("ldd", f"/{name}")
                assert "not found" not in libraries, f"{name} lacks libraries:\n{libraries}"

    def starts_for_the_first_time(self):
        with self.deck() as deck:
            deck.must((self.home / SETTINGS).is_file, "the work folder is made")
            deck.must((self.home / ROOT / "Files/eW2Queue").is_dir, "the drop folders are made")
            for library in LOADED_LATE:
                deck.must(lambda: deck.has_loaded(library), f"{library} is loaded")
            deck.must(lambda: '"tavlodeck"' in sound_clients(), "it finds the sound card")
            assert ("Tavlo Deck - Sound Card", "DIALOG") not in windows(), "it can not use it"
        for folder, least in [("Prompts", 20), ("Fascia", 8)]:
            assert len(list((self.home / ROOT / folder).iterdir())) >= least, folder
        for name in ["MuLawHeader.so", *(f"DssCodec/DssCodec{r}.so" for r in (8, 11, 12, 16, 22, 44))]:
            self.system.run("readlink", "-e", f"/home/{USER}/{ROOT}/{name}")

    def takes_documents_of_all_kinds_in(self):
        files = self.home / ROOT / "Files"
        for minute, (folder, ending) in enumerate([("eW2Queue", "eW2"), ("eU2Queue", "eU2"),
                                                   ("dS2Queue", "dS2")]):
            path = files / folder / f"{STEM.format(minute=minute)}.{ending}"
            self.make_dictation(path)
            self.system.belongs_to_user(path)
            self.documents[path] = files / "InQueue" / f"{STEM.format(minute=minute)}.wav"
        with self.deck() as deck:
            for source, document in self.documents.items():
                deck.must(lambda: document.is_file() and not source.exists(),
                          f"{source.name} becomes a document of the Queue")
        for document in self.documents.values():
            length = seconds_of(document)
            assert abs(length - SECONDS) < 0.1, f"{document.name} is {length} s long"

    def make_dictation(self, path):
        if path.suffix == ".eW2":
            with wave.open(str(path), "wb") as sound:
                sound.setparams((1, 2, RATE, 0, "NONE", ""))
                sound.writeframes(tone())
        elif path.suffix == ".eU2":
            path.write_bytes(b"\x90\x10" * (RATE * SECONDS // 2))
        else:
            subprocess.run([self.recorder, path], input=tone(), check=True)

    def keeps_settings_and_documents_in_an_upgrade(self):
        with sqlite3.connect(self.home / SETTINGS) as database:
            # The typist's own, in a database as an older build leaves it: it lacks a setting.
            database.execute(
                "UPDATE GeneralSettings SET AutoBackspace = '7', SubjectHeading = 'Patient'")
            database.execute("ALTER TABLE GeneralSettings DROP COLUMN PromptVolume")
            database.execute("UPDATE RevisionInfo SET Revision = '0.0.1'")
        database.close()
        (self.home / ROOT / "Prompts/Save.wav").write_bytes(b"a recording of the typist's own")
        before = all_below(self.home)
        self.system.install(self.newer)
        assert self.installed_version() == field_of(self.newer, "Version") != self.version
        assert all_below(self.home) == before, "the upgrade itself touches the home folder"
        with self.deck():
            pass
        settings = settings_of(self.home)
        expected = {"AutoBackspace": "7", "SubjectHeading": "Patient", "PromptVolume": "20000",
                    "Revision": self.version.partition("-")[0]}
        found = {name: settings.get(name) for name in expected}
        assert found == expected, f"{found} instead of {expected}"
        after = all_below(self.home)
        changed = [name for name in before if after.get(name) != before[name]]
        assert changed == [SETTINGS], f"a start after the upgrade changed {changed}"

    def takes_a_folder_of_an_older_release_over(self):
        home = self.system.root / "home" / USER / "moved"
        (home / ROOT / "Files/InQueue").mkdir(parents=True)
        shutil.copy(self.reader_data / "old_full.mdb", home / SETTINGS)
        document = home / ROOT / "Files/InQueue" / f"{STEM.format(minute=0)}.wav"
        shutil.copy(next(iter(self.documents.values())), document)
        self.system.belongs_to_user(home)
        with self.deck(f"/home/{USER}/moved") as deck:
            deck.must((home / SETTINGS).with_suffix(".md1").is_file, "the old settings are kept aside")
        assert settings_of(home)["AutoBackspace"] == "17"
        assert seconds_of(document) == SECONDS
        shutil.rmtree(home)

    def is_removed_and_leaves_the_user_everything(self):
        before = all_below(self.home)
        self.system.run("apt-get", "remove", "-y", "-q", "tavlodeck")
        left = [name for name in self.files if os.path.lexists(self.system.root / name)]
        assert not left, f"left behind: {left}"
        assert all_below(self.home) == before, "the removal touches the home folder"
        for document in self.documents.values():
            assert document.is_file(), document


CHAPTERS = [
    Life.is_installed_whole,
    Life.lacks_no_library,
    Life.starts_for_the_first_time,
    Life.takes_documents_of_all_kinds_in,
    Life.keeps_settings_and_documents_in_an_upgrade,
    Life.takes_a_folder_of_an_older_release_over,
    Life.is_removed_and_leaves_the_user_everything,
]


def main():
    if len(sys.argv) < 6:
        print(__doc__)
        sys.exit(2)
    folder = Path(sys.argv[1]).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    enter_namespace(folder)
    life = Life(folder, *sys.argv[2:6])
    for chapter in CHAPTERS:
        name = chapter.__name__.replace("_", " ")
        try:
            chapter(life)
        except AssertionError as fault:
            sys.exit(f"The package {name}: FAILED\n{fault}\nThe system's log is {life.system.log}")
        print(f"The package {name}", flush=True)


if __name__ == "__main__":
    main()
