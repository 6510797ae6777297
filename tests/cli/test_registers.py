"""read_reg, read_regs, write_reg, write_regs, table_sel: their words, the bus, the A0 shadow file."""

import pytest

from bench import A0_SHADOW, CHIPS, FAIL, answers, seen

NO_CHIP = "Check bosa chip type fail!"  # says that all words were good: the chip is looked at after them
NO_DEVICE, BAD_DEVICE = "Please specify DEV-ADDRESS.", "DEV-ADDRESS invalid."
OTHER_DEVICE = "DEV-ADDRESS invalid, should be [0x50/0x51/160/162]"
OTHER_RUN_DEVICE = "DEV-ADDRESS invalid, should be [0x50/0x51/160/162/0x55/0xaa]"
NO_REG, BAD_REG = "Please specify REG-ADDRESS.", "REG-ADDRESS invalid."
NO_LENGTH, BAD_LENGTH, LONG = "Please specify data length.", "Length invalid.", "Length is out of registers."
NO_DATA, BAD_DATA, MISMATCH = "Please specify data.", "Data value invalid.", "Data number is not match legth."
EXTRA = "Invalid command."

# What makes a number: all of the word, in the base that it announces itself; the low 32 bits count. For the other words
# their own rules and messages.
DEVICES = {"": NO_DEVICE, **dict.fromkeys(("''", "' '", "'81 '", "0x", "0x51g", "0x5G", "08"), BAD_DEVICE),
           **dict.fromkeys(("0x100000051", "0X51", "0121", "-4294967215"), NO_REG)}
REGISTERS = {"": NO_REG, "''": BAD_REG, "0x7fz": BAD_REG, "256": BAD_REG, "-1": BAD_REG}
LENGTHS = {"": NO_LENGTH, "''": BAD_LENGTH, "7": LONG, "-1": LONG, "0xffff": LONG}
DATA = {"''": BAD_DATA, "1x": BAD_DATA, "256": BAD_DATA, "-1": BAD_DATA, "4294967295": BAD_DATA, "99999999999999999999999": BAD_DATA,
        "-2": NO_CHIP, "-256": NO_CHIP, "255": NO_CHIP}


def bad(command, prefix, words):
    return {f"{command} {prefix} {word}": message for word, message in words.items()}


ARGUMENTS = {
    **bad("read_reg", "", DEVICES), **bad("write_reg", "", DEVICES),
    **bad("read_regs", "", DEVICES), **bad("write_regs", "", DEVICES),
    **{f"{command} {device} 0": OTHER_DEVICE for command in ("read_reg", "write_reg") for device in ("0x52", "-1", "0x55")},
    **{f"{command} 161 0 1": OTHER_RUN_DEVICE for command in ("read_regs", "write_regs")},
    **bad("read_reg", "0x51", REGISTERS), **bad("write_reg", "0x50", REGISTERS),
    **bad("read_regs", "162", REGISTERS), **bad("write_regs", "160", REGISTERS),
    **bad("read_regs", "0x51 250", LENGTHS), **bad("write_regs", "0x51 250", LENGTHS),
    **bad("write_reg", "0x51 0", {"": NO_DATA, **DATA}), **bad("write_regs", "0x51 0 1", DATA),
    # The first failing word decides, whatever comes behind it.
    "read_reg 0x52 999 x y": OTHER_DEVICE, "read_reg 0x51 1 x": EXTRA, "write_reg 0x51 1 999 x": BAD_DATA,
    "write_regs 0x51 0 2 999": MISMATCH, "read_regs 0x51 0 257": LONG, "read_regs 0x51 0 256 x": EXTRA,
    "write_regs 0x51 0x80 2 1 2 3": MISMATCH, "write_regs 0x51 0 256 " + "7 " * 255: MISMATCH,
    "write_regs 0x51 0 256 " + "7 " * 256: NO_CHIP, "write_regs 0x51 0 256 " + "7 " * 255 + "256": BAD_DATA,
    **{f"read_reg {device} 255": NO_CHIP for device in ("0x50", "0x51", "160", "0xA2")},
    **{f"{command} {device} 255 0": NO_CHIP for command in ("read_regs", "write_regs") for device in ("81", "160", "0x55", "0xaa")},
    # Only the low 16 bits of a length count.
    "read_regs 0x51 250 0x10006": NO_CHIP, "write_regs 0x51 0 65537 5": NO_CHIP,
}


def test_arguments(board):
    unit = board("ux3361")
    unit.trace()
    assert dict(zip(ARGUMENTS, answers(unit, list(ARGUMENTS)))) == {
        words: (1, f"{message}\n{FAIL}") for words, message in ARGUMENTS.items()}
    assert unit.trace() == []


