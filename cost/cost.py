#!/usr/bin/env python3
"""What vxcli costs, as one table: start-up, bus work, size, growth. All in one run, so that the ratios do not depend on
the machine; instructions are callgrind's, so that they do not depend on its load either. Everything runs in a board's
view, with vxcli's own RUNPATH and without preloads, as on a unit.

    cost/cost.py [BUILD-TREE]      default: build/release. A missed target is marked; it is not an error.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
BUILD = Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release").resolve()
RUNS = 300
WRITE_BITS, READ_BITS = 1 + 9 + 9 + 1, 1 + 9 + 9 + 1 + 9 + 1  # besides 9 for each byte, see docs/board-directory.md
MODES = {"listing": "vxcli", "sys model": "vxcli sys model"}


def out(*command):
    return subprocess.run([str(word) for word in command], check=True, text=True, stdout=subprocess.PIPE).stdout


def row(what, value, target="", met=None):
    print(f"  {what:<44} {value:>30}   {target:<24} {'' if met is None else 'met' if met else 'MISSED'}".rstrip(),
          flush=True)


class Board:
    def __init__(self, path, profile="ux3361"):
        self.path = path
        out(BUILD / "bin/vxboard", "new", profile, path)

    def run(self, *command, wait=True):
        how = ["env", "-u", "LD_PRELOAD", "-u", "LD_LIBRARY_PATH"] if wait else []
        return out(BUILD / "bin/vxboard", "run", *([] if wait else ["--no-wait"]), self.path, *how, *command)

    def instructions(self, command, wait=True):
        """What callgrind counts; the command's own status does not matter."""
        callgrind = "valgrind --tool=callgrind --callgrind-out-file=/dev/null"
        return int(re.search(r"Collected : (\d+)", self.run("sh", "-c", f"{callgrind} {command} 2>&1", wait=wait))[1])

    def measure(self, command, runs=RUNS):
        time, memory = self.run("/tmp/bin/measure", runs, *command.split()).split()
        return int(time) / 1e9, int(memory)

    def traced(self, command):
        """Waits in seconds, transfers, bytes and bits on the bus, of a run in which waiting takes no time."""
        (self.path / "trace").write_text("")
        self.run(*command.split(), wait=False)
        waits = transfers = data = bits = 0
        for line in (self.path / "trace").read_text().splitlines():
            _, _, kind, *words = line.split()
            if kind == "wait":
                waits += int(words[0]) / 1e6
            elif kind == "i2c":
                transfers, data = transfers + 1, data + int(words[4])
                bits += (WRITE_BITS if words[1] == "write" else READ_BITS) + 9 * int(words[4])
        (self.path / "trace").unlink()
        return waits, transfers, data, bits


def compile_helpers(board):
    """measure, an empty program, and one that is linked as vxcli is and loads the same libraries in the same order."""
    place = board.path / "unit/tmp/bin"
    place.mkdir()
    (place.parent / "lib").symlink_to("/.vxboard/lib")
    (place / "empty.c").write_text("int main(void) { return 0; }\n")
    out("cc", "-Os", "-static", Path(__file__).with_name("measure.c"), "-o", place / "measure")
    out("cc", "-Os", place / "empty.c", "-o", place / "empty")
    rule = (BUILD / "build.ninja").read_text().split("build bin/vxcli:")[1]
    flags = [word for name in ("FLAGS", "LINK_FLAGS")
             for word in re.search(rf"^  {name} = (.*)$", rule, re.M)[1].replace("$$", "$").split()]
    needed = re.findall(r"NEEDED.*\[(.*)\]", out("readelf", "-dW", BUILD / "bin/vxcli"))
    out("cc", *flags, place / "empty.c", "-o", place / "empty-linked", "-Wl,-rpath,$ORIGIN/../lib", f"-L{BUILD}/lib",
        "-Wl,--no-as-needed", *(f"-l:{name}" for name in needed))
    return needed


def start_up(board):
    needed = compile_helpers(board)
    flags = re.findall(r"\((?:FLAGS|FLAGS_1)\)\s+(?:Flags: )?(.*)", out("readelf", "-dW", BUILD / "bin/vxcli"))
    print(f"Start-up: vxcli loads {' '.join(needed)}; {' '.join(flags)}")
    same = "empty program, same libraries and flags"
    programs = {"empty program": "/tmp/bin/empty", same: "/tmp/bin/empty-linked",
                "i2cget -V": "i2cget -V", "ethtool --version": "ethtool --version", "busybox true": "busybox true"}
    cost = {name: board.instructions(command) for name, command in {**programs, **MODES}.items()}
    linked = cost[same]
    time, memory = {}, {}
    for name, command in {**programs, **MODES}.items():
        time[name], memory[name] = board.measure(command)
        value = f"{cost[name] / 1000:.1f}k instr {time[name] * 1e6:6.0f} us"
        if name in MODES:
            row("vxcli, " + name, value, "1.15 x same libraries", cost[name] <= 1.15 * linked)
            row("", f"{cost[name] / linked:.3f}, by time {time[name] / time[same]:.3f}")
            for other in ("i2cget -V", "ethtool --version"):
                row("", f"{cost[name] / cost[other]:.3f}", "below " + other, cost[name] < cost[other])
        else:
            row(name, value)
    limit = memory["i2cget -V"] + 512
    row("peak memory, " + same, f"{memory[same]} KiB")
    for name in MODES:
        row(f"peak memory, vxcli, {name}", f"{memory[name]} KiB", f"below {limit} KiB", memory[name] < limit)


