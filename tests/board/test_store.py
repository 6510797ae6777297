"""The image store in flash, faults, trace and log."""

import zlib

from bench import WORKING, stored


def steps(unit, *words):
    return unit.run("vxcli_bus_steps", *words).out.splitlines()


def test_store_and_bring_back(board):
    unit = board("ux3361")
    working, flash = unit.unit(WORKING[1:]), unit.path / "flash/bob"
    assert flash.read_bytes() == b"\xff" * 16384
    assert steps(unit, "get", "save") == ["fail 6", "fail 3"]  # nothing there, neither in flash nor as a file
    assert not working.exists() and flash.read_bytes() == b"\xff" * 16384
    for bank, image in [(0, bytes(range(256)) * 7), (8192, b""), (0, bytes(8192 - 12))]:
        working.write_bytes(image)
        assert steps(unit, "save") == ["ok"]
        assert stored(unit) == image and flash.read_bytes()[bank:][8:12] == zlib.crc32(image).to_bytes(4, "little")
        working.write_bytes(b"something else")
        unit.power_cycle()
        assert steps(unit, "get") == ["ok"] and working.read_bytes() == image


def test_a_damaged_store_is_refused(board):
    unit = board("ux3361")
    working, flash = unit.unit(WORKING[1:]), unit.path / "flash/bob"
    working.write_bytes(bytes(range(1, 225)) * 8)
    steps(unit, "save")
    good = flash.read_bytes()
    working.write_bytes(b"as it was")
    for place, byte in [(0, 0), (5, 0x40), (9, 0), (1803, 0x55)]:
        flash.write_bytes(good[:place] + bytes([byte]) + good[place + 1:])
        assert steps(unit, "get") == ["fail 6"] and working.read_bytes() == b"as it was", place


def test_images_that_do_not_fit(board):
    unit = board("ux3361")
    working, flash = unit.unit(WORKING[1:]), unit.path / "flash/bob"
    working.write_bytes(b"x" * 100)
    steps(unit, "save")
    for size in (8192 - 11, 100000):
        working.write_bytes(b"y" * size)
        assert steps(unit, "save") == ["fail 6"] and stored(unit) == b"x" * 100
    flash.unlink()
    working.write_bytes(b"z")
    assert steps(unit, "save", "get") == ["fail 3", "fail 4"]


def test_faults_fire_when_and_as_often_as_they_say(board):
    unit = board("ux3361")
    read, other = "r:51:10:1", "r:50:10:1"
    unit.fault("# a note")
    unit.fault("libvx_ponApi_i2cRead dev=0x51 reg=0x10 skip=2 times=2 result=3  # two of them")
    unit.fault("libvx_sys_getBob dev=0x51 times=always")  # no transfer: never fires
    assert [line[:4] == "fail" for line in steps(unit, read, other, "r:51:11:1", read, read)] == [False, False, False, False, True]
    kept = ["# a note", "libvx_sys_getBob dev=0x51 times=always"]
    assert unit.faults() == [kept[0], "libvx_ponApi_i2cRead dev=0x51 reg=0x10 result=3", kept[1]]
    assert steps(unit, "w:51:10:01", "wait:4000", read, read, "get")[1:] == ["fail 3", "01", "fail 6"]
    unit.fault("libvx_ponApi_i2cWrite dev=80 times=always")
    assert steps(unit, "w:50:0:1", "w:51:10:1", "w:50:0:1") == ["fail 6", "ok", "fail 6"]
    assert unit.faults() == [*kept, "libvx_ponApi_i2cWrite dev=80 times=always"]


def test_trace_and_log(board):
    unit = board("ux3361")
    steps(unit, "r:51:10:1")
    assert not (unit.path / "trace").exists()
    unit.trace()
    steps(unit, "w:51:10:01ff", "wait:4000", "r:51:10:2", "w:51:10:aa", "w:51:10:bb", "log")
    lines = unit.trace()
    assert [line.time - lines[0].time for line in lines] == [0, 0] + [4000] * 5 and len({line.pid for line in lines}) == 1
    assert [line.fields[5] for line in lines if line.kind == "i2c"] == ["ok", "ok", "ok", "busy"]
    # The level that the program reads is the library's own variable.
    assert (unit.path / "log").read_text().partition(" ")[2] == "libvx Error: src/x.cpp:7 step: level 1\n"
