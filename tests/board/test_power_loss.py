"""Commands that are killed at each of their changes of a file, one after the other (see killer.cpp), and the unit that
comes up afterwards. `make torture` also takes what takes long."""

import os
import shutil
from collections import Counter
from typing import NamedTuple

import pytest

from bench import BACKUP, CHIPS, WORKING
from conftest import BUILD, TORTURE, VXBOARD, Board, execute, native

pytestmark = native  # nobody can follow a process under qemu

KILLER = BUILD / "bin" / "vxcli_killer"
KILLED = 137
NOT_COMPARED = {"trace", "clock", "log"}
TWICE = {"ux3361", "ux3361-mt7915"}  # no chip differs from this one in what it writes but to itself

# What the chip is given, what the image is and what is in flash; and whether the image came from elsewhere.
COMES_UP = (f"vxcli bob init >/tmp/said || echo failed; cat /.vxboard/board/i2c/1/*.bin {WORKING} | md5sum;"
            f"rm -f {WORKING}; vxcli bob read; md5sum {WORKING};"
            f"grep -q 'data from {BACKUP}$' /tmp/said && echo '# the backup'")
TWO_STATES = "vxcli bob init; vxcli bob write_reg 0x51 0x74 0x21; vxcli bob save; vxcli bob write_reg 0x51 0x74 0x43"
LOST_FLASH = f"{TWO_STATES}; vxcli bob save; tr '\\0-\\376' '\\377' </dev/zero | head -c 16384 >/.vxboard/board/flash/bob"
SHOW = "(vxcli sys show; cat /etc/macAddrBase /etc/macAddr /etc/MfgMode) | md5sum"
LOAD = "vxcli sys load >/tmp/said; " + SHOW
CONFIG = "head -c 9000 /dev/urandom >/etc/c; vxcli sys savebackup /etc/c; head -c 5000 /dev/urandom >/etc/c"
REWRITE = "cd /etc/wireless/mediatek && for f in *; do tr '\\1-\\376' '\\2-\\377' <$f >/tmp/f; cp /tmp/f $f; done"
# The driver's file, and the other slots.
VALIDATE = ("vxcli wlan validate_cal_data mt7915 >/tmp/said; md5sum </etc/wireless/mediatek/MT7915_EEPROM.bin;"
            "cd /.vxboard/board/flash; (head -c 12288 hwconfig; tail -c +16385 hwconfig | head -c 12288) | md5sum;"
            "grep -q 'use default' /tmp/said && echo \"# the driver's file\"")
COUNTED = "echo 'libvx_switchApi_addMacEntry skip=1' >/.vxboard/board/faults"
ATTRIBUTES = """vxcli port rate 0 1 1 5000; vxcli port admin 1 0; vxcli epon rate 0 1 100; vxcli gpon qrate 3 1 1 77
    vxcli switch addmac 0 5 2:0:0:0:0:1; vxcli switch addcpumac 2:0:0:0:0:1 1.2.3.4 1
    vxcli port proto arp 0 1 77; vxcli sys led_event LED_PON BLINK 250ms; vxcli sys flushnat; vxcli sys rogue 1 1 1
    vxcli bob write_regs 0x51 0x10 1 2 3; vxcli bob catvoa 5; vxcli voice ring on 0
    devmem 0x20100080 w 5; vxsUtil -s A.B C int 5; vxImageSwitch; echo on >/dev/null"""


class Case(NamedTuple):
    name: str
    profile: str
    prepare: str
    command: str
    look: str = ""  # what prints the state after the power cycle; none: the board's files, without a power cycle


CASES = [
    Case("bob save", "ux3361", TWO_STATES, "vxcli bob save", COMES_UP),
    Case("bob init from the backup", "ux3320", LOST_FLASH, "vxcli bob init", COMES_UP),
    Case("sys save", "ux3361", "vxcli sys load; vxcli sys model A; vxcli sys save; vxcli sys sn 7", "vxcli sys save", LOAD),
    Case("sys load", "ux3361", "vxcli sys load; vxcli sys sn 7", "vxcli sys load", LOAD),
    Case("sys model", "ux3361", "vxcli sys load; vxcli sys model A", "vxcli sys model Another", SHOW),
    Case("wlan write_cal_data", "ux3361-mt7915", REWRITE, "vxcli wlan write_cal_data mt7915", VALIDATE),
    Case("sys savebackup", "ux3361", CONFIG, "vxcli sys savebackup /etc/c", "vxcli sys getbackup /tmp/c; md5sum /tmp/c"),
    Case("voice debug", "ux3361", "vxcli voice debug 1 /tmp/v", "vxcli voice debug 2 /tmp/w",
         "vxcli voice debug; cat /.vxboard/board/voice/log_level /.vxboard/board/voice/log_file"),
    Case("attributes", "ux3361", COUNTED, ATTRIBUTES),
]
if TORTURE:
    CASES += [Case(f"bob {word} {chip}", chip, prepare, f"vxcli bob {word}", COMES_UP) for chip in CHIPS
              for word, prepare in [("save", TWO_STATES), ("restore", TWO_STATES), ("init", LOST_FLASH), ("init", "true")]]
    CASES += [Case("wlan clean_cal_data", "ux3361-mt7915", REWRITE, "vxcli wlan clean_cal_data mt7915", VALIDATE)]


