"""What the tests run on: virtual boards, made and driven by the vxboard of the build tree under test.

VXCLI_BUILD names the build tree (default: build/dev), VXBOARD_VIEW what makes the boards' views. What cannot be
tested in a tree of scripts/qemu-tree is marked @native.

    def test_something(board):
        unit = board("ux3361")                       # a fresh board of this profile
        unit.trace()                                 # from here on, trace
        assert unit.run("vxcli", "bob", "init") == (0, "...", "")
        assert unit.unit("var/bob_chip_type").read_text() == "2\n"
        writes = [line for line in unit.trace() if line.kind == "i2c"]
"""

import os
import shutil
import signal
import subprocess
from decimal import Decimal
from pathlib import Path
from typing import NamedTuple

import pytest

ROOT = Path(__file__).resolve().parent.parent
BUILD = (ROOT / os.environ.get("VXCLI_BUILD", "build/dev")).resolve()
VXBOARD = BUILD / "bin" / "vxboard"
# Where the programs and libraries themselves are: in a tree of scripts/qemu-tree another architecture's.
GUEST = BUILD / "lib" / "guest" / ".vxboard"
OBJECTS = GUEST if GUEST.exists() else BUILD
OPTIONS = (BUILD / "CMakeCache.txt").read_text() if VXBOARD.exists() else ""
SANITIZED = "VXCLI_SANITIZE:BOOL=ON" in OPTIONS
HARDENED = "VXCLI_HARDEN:BOOL=ON" in OPTIONS
native = pytest.mark.skipif(GUEST.exists(), reason="needs vxcli or the library as the host's own program")
TORTURE = os.environ.get("VXCLI_TORTURE") == "1"  # everything, also what takes long: make torture


class Result(NamedTuple):
    status: int
    out: str  # one character a byte
    err: str


class TraceLine(NamedTuple):
    time: int  # microseconds
    pid: int
    kind: str  # i2c, mem, call, wait, run
    fields: list  # the words after the kind


def execute(*command, stdin="", timeout=120):
    """Runs a command on the host, in a session of its own; after `timeout` seconds all of it is killed."""
    process = subprocess.Popen([str(word) for word in command], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, start_new_session=True)
    try:
        out, err = process.communicate(stdin.encode("latin-1"), timeout)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        out, err = process.communicate()
        pytest.fail(f"no end after {timeout} s: {command}\n{out!r}\n{err!r}")
    return Result(process.returncode, out.decode("latin-1"), err.decode("latin-1"))


class Board:
    """A virtual board in the directory `path`; one that is there already if there is no profile."""

    def __init__(self, profile, path):
        self.path = path
        assert profile is None or execute(VXBOARD, "new", profile, path) == (0, "", "")

    def run(self, *command, wait=False, stdin="", stderr=""):
        """Runs a command on the board. Sleeping takes no time, unless `wait`. What the command says on standard
        error must be `stderr` (None: anything)."""
        result = execute(VXBOARD, "run", *([] if wait else ["--no-wait"]), self.path, *command, stdin=stdin)
        assert stderr is None or result.err == stderr, result
        return result

    def sh(self, script, **how):
        """Runs a shell script on the board, otherwise as run()."""
        return self.run("sh", "-c", script, **how)

    def unit(self, name):
        """The host's path of a file of the unit, such as unit("var/bob_chip_type")."""
        return self.path / "unit" / name

    def trace(self):
        """Starts the trace, if there is none; returns what it holds and empties it."""
        trace = self.path / "trace"
        lines = []
        if trace.exists():
            for line in trace.read_text().splitlines():
                time, pid, kind, *fields = line.split()
                lines.append(TraceLine(int(Decimal(time) * 1_000_000), int(pid), kind, fields))
        trace.write_text("")
        return lines

    def fault(self, rule):
        """Arms a fault, such as "libvx_ponApi_i2cRead dev=0x51 reg=0x80 times=2"."""
        with open(self.path / "faults", "a") as faults:
            print(rule, file=faults)

    def faults(self):
        """The rules that are still armed."""
        faults = self.path / "faults"
        return faults.read_text().splitlines() if faults.exists() else []

    def copy(self, path):
        """The same board as it is now, in the directory `path`."""
        shutil.rmtree(path, ignore_errors=True)
        subprocess.run(["cp", "-a", self.path, path], check=True)
        return Board(None, path)

    def power_cycle(self):
        assert execute(VXBOARD, "power-cycle", self.path) == (0, "", "")


@pytest.fixture(scope="session")
def environment(tmp_path_factory):
    """What all commands on boards need in their environment."""
    if not VXBOARD.exists():
        pytest.fail(f"no {VXBOARD}: build first (make build), or set VXCLI_BUILD to a build tree")
    probe = Board("ux3361", tmp_path_factory.mktemp("probe") / "board")
    # vxboard finds out what can make a view: once, instead of at every run.
    os.environ["VXBOARD_VIEW"] = probe.run("printenv", "VXBOARD_VIEW").out.strip()
    if SANITIZED:
        # The clock is preloaded in front of the sanitizer's runtime, which is inside the programs. The leak check
        # attaches to the process, which a process under proot does not allow.
        leaks = os.environ["VXBOARD_VIEW"] != "proot"
        os.environ["ASAN_OPTIONS"] = f"verify_asan_link_order=0:detect_leaks={int(leaks)}:exitcode=99"
        os.environ["UBSAN_OPTIONS"] = "print_stacktrace=1:exitcode=99"


@pytest.fixture
def board(environment, tmp_path):
    """Makes fresh boards: board("ux3361")."""
    made = 0

    def make(profile):
        nonlocal made
        made += 1
        return Board(profile, tmp_path / f"board{made}")

    return make
