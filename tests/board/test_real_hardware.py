"""Buses and partitions that are links to device nodes, with kernel_fake.cpp in the kernel's place."""

import errno
import os

import pytest

from conftest import VXBOARD, execute

RAW, BLOCKS = 0x1, 0x4 << 16 | 0xC << 24  # I2C_FUNC_I2C; SMBus byte writes and I2C blocks
NOR, NAND = {"erase": 0x10000, "write": 1}, {"erase": 0x20000, "write": 2048}


def linked(unit, *places, to=None):
    """Links the places of the board to a node, a file in the unit's /tmp; returns that file."""
    node = unit.unit("tmp/node")
    for entry in (unit.path / place for place in places):
        entry.rename(unit.path / f"model.{entry.name}")
        entry.symlink_to(to or "/tmp/node")
    return node


def on(unit, words, **settings):
    """Runs a command with the fake; returns its output and the node's log."""
    log = unit.unit("tmp/node.log")
    log.write_text("")
    preload = "LD_PRELOAD=/.vxboard/lib/libvx_kernel_fake.so:/.vxboard/lib/libvxserdes.so"
    kind = "FAKE_I2C" if "funcs" in settings else "FAKE_MTD"
    out = unit.run("env", preload, f"{kind}=/tmp/node", *(f"FAKE_{name.upper()}={value}" for name, value in settings.items()),
                   *words.split(), wait=True, stderr=None).out
    return out, log.read_text().splitlines()


def traced(unit, kind):
    return [" ".join(line.fields) for line in unit.trace() if line.kind == kind]


CHIP = bytes((i * 5 + 3) % 256 for i in range(256))
LONG = bytes(range(1, 81))


@pytest.mark.parametrize("funcs, limit", [(RAW, 300), (BLOCKS, 0), (RAW | BLOCKS, 33)])
def test_what_is_on_the_wire(board, funcs, limit):
    unit = board("ux3361")
    bus = linked(unit, "i2c/1")
    bus.write_bytes(CHIP)
    unit.unit("var/bob_chip_type").write_text("2\n")
    unit.trace()
    pieces = [f"smbus w 51 {reg:02x} {data.hex(' ')}" for reg, data in [(0x2C, LONG[:20]), (0x40, LONG[20:52]), (0x60, LONG[52:])]]
    for words, says, short, long in [
            ("vxcli bob read_reg 0x51 0x60", f"0x60 {CHIP[0x60]}\n", ["w 51 60 + r 51 1"], None),
            ("vxcli bob write_reg 0x51 0x7f 0x87", "OK\n", ["w 51 7f 87"], None),
            ("vxcli bob write_regs 0x51 0x1c 6 1 2 3 4 5 6", "OK\n", ["w 51 1c 01 02 03 04", "w 51 20 05 06"], None),
            ("vxcli bob read_regs 0x51 0xa0 80", " ".join(f"0x{byte:02x}" for byte in CHIP[0xA0:0xF0]) + " \n", ["w 51 a0 + r 51 80"],
             ["smbus w 51 a0 + r 51 32", "smbus w 51 c0 + r 51 32", "smbus w 51 e0 + r 51 16"]),
            # Each piece is tried until the chip has written the one before. Pieces end where chip pages do.
            (f"vxcli_bus_steps w:51:2c:{LONG.hex()}", "ok\n", [f"w 51 2c {LONG.hex(' ')}"],
             [pieces[0], "smbus w 51 !", pieces[1], "smbus w 51 !", pieces[2]]),
            ("vxcli_bus_steps r:51:9:0 w:51:5: r:52:0:1 w:a2:0:11", "\nok\nfail 6\nfail 6\n", ["w 51 09", "w 51 05", "w 52 !"], None)]:
        out, wire = on(unit, words, busy=1 if "2c:" in words else 0, funcs=funcs, limit=limit)
        expected = short if limit > 80 or limit and not long else [" !"] * (limit > 0) + (long or [f"smbus {line}" for line in short])
        assert wire == expected and says in out, words
    assert bus.read_bytes()[0x2C:0x7C] == LONG
    lines = traced(unit, "i2c")
    assert lines[0] == f"1 read 0x51 0x60 1 ok {CHIP[0x60]:02x}" and lines[-1] == "1 write 0xa2 0x00 1 nak 11" and len(lines) == 10


def test_what_cannot_be_carried_out(board):
    unit = board("ux3361")
    linked(unit, "i2c/1").write_bytes(CHIP)
    unit.trace()
    on(unit, "vxcli_bus_steps r:51:0:1 w:51:0:11 r:51:0:0", funcs=0x7 << 16)
    out, wire = on(unit, f"vxcli_bus_steps w:51:20:{LONG.hex()}", funcs=BLOCKS, busy=1000)  # never done with the first piece
    assert [line.split()[5] for line in traced(unit, "i2c")] == ["refused", "refused", "ok", "nak"] and 2 < len(wire) < 45


def test_links_to_something_else(board):
    unit = board("ux3361")
    linked(unit, "i2c/1", "flash/bob", to="/tmp/entry").touch()
    os.mkfifo(unit.unit("tmp/fifo"))
    status, out, err = execute(VXBOARD, "run", "--no-wait", unit.path, "true")
    assert (status, out) == (2, "") and "i2c/1 leads to real hardware" in err and err.count("\n") == 1
    for target, word in {"nowhere": "missing", "/dev/null": "refused", "/etc": "refused", "fifo": "refused", "node": "refused"}.items():
        unit.trace()
        steps = f"ln -sfn {target} /tmp/entry; vxcli_bus_steps r:51:0:1 w:51:0:11 get"
        assert unit.sh(steps, wait=True).out == "fail 6\nfail 6\nfail 4\n"
        lines = [line.fields for line in unit.trace() if line.kind != "call"]
        assert [line[5] for line in lines[:2]] == [word] * 2 and lines[2:] == [["bob", word, "open", "0x0", "0"]], target


