"""A Debian that holds nothing but its base, in a folder: to install packages on, and start programs
in.

It needs root, and a namespace of its own for what it mounts (enter_namespace). What it takes from
the network is kept beside it from one run to the next: the base, and the packages that it got.
"""

import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

RELEASE = "bookworm"
SKIPPED = 77
TOOLS = ["debootstrap", "dpkg-deb", "unshare", "chroot", "mount", "Xvfb", "xprop"]
INSIDE = "--inside"
DEVICES = ["null", "zero", "full", "random", "urandom", "tty"]
# A program of ours in it is this user's.
USER = "typist"
USER_ID = 1000
# A network that gives nothing must not keep the other tests waiting. All of it together takes a minute.
DOWNLOAD_SECONDS = 600
RUNTIME = f"run/user/{USER_ID}"
SEARCH_PATH = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"


def skip(reason):
    print(f"The tests of the package are skipped: {reason}")
    sys.exit(SKIPPED)


def succeeds(*command):
    nowhere = subprocess.DEVNULL
    return subprocess.run(command, stdout=nowhere, stderr=nowhere).returncode == 0


def codename():
    for line in Path("/etc/os-release").read_text(encoding="utf-8").splitlines():
        if line.startswith("VERSION_CODENAME="):
            return line.partition("=")[2].strip('"')
    return "unknown"


def enter_namespace(folder):
    """Starts the script again where its mounts and its processes end with it, and ends with it. Skips
    the tests on a machine that does not allow that."""
    if INSIDE in sys.argv:
        return
    for tool in TOOLS:
        if not shutil.which(tool):
            skip(f"{tool} is not installed")
    if codename() != RELEASE:
        skip(f"packages that are built here are not for {RELEASE}")
    if os.geteuid() != 0:
        skip("they take root, who alone may install packages")
    own = ["unshare", "--mount", "--pid", "--fork", "--kill-child"]
    if not succeeds(*own, "mount", "-t", "tmpfs", "tmpfs", "/mnt"):
        skip("nothing may be mounted here")
    with subprocess.Popen([*own, sys.executable, *sys.argv, INSIDE]) as inside:
        # All that runs in there ends with it, and of milder signals it takes no notice.
        signal.signal(signal.SIGTERM, lambda *_: inside.kill())
        status = inside.wait()
    # Its mounts are gone by now.
    shutil.rmtree(folder / "root", ignore_errors=True)
    sys.exit(status)


class CleanSystem:
    """Made anew with each object, of a base that is kept in `folder`."""

    def __init__(self, folder):
        self.folder = folder
        self.log = folder / "system.log"
        self.log.write_text("", encoding="utf-8")
        self.root = folder / "root"
        self._base = folder / "base"
        self._archives = folder / "archives"
        self._archives.mkdir(exist_ok=True)
        self._fetch_base()
        # What a run left that was ended has its mounts no longer.
        shutil.rmtree(self.root, ignore_errors=True)
        self._logged("cp", "-a", str(self._base), str(self.root))
        self._mount_all()
        self.run("useradd", "--create-home", "--uid", str(USER_ID), USER)
        self.home = self.root / "home" / USER
        runtime = self.root / RUNTIME
        runtime.mkdir(mode=0o700, parents=True)
        os.chown(runtime, USER_ID, USER_ID)

    def run(self, *command, may_fail=False):
        """As root. Gives what it printed; of a failure nothing, or an error that tells what it said."""
        done = subprocess.run(
            ["chroot", str(self.root), *command],
            env=self._environment("/root"), text=True, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
        )
        with self.log.open("a", encoding="utf-8") as log:
            log.write(f"$ {' '.join(command)}\n{done.stdout}")
        if done.returncode == 0:
            return done.stdout
        if may_fail:
            return None
        raise AssertionError(f"{' '.join(command)} failed:\n{done.stdout}")

    def start(self, program, home, variables, errors):
        """As the user. `errors` gets what it says."""
        return subprocess.Popen(
            ["chroot", f"--userspec={USER_ID}:{USER_ID}", "--groups=", str(self.root), program],
            env={**self._environment(home), "XDG_RUNTIME_DIR": f"/{RUNTIME}", **variables},
            stdin=subprocess.DEVNULL, stdout=errors, stderr=errors,
        )

    def install(self, package):
        """With what it depends on, and nothing that it only recommends."""
        shutil.copy(package, self.root / "root")
        wanted = ["install", "-y", "-q", "--no-install-recommends", f"/root/{Path(package).name}"]
        # What cannot be met is a fault of the package; what cannot be downloaded is the network's.
        self.run("apt-get", "--simulate", *wanted)
        limit = ["timeout", str(DOWNLOAD_SECONDS)]
        download = [*limit, "apt-get", "--download-only", *wanted]
        if self.run(*download, may_fail=True) is None:
            # The lists of packages may be old.
            self.run(*limit, "apt-get", "-q", "update", may_fail=True)
            if self.run(*download, may_fail=True) is None:
                skip("the packages that it depends on could not be downloaded")
        self.run("apt-get", *wanted)

    def belongs_to_user(self, path):
        for each in [path, *path.rglob("*")]:
            os.lchown(each, USER_ID, USER_ID)

    def _fetch_base(self):
        if self._base.is_dir():
            return
        half = self.folder / "base.new"
        shutil.rmtree(half, ignore_errors=True)
        limit = ["timeout", str(DOWNLOAD_SECONDS)]
        if not self._logged(*limit, "debootstrap", "--variant=minbase", RELEASE, str(half)):
            print("".join(self.log.read_text(encoding="utf-8").splitlines(keepends=True)[-20:]))
            skip("the base of the system could not be downloaded")
        # What is made of it is thrown away soon, so nothing needs to survive a power cut.
        (half / "etc/dpkg/dpkg.cfg.d/quick").write_text("force-unsafe-io\n", encoding="utf-8")
        half.rename(self._base)

    def _mount_all(self):
        self._mount("-t", "proc", "proc", place="proc")
        self._mount("--bind", "-o", "ro", "/sys", place="sys")
        self._mount("-t", "tmpfs", "-o", "mode=755", "tmpfs", place="dev")
        for device in DEVICES:
            (self.root / "dev" / device).touch()
            self._mount("--bind", f"/dev/{device}", place=f"dev/{device}")
        self._mount("--bind", str(self._archives), place="var/cache/apt/archives")
        shutil.copy("/etc/resolv.conf", self.root / "etc/resolv.conf")

    def share(self, path, place):
        """Lets it have a file or folder of this machine."""
        if Path(path).is_dir():
            (self.root / place).mkdir(parents=True, exist_ok=True)
        else:
            (self.root / place).parent.mkdir(parents=True, exist_ok=True)
            (self.root / place).touch()
        self._mount("--bind", str(path), place=place)

    def _mount(self, *what, place):
        (self.root / place).parent.mkdir(parents=True, exist_ok=True)
        if not self._logged("mount", *what, str(self.root / place)):
            raise AssertionError(f"{place} could not be mounted")

    def _logged(self, *command):
        with self.log.open("a", encoding="utf-8") as log:
            log.write(f"$ {' '.join(command)}\n")
            log.flush()
            done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        return done.returncode == 0

    @staticmethod
    def _environment(home):
        kept = {name: os.environ[name] for name in os.environ if name.lower().endswith("_proxy")}
        return {**kept, "HOME": home, "PATH": SEARCH_PATH, "LANG": "C.UTF-8",
                "DEBIAN_FRONTEND": "noninteractive"}