def files(unit, hidden=False):
    """All files of a board; hidden: also those that a killed writer leaves under a name that nobody reads."""
    return {str(path.relative_to(unit.path)): path.read_bytes() for path in sorted(unit.path.rglob("*")) if path.is_file()
            and not path.is_symlink() and (hidden or not path.name.startswith(".")) and path.name not in NOT_COMPARED}


def state(unit, case):
    """What the unit is like afterwards, and what helped it."""
    if not case.look:
        return files(unit), ""
    unit.power_cycle()
    found, _, helper = unit.sh(case.look, stderr=None).out.partition("#")
    return dict(enumerate(found.splitlines())), helper.strip()


def changes(listing, but=None):
    """Where to kill: at the changes that the killer lists, and halfway through the writes that have halves. Of those to
    the chip none is so long that a kill could halve it. Files in the directory `but` are left out."""
    rows = [line.split(None, 4) for line in listing.splitlines() if line.startswith("change ")]
    assert [int(row[1]) for row in rows] == list(range(1, len(rows) + 1))
    rows = [row for row in rows if f"/{but}/" not in row[4]]
    return [row[1] for row in rows] + [f"{row[1]}+half" for row in rows if int(row[3]) > 1 and "/i2c/" not in row[4]]


def kills(unit, command, path, but=None):
    """The unit, in the directory `path`, as each kill of the command leaves it."""
    for point in changes(unit.copy(path).run("vxcli_killer", 0, "sh", "-c", command, stderr=None).err, but):
        killed = unit.copy(path)
        assert killed.run("vxcli_killer", point, "sh", "-c", command, stderr=None).status == KILLED, point
        yield point, killed


@pytest.fixture
def killer(environment, monkeypatch):
    if os.environ["VXBOARD_VIEW"] == "proot":
        pytest.skip("a process that proot follows cannot be followed by another")
    options = os.environ.get("ASAN_OPTIONS", "")
    monkeypatch.setenv("ASAN_OPTIONS", options.replace("detect_leaks=1", "detect_leaks=0"))  # would follow it, too


@pytest.mark.parametrize("case", CASES, ids=lambda case: case.name.replace(" ", "_"))
def test_killed_at_every_change(killer, board, tmp_path, case):
    """Each piece of what the unit keeps is the old one or the new one; also if what comes next is killed, too: the same
    command, or what follows the power cycle."""
    unit, starts = board(case.profile), {}
    unit.sh(case.prepare, stderr=None)
    old, _ = state(unit.copy(tmp_path / "old"), case)
    whole = unit.copy(tmp_path / "new")
    whole.sh(case.command, stderr=None)
    new, _ = state(whole, case)
    assert old != new or "load" in case.name or "init" in case.name  # these bring back what is kept anyway

    def check(seen, killed, *where):
        found, helper = state(killed, case)
        assert set(found) <= {*old, *new}, where
        odd = {piece for piece in {*old, *new} if found.get(piece) not in (old.get(piece), new.get(piece))}
        assert not odd, (where, {piece: (old.get(piece), found.get(piece), new.get(piece)) for piece in odd})
        seen["old" if found == old else "new" if found == new else "some of both", helper] += 1

    once, twice = Counter(), Counter()
    for point, killed in kills(unit, case.command, tmp_path / "killed"):
        for command in {case.command, case.look} if TORTURE and case.look and case.profile in TWICE else ():
            start = killed.copy(tmp_path / f"start{len(starts)}")  # taken again if it is no new one
            if command == case.look:
                start.power_cycle()
            kept = {name: data for name, data in files(start, hidden=True).items() if not name.startswith("i2c")}
            starts.setdefault((command, *kept.items()), (point, start))
        check(once, killed, point)
    for (command, *_), (first, start) in starts.items():
        for point, killed in kills(start, command, tmp_path / "killed", but="i2c"):  # the chip forgets
            check(twice, killed, first, command, point)
    assert once
    print(f"{case.name}: {once.total()} kills:", dict(once), f"{twice.total()} second kills:", dict(twice))


@pytest.mark.skipif(not TORTURE, reason="takes long: make torture")
def test_vxboard_killed_at_every_change(killer, board, tmp_path):
    """A new board is there or not; a power cycle can be made again."""
    target = tmp_path / "target"
    points = changes(execute(KILLER, 0, VXBOARD, "new", "ux3361", target).err)
    profile = files(Board("ux3361", tmp_path / "whole"))
    for point in points[::5]:  # most write one of hundreds of files
        shutil.rmtree(target, ignore_errors=True)
        assert execute(KILLER, point, VXBOARD, "new", "ux3361", target).status == KILLED
        assert target.exists() or execute(VXBOARD, "new", "ux3361", target) == (0, "", "")
        assert files(Board(None, target)) == profile, point
    print("vxboard new:", len(points), "kills")
    unit = board("ux3361")
    unit.sh(f"{TWO_STATES}; {ATTRIBUTES}", stderr=None)
    cycled = unit.copy(tmp_path / "cycled")
    points = changes(execute(KILLER, 0, VXBOARD, "power-cycle", cycled.path).err)
    for point in points:
        killed = unit.copy(tmp_path / "killed")
        assert execute(KILLER, point, VXBOARD, "power-cycle", killed.path).status == KILLED
        killed.power_cycle()
        assert files(killed) == files(cycled), point
    print("vxboard power-cycle:", len(points), "kills")
