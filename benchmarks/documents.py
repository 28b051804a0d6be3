"""Documents for the bench, made by the thousand."""

import math
import random
import struct

AUTHORS = ["Brown", "Okafor", "Lindqvist", "Haddad", "Marlow", "Nakamura", "Petersen", "Adeyemi"]
SUBJECTS = ["cardio", "discharge", "intake", "followup", "deposition", "tenancy", "round", ""]
RATE = 8000


def composed_name(number, dice):
    """The name of the `number`-th document; no two of one folder are equal."""
    author = number % len(AUTHORS)
    saved = dice.randrange(1, 200) if dice.random() < 0.1 else 0
    priority = "P" if dice.random() < 0.15 else "0"
    return (
        f"{dice.randint(1, 25):04} 0 {AUTHORS[author]} {1000 + number} "
        f"{dice.randint(1, 12)} {dice.randint(1, 28)} 2004 "
        f"{dice.randint(0, 23)} {dice.randint(0, 59)} {dice.randint(0, 59)} "
        f"{dice.randint(1, 99)} 0 {dice.randint(0, 99)} {dice.choice(SUBJECTS)} "
        f"{saved} {priority}_.wav"
    )


def wave_header(samples, bits):
    """The 44 bytes in front of the samples of a one-channel wave."""
    size = samples * bits // 8
    return struct.pack(
        "<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + size, b"WAVE", b"fmt ", 16, 1, 1,
        RATE, RATE * bits // 8, bits // 8, bits, b"data", size,
    )


def make_queue(folder, count, seed=1):
    """Fills a folder with `count` small documents of silence, the same ones every time."""
    dice = random.Random(seed)
    folder.mkdir(parents=True)
    for number in range(count):
        samples = 2 * dice.randint(200, 2000)
        content = wave_header(samples, 8) + b"\x80" * samples
        (folder / composed_name(number, dice)).write_bytes(content)


def make_dropped(folder, count, ending):
    """Fills a folder with documents of silence as they wait for their retrieval."""
    make_queue(folder / "made", count)
    for path in (folder / "made").iterdir():
        path.rename(folder / (path.stem + ending))
    (folder / "made").rmdir()


def make_noise(folder, count, size, ending):
    """Fills a folder with files of real bytes, no two of them equal."""
    dice = random.Random(1)
    for number in range(count):
        (folder / f"{number}{ending}").write_bytes(dice.randbytes(size))


def make_long(path, seconds):
    """A document of any length that takes no room on the disk: its silence is a hole."""
    samples = seconds * RATE
    with open(path, "wb") as file:
        file.write(wave_header(samples, 16))
        file.truncate(44 + 2 * samples)


def make_tone(path, seconds):
    """A document that sounds from its first sample on."""
    samples = seconds * RATE
    tone = (int(12000 * math.cos(2 * math.pi * 440 * n / RATE)) for n in range(samples))
    path.write_bytes(wave_header(samples, 16) + struct.pack(f"<{samples}h", *tone))


def make_hum(path, seconds):
    """A hum whose pitch glides up and down, without a sharp place anywhere."""
    samples = seconds * RATE
    values, phase = [], 0.0
    for n in range(samples):
        phase += 2 * math.pi * (160 + 30 * math.sin(2 * math.pi * 0.3 * n / RATE)) / RATE
        values.append(int(12000 * math.cos(phase)))
    path.write_bytes(wave_header(samples, 16) + struct.pack(f"<{samples}h", *values))