# ---- on the bus ----

def prepared(board, profile, chip_type=None, e2prom=None):
    """A board whose start-up is over, as far as the status files say."""
    unit = board(profile)
    chip_type = CHIPS[profile.partition("-")[0]].type if chip_type is None else chip_type
    unit.unit("var/bob_chip_type").write_text(f"{chip_type}\n")
    if e2prom is not None:
        unit.unit("var/bob_e2prom_status").write_text(f"{e2prom}\n")
    unit.trace()
    return unit


def write(reg, data, device=0x51):
    return " ".join([f"1 write 0x{device:02x} 0x{reg:02x} {len(data)} ok", *(f"{byte:02x}" for byte in data)])


def test_reading_the_chip(board):
    unit = prepared(board, "ux3361")
    a2 = (unit.path / "i2c/1/a2_low.bin").read_bytes()
    a0 = bytes(range(200, 240)) + bytes(216)
    (unit.path / "i2c/1/a0.bin").write_bytes(a0)
    assert answers(unit, ["read_reg 162 97", "read_reg 0xA0 02", "read_regs 160 0 3", "read_regs 0x51 0x10 0",
                          "read_regs 0x50 0 256", "read_regs 0x55 1 1"]) == [
        (0, f"Bob chip_type: UX3361\nvxcli bob read_reg 162 97 {a2[97]}\n"),
        (0, "Bob chip_type: UX3361\nvxcli bob read_reg 0xA0 02 202\n"),
        (0, "Bob chip_type: UX3361\nvxcli bob read_regs 160 0 0xc8 0xc9 0xca \n"),
        (0, "Bob chip_type: UX3361\nvxcli bob read_regs 0x51 0x10 \n"),
        (0, "Bob chip_type: UX3361\nvxcli bob read_regs 0x50 0 " + "".join(f"0x{byte:02x} " for byte in a0) + "\n"),
        (0, "vxcli bob read_regs fail\n")]
    assert list(seen(unit)) == [f"1 read {transfer}" for transfer in (
        "0x51 0x61 1 ok", "0x50 0x02 1 ok", "0x50 0x00 3 ok", "0x51 0x10 0 ok", "0x50 0x00 256 ok", "0x55 0x01 1 nak")]


def test_writing_one_register(board):
    unit = prepared(board, "ux3361")
    writes = ["write_reg 0x51 0x10 0x5a", "write_reg 162 17 -2", "write_reg 160 0377 0377", "write_reg 0x51 0x7f 0x84"]
    assert answers(unit, writes) == [(0, "Bob chip_type: UX3361\nvxcli bob write_reg OK\n")] * 4
    assert list(seen(unit)) == [write(0x10, [0x5A]), write(17, [0xFE]), write(255, [255], 0x50), write(0x7F, [0x84])]


@pytest.mark.parametrize("profile, chip_type, pieces, wait", [
    ("ux3361", 2, (4, 16), 5000), ("ux3365", 11, (4, 16), 5000), ("ux3362s", 9, (4, 16), 5000), ("ux3320s", 3, (4, 16), 5000),
    ("ux3320", 0, (20,), 0), ("gn28l95", 6, (4, 8, 8), 0), ("gn25l95d", 5, (4, 8, 8), 0), ("gn28l96", 8, (4, 8, 8), 0),
    *[("ux3361", number, (), 0) for number in (7, 10, 12, 13, 14)],
])
def test_writing_a_run(board, profile, chip_type, pieces, wait):
    """20 registers from 0x1c, which is 4 before a page's end; pieces of whole pages or up to a page's end, and the waits."""
    unit = prepared(board, profile, chip_type)
    data = list(range(100, 120))
    status, out = answers(unit, ["write_regs 0x51 0x1c 20 " + " ".join(map(str, data))])[0]
    assert status == 0 and out.endswith(
        f"vxcli bob write_regs OK\nvxcli bob write_regs duration: {len(pieces) * wait / 1e6:.6f}\n")
    expected, place = [], 0
    for piece in pieces:
        expected += [write(0x1C + place, data[place:place + piece])] + [f"wait {wait}"] * (wait > 0)
        place += piece
    assert list(seen(unit)) == expected
    if pieces:
        assert (unit.path / "i2c/1/a2_low.bin").read_bytes()[0x1C:0x30] == bytes(data)
        assert answers(unit, ["write_regs 0x51 5 0"])[0][0] == 0 and list(seen(unit)) == [write(5, [])]
    if wait:  # a piece that only ends with a page is not waited for
        answers(unit, ["write_regs 0x51 0x15 11" + " 7" * 11])
        assert list(seen(unit)) == [write(0x15, [7] * 11)]