def test_failures_have_their_words(board):
    unit = board("ux3361")
    linked(unit, "i2c/1", "flash/bob").write_bytes(CHIP)
    for error, bus, flash in [("ENXIO", "nak", "missing"), ("ETIMEDOUT", "nak", "refused"), ("EIO", "refused", "refused"),
                              ("ENODEV", "missing", "missing"), ("EPERM", "denied", "denied")]:
        unit.trace()
        assert on(unit, "vxcli_bus_steps r:51:0:1", funcs=RAW, error=getattr(errno, error))[0] == "fail 6\n"
        assert on(unit, "vxcli_bus_steps get", **NOR, error=getattr(errno, error))[0] == "fail 4\n"
        assert [" ".join([line.kind, *line.fields]) for line in unit.trace()] == [
            f"i2c 1 read 0x51 0x00 1 {bus}", f"flash bob {flash} info 0x0 0", "call libvx_sys_getBob 4"], error


SIZE = 0xA0000
PATTERN = bytes((i * 7 + i // 256) % 251 for i in range(SIZE))


@pytest.mark.parametrize("chip", [NOR, NAND, {"erase": 0x8400, "write": 0x420}])
def test_ranges_keep_the_rest_of_their_erase_blocks(board, chip):
    unit, model = board("ux3361"), board("ux3361")
    (model.path / "flash/hwconfig").write_bytes(PATTERN[:0x10000])
    mtd = linked(unit, "flash/hwconfig")
    cells = PATTERN[:SIZE // chip["erase"] * chip["erase"]]
    mtd.write_bytes(cells)
    said = model.run("vxcli", "wlan", "clean_cal_data", "mt7915", stderr=None).out
    out, log = on(unit, "vxcli wlan clean_cal_data mt7915", **chip)
    assert out == said and mtd.read_bytes() == (model.path / "flash/hwconfig").read_bytes() + cells[0x10000:]
    assert [line for line in log if line[0] == "e"] == [f"erase 0 {chip['erase']:x}"] * 2 and not [line for line in log if " !" in line]
    unit.unit("tmp/source").write_bytes(bytes(0x40000))
    before, start = mtd.read_bytes(), 0x1FFFF
    assert on(unit, f"vxcli_bus_steps calsave:hwconfig:{start:x}:20002:/tmp/source", **chip)[0] == "ok\n"
    assert mtd.read_bytes() == before[:start] + bytes(0x20002) + before[start + 0x20002:]


INFO = "".join(f"KEY{number}=a line like many others\n" for number in range(1000))[:30000]


@pytest.mark.parametrize("chip, second, programs", [
    (NOR, 0x50000, [(0x0C, 0x4000), (0x400C, 0x3530), (0, 12)]), (NAND, 0x40000, [(0, 0x4000), (0x4000, 0x3800)]),
    ({"erase": 0x2100, "write": 0x420}, 0x8400, [(0, 0x3DE0), (0x3DE0, 0x39C0)])])
def test_stores(board, chip, second, programs):
    unit = board("ux3361")
    mtd, info = linked(unit, "flash/sysinfo"), unit.unit("etc/vx_sys_info")
    mtd.write_bytes(PATTERN[:SIZE // chip["erase"] * chip["erase"]] if second > 0x8400 else PATTERN[:0x10800])
    for start, other, text in [(0, second, INFO), (second, 0, INFO.lower()), (0, second, INFO)]:
        info.write_text(text)
        out, log = on(unit, "vxcli sys save", **chip)
        blocks = [start + i * chip["erase"] for i in range(-(-30012 // chip["erase"]))]
        assert out == "sys save success\n" and log == [
            *(f"erase {block:x} {chip['erase']:x}" for block in blocks),
            *(f"program {start + place:x} {length:x}" for place, length in programs), f"erase {other:x} {chip['erase']:x}"]
        info.unlink()
        on(unit, "vxcli sys load", **chip)
        assert info.read_text() == text


@pytest.mark.parametrize("settings, size, says", [
    ({**NAND, "bad": 0x20000}, 0x40000, "badblock 0x20000 131072"), ({**NOR, "stuck": 9}, 0x20000, "program 0x0 12"),
    ({**NAND, "stuck": 7}, 0x40000, "program 0x0 16384"), (NOR, 0x1FFFF, "info 0x0 131071"), (NOR, 0x10000, "size 0x0 131072"),
    ({"erase": 0x1000, "write": 1}, 0x8000, "size 0x0 60024"), ({"erase": 0x8000, "write": 0x8000}, 0x10000, "info 0x0 65536")])
def test_flash_that_cannot_be_used(board, settings, size, says):
    unit = board("ux3361")
    linked(unit, "flash/sysinfo").write_bytes(bytes(size))
    unit.unit("etc/vx_sys_info").write_text(INFO)
    unit.trace()
    out, log = on(unit, "vxcli sys save", **settings)
    assert out == "sys save fail\n" and not [line for line in log if "!" in line]  # not even tried
    assert traced(unit, "flash")[-1].startswith(f"sysinfo refused {says}")
