"""Figures of the bench: alternating runs, medians, and the one form in which a figure is printed.

Ours and the other tool's runs alternate, so that a machine that slows down slows both. A figure is
the median of at least five runs of each. Times are seconds, memory is KiB.
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time
from contextlib import contextmanager
from pathlib import Path

RUNS = 5
PROJECT = Path(__file__).resolve().parent.parent
PROGRAMS = PROJECT / "build" / "release" / "bin"
SHARE = PROJECT / "build" / "release" / "share" / "tavlodeck"
ROOT = Path("Lyrane", "TavloDeck")
FILES = ROOT / "Files"
IN_QUEUE = FILES / "InQueue"
COMPLETED = FILES / "Completed"
EW2_QUEUE = FILES / "eW2Queue"
MEMORY = Path("/dev/shm")  # A file system of its own, and no disk.
MOST_HELD_MILLISECONDS = 50  # The message loop may not be held for longer.


def alternate(*measures, runs=RUNS):
    """Runs the measures in turn, `runs` rounds of them; the results of each, in order."""
    results = [[] for _ in measures]
    for _ in range(runs):
        for measure, result in zip(measures, results):
            result.append(measure())
    return results


def median(values):
    return statistics.median(values)


class Group:
    """The figures of one group, and whether each kept to its limit."""

    def __init__(self, name):
        self.name = name
        self.broken = []

    def figure(self, name, ours, other, unit, against, limit=None, most=None, compared=None,
               tail=None, most_tail=None, worst=None):
        """Prints one figure. `limit` is the highest ratio that passes, `most` the highest value of
        ours; with neither it is a figure to know. `compared` is the part of ours that the ratio is
        of, where that is not all of it; `tail` our 99th percentile and `most_tail` its highest;
        `worst` the highest ratio of a single round, which is to be known."""
        ratio = (ours if compared is None else compared) / other
        full = f"{self.name}.{name}"
        print(
            f"{full} ours={short(ours)} other={short(other)} unit={unit} with={against} "
            f"ratio={ratio:.2f}"
            + ("" if tail is None else f" p99={short(tail)}")
            + ("" if worst is None else f" worst={worst:.2f}"),
            flush=True,
        )
        if limit is not None and ratio > limit:
            self.broken.append(f"{full}: the ratio {ratio:.2f} is above {limit:.2f}")
        if most is not None and ours > most:
            self.broken.append(f"{full}: {short(ours)} {unit} is above {short(most)}")
        if most_tail is not None and tail > most_tail:
            self.broken.append(f"{full}: p99 {short(tail)} {unit} is above {short(most_tail)}")

    def end(self):
        for line in self.broken:
            print(line, file=sys.stderr)
        sys.exit(1 if self.broken else 0)


def short(value):
    """Three digits that count, without an exponent."""
    if value == 0 or abs(value) >= 100:
        return f"{value:.0f}"
    digits = 2
    while abs(value) < 10 ** (2 - digits) and digits < 9:
        digits += 1
    return f"{value:.{digits}f}"


def fields(line):
    """"first=0.1 again=0.2" as numbers by name."""
    return {name: float(value) for name, value in (pair.split("=") for pair in line.split())}


def program(name):
    path = PROGRAMS / name
    if not path.exists():
        sys.exit(f"bench: {path} is not built")
    return str(path)


def output_of(command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False, **options)
    if done.returncode:
        sys.exit(f"bench: {command[0]} ended with {done.returncode}")
    return done.stdout


def seconds_of(command, **options):
    """Wall time of a command from start to end."""
    begin = time.perf_counter()
    done = subprocess.run(command, stdout=subprocess.DEVNULL, check=False, **options)
    if done.returncode:
        sys.exit(f"bench: {command[0]} ended with {done.returncode}")
    return time.perf_counter() - begin


def home_environment(home):
    return {**os.environ, "HOME": str(home)}


def start_once(home):
    """Lets the program make the work folders of a home, as its first start does."""
    home.mkdir(exist_ok=True)
    options = {"env": home_environment(home), "stdout": subprocess.PIPE, "text": True}
    with running([program("bench_start")], **options) as process:
        if not process.stdout.readline().startswith("ready "):
            sys.exit("bench: bench_start did not get ready")


def intake_home(home):
    """Makes a home with drop folders and the conversion libraries."""
    for name in ("InQueue", "eW2Queue", "dS2Queue", "eU2Queue", "FtpQueue", "ImportQueue"):
        (home / FILES / name).mkdir(parents=True)
    for name in ("DssCodec", "MuLawHeader.so"):
        (home / ROOT / name).symlink_to(SHARE / name)
    return home


def intake(what, home, *more, files):
    """The figures of bench_intake, which must have brought in so many files."""
    # The folder that it stands in is a drop folder, too.
    figures = fields(output_of([program("bench_intake"), what, str(home), *more], cwd=home))
    if figures["files"] != files:
        sys.exit(f"bench: {figures['files']:.0f} of {files} files came in")
    return figures


def held(group, runs):
    """The most processor time between two looks of the loop at its events, in all runs."""
    group.figure("held", max(run["held"] for run in runs), MOST_HELD_MILLISECONDS, "ms", "allowed",
                 limit=1.0)


@contextmanager
def scratch(where=PROJECT / "build"):
    """A folder, under build/ as a rule, that goes when it is no longer needed."""
    where.mkdir(exist_ok=True)
    with tempfile.TemporaryDirectory(dir=where, prefix="bench-") as folder:
        yield Path(folder)


@contextmanager
def running(command, **options):
    """A program that is stopped at the end of the block."""
    process = subprocess.Popen(command, **options)
    try:
        yield process
    finally:
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
        if process.stdout:
            process.stdout.close()


def cpu_seconds(pid):
    """Processor time, user and system, that a process has used so far."""
    after_name = Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
    return (int(after_name[11]) + int(after_name[12])) / os.sysconf("SC_CLK_TCK")


def run_seconds(pid):
    """The same for a process whose threads all live, to a microsecond."""
    stats = [path.read_text(encoding="utf-8") for path in tasks(pid, "schedstat")]
    return sum(int(stat.split()[0]) for stat in stats) / 1e9


def wake_ups(pid):
    """How often the living threads of a process have slept and were woken so far."""
    lines = [line for path in tasks(pid, "status")
             for line in path.read_text(encoding="utf-8").splitlines()]
    return sum(int(line.split()[1]) for line in lines
               if line.startswith("voluntary_ctxt_switches:"))


def tasks(pid, file):
    return sorted(Path(f"/proc/{pid}/task").glob(f"*/{file}"))


def pss_kib(pid):
    """Memory of a process, what it shares counted by its share."""
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="utf-8").splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1])
    return sys.exit(f"bench: no figure of memory for process {pid}")