def bus_work(board, scratch):
    print("Bus work: bits as docs/board-directory.md counts them; seconds: elapsed, of waits and time on the wire at "
          "400 kHz.\nBest of 3. The model's bus takes no time; in parentheses: as if it took its time")
    board.run("vxcli", "bob", "init", wait=False)
    _, transfers, data, bits = board.traced("vxcli bob get 1 0x51 0x81")
    least = WRITE_BITS + 9 * 2 - 9 + READ_BITS + 9 * 256
    row("bob get, a page", f"{transfers} transfers {data} bytes {bits} bits", f"at most {least} bits", bits <= least)
    select = WRITE_BITS + 9
    for what, reads, length in (("bytes", 256, 1), ("I2C blocks", 8, 32)):
        row(f"i2cset, then i2cdump by {what} (formula)",
            f"{1 + reads} transfers 257 bytes {select + reads * (READ_BITS + 9 * length)} bits")
    for profile in ("ux3320", "ux3320s", "ux3361", "gn25l95", "gn28l95"):
        counted = Board(scratch / profile, profile)
        timed = [Board(scratch / f"{profile}-{i}", profile) for i in range(3)]
        for fresh in timed:
            shutil.copy(board.path / "unit/tmp/bin/measure", fresh.path / "unit/tmp/measure")
        for command in ("init", "save", "restore"):
            waits, _, _, bits = counted.traced("vxcli bob " + command)
            wire = bits / 400e3
            times = (fresh.run("/tmp/measure", 1, "vxcli", "bob", command) for fresh in timed)
            elapsed = min(int(time.split()[0]) for time in times) / 1e9
            ratio, real = elapsed / (waits + wire), (elapsed + wire) / (waits + wire)
            row(f"bob {command}, {profile}", f"{elapsed:.3f} of {waits + wire:.3f}: {ratio:.3f} ({real:.3f})",
                "at most 1.03", ratio <= 1.03)


def size():
    print("Size: allocated sections, stripped or not")
    for tree in (BUILD, ROOT / "build/arm64"):
        if not (tree / "bin/vxcli").exists():
            row(tree.name, "not built")
            continue
        text = data = 0
        for line in out("readelf", "-SW", tree / "bin/vxcli").splitlines():
            field = re.match(r"\s*\[ *\d+\] \S+ +(\S+) +\S+ \S+ (\S+) \S+ +(W?A\S*)", line)
            if field and field[1] != "NOBITS":
                text, data = (text, data + int(field[2], 16)) if "W" in field[3] else (text + int(field[2], 16), data)
        row(f"{tree.name}: text {text}, data {data}", f"{(text + data) / 1024:.1f} KiB", "below 160 KiB",
            text + data < 160 * 1024)


def growth(board):
    print("Growth: instructions for each item, without what it costs with none; flat: at most 1.1 times the first of 16 or "
          "more")

    def series(what, counts, count_of):
        base = count_of(0)
        each = {n: (count_of(n) - base) / n for n in counts}
        judged = [n for n in counts if n >= 16]  # of a few, hardly anything is left above what else varies
        for n, value in each.items():
            row(f"{what}, {n}", f"{value:.0f} instr", *(("flat", value <= 1.1 * each[judged[0]]) if n in judged else ()))

    def mac_table(n):
        (board.path / "switch/mac_table_size").write_text("16384\n")
        lines = (f"02:00:5e:10:{i >> 8:02x}:{i & 255:02x} 100\n" for i in range(n))
        (board.path / "switch/port1/mac_table").write_text("".join(lines))
        return board.instructions("vxcli switch listmac 1")

    text_file = board.path / "unit/etc/velmarix_default_bob_ux3361.bin"
    factory = text_file.read_text()

    def text_lines(n):
        text_file.write_text("0x80=0x12;\n" * n + factory)  # in front of the first section: read, but not stored
        return board.instructions("vxcli bob restore", wait=False)

    series("switch listmac, entries", (16, 256, 4096, 16384), mac_table)
    series("bob restore, lines of the default file", (1, 100, 10_000, 100_000), text_lines)

    info = board.path / "unit/etc/vx_sys_info"
    fields = info.read_text()

    def info_lines(n):
        info.write_text("OTHER=value\n" * n + fields)
        return board.instructions("vxcli sys show")

    series("sys show, other lines of vx_sys_info", (16, 256, 4096), info_lines)


if not (BUILD / "bin/vxcli").exists():
    print(f"cost: no bin/vxcli in {BUILD}: build it first (make bench does)", file=sys.stderr)
    sys.exit(2)
os.environ["LC_ALL"] = "C"
with tempfile.TemporaryDirectory(prefix="vxcli-bench.") as directory:
    unit = Board(Path(directory) / "board")
    unit.run("vxcli", "sys", "load")
    start_up(unit)
    bus_work(unit, Path(directory))
    size()
    growth(unit)