@pytest.mark.parametrize("profile", ["ux3361", "gn28l97b"])
def test_transfers_that_fail(board, profile):
    """Each is reported, none is a failure of the command; the first piece that fails ends a run."""
    unit = prepared(board, profile)
    unit.fault("libvx_ponApi_i2cRead times=2")
    unit.fault("libvx_ponApi_i2cWrite times=1")
    unit.fault("libvx_ponApi_i2cWrite reg=0x90")
    unit.fault("libvx_ponApi_i2cWrite reg=0x7f")
    assert answers(unit, ["read_reg 0x51 0", "read_regs 0x51 0 4", "write_reg 0x51 0 1",
                          "write_regs 0x51 0x8e 20 " + "1 " * 20, "table_sel 0"]) == [
        (0, f"vxcli bob {text}\n") for text in ("read_reg fail.", "read_regs fail", "write_reg fail", "write_regs fail",
                                                "table_sel fail")]
    writes = [line.split()[3:6] for line in seen(unit) if " write " in line]
    assert writes == [["0x00", "1", "fault"], ["0x8e", "2", "ok"], ["0x90", "16" if profile == "ux3361" else "8", "fault"],
                      ["0x7f", "1", "fault"]]


# ---- the A0 shadow file ----

@pytest.mark.parametrize("profile", [profile for profile, chip in CHIPS.items() if chip.gn])
def test_shadowed_a0(board, profile):
    unit = prepared(board, profile)
    name = f"Bob chip_type: {CHIPS[profile].name}\n"
    shadow = unit.unit(A0_SHADOW[1:])
    shadow.write_bytes(bytes(range(256)) + b"tail")
    assert answers(unit, ["read_regs 160 250 6", "write_reg 0x50 255 7", "write_regs 0x50 0xc 3 9 8 -7", "read_reg 0x50 14"]) == [
        (0, name + "vxcli bob read_regs 160 250 250 251 252 253 254 255 \n"), (0, name + "vxcli bob write_reg OK\n"),
        (0, name + "vxcli bob write_regs OK\nvxcli bob write_regs duration: 0.000000\n"),
        (0, name + "vxcli bob read_reg 0x50 14 249\n")]
    assert shadow.read_bytes() == bytes(range(12)) + b"\x09\x08\xf9" + bytes(range(15, 255)) + b"\x07tail"
    assert list(seen(unit)) == []


def test_shadow_file_missing_or_short(board):
    unit = prepared(board, "gn28l95")
    no_file = f"bob:open file: {A0_SHADOW} fail!\n"
    short = f"read_a0_from_file [{A0_SHADOW}] failed! need read size [256], get count [2] \n"
    reads, fails = ["read_reg 0x50 3", "read_regs 0x50 3 1"], ["vxcli bob read_reg fail.\n", "vxcli bob read_regs fail.\n"]
    assert answers(unit, reads) == [(0, no_file + fail) for fail in fails]
    # A first write makes a file of just its bytes.
    answers(unit, ["write_regs 0x50 200 2 1 2"])
    assert unit.unit(A0_SHADOW[1:]).read_bytes() == b"\x01\x02"
    assert answers(unit, [*reads, "write_regs 0x50 3 1 1"]) == [
        (0, short + fail) for fail in (*fails, "vxcli bob write_regs fail\n")]
    assert list(seen(unit)) == []


@pytest.mark.parametrize("profile, e2prom", [("gn25l95-eeprom", 1), ("gn28l96-eeprom", 1), ("ux3361", 0), ("ux3320", None)])
def test_a0_in_the_chip(board, profile, e2prom):
    """Chips that have the page, and those that have an EEPROM; the GN chips take it byte by byte."""
    unit = prepared(board, profile, e2prom=e2prom)
    answers(unit, ["write_regs 0x50 0x7 3 1 2 3", "read_regs 160 7 3"])
    pieces = [write(7 + i, [1 + i], 0x50) for i in range(3)]
    expected = {"gn": [word for piece in pieces for word in (piece, "wait 5000")], "ux": [write(7, [1, 2, 3], 0x50)]}
    assert list(seen(unit)) == expected[profile[:2]] + ["1 read 0x50 0x07 3 ok"]
    assert (unit.path / "i2c/1/a0.bin").read_bytes()[7:10] == b"\x01\x02\x03"
    assert not unit.unit(A0_SHADOW[1:]).exists()
