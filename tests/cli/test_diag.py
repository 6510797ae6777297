"""opt, catv, catvrf, catvoa, add and generate_mod."""

import pytest

from bench import FAIL, answers, seen
from test_registers import prepared, write


def test_opt(board):
    unit = board("gn28l95")
    page = unit.path / "i2c/1/a2_low.bin"
    data = page.read_bytes()
    for live, text in [  # temperature, supply, bias, sent and received power, in the units of the diagnostics page
        ((8960, 33000, 999, 10000, 1000), "TxPwr \t10000 \t(0.00 dBm)\nRxPwr \t1000 \t(-10.00 dBm)\nTemp \t8960 \t(35 ???\n"
                                          "Vcc \t33000 \t(3300 mV)\nBias \t999 \t(1 mA)\n"),
        ((-384, 65535, 65535, 0, 65535), "TxPwr \t0 \t(-inf dBm)\nRxPwr \t65535 \t(8.16 dBm)\nTemp \t-384 \t(-1 ???\n"
                                         "Vcc \t65535 \t(6553 mV)\nBias \t65535 \t(131 mA)\n"),
    ]:
        page.write_bytes(data[:96] + b"".join((value % 65536).to_bytes(2, "big") for value in live) + data[106:])
        assert answers(unit, ["opt x y"]) == [(0, text)]
    assert unit.run("vxcli_dbm").out == "65535 powers\n"


def catv(optical, level, temperature, switch, attenuation):
    return (0, f"Input Optical Power      \t{optical} \t({optical / 10:.1f} dBm)\nOutput Level             \t{level} \t({level - 60} dBmV)\n"
               f"Temperature              \t{temperature} \t({temperature} Celsius)\nRF Switch                \t{switch} \t({switch})\n"
               f"Output Level Attenuation \t{attenuation} \t({attenuation} dBm)\n")


def test_catv(board):
    unit = board("ux3361")
    for name, value in (("optPwr", -123), ("outLvl", 40), ("temp", 65535), ("rfSwitch", 0), ("outAtte", 255)):
        (unit.path / "optics/catv" / name).write_text(f"{value}\n")
    bad, none = (1, "number invalid. ex: 0, 1, 2 ...\n" + FAIL), (1, "Please specify rf.\n" + FAIL)
    assert answers(unit, ["catv", "catvrf 0x1", "catvoa 017", "catvrf", "catvoa ''", "catvrf 300", "catv"]) == [
        catv(-123, 40, 65535, 0, 255), (0, "RF Switch                \t(1)\n"), (0, "Output Level Attenuation \t15 \n"),
        none, bad, (0, "RF Switch                \t(300)\n"),  # what the receiver refuses is not reported
        catv(-123, 40, 65535, 1, 15)]
    assert answers(unit, ["add 1"]) == [(0, "ttyconsole: tty console start\nOKredir add printk success!\n")]


# ---- generate_mod ----

REFERENCE = [231] * 18 + [232] * 19 + [233] * 8 + [234] * 7 + [235] * 4 + [236] * 2 + [
    237, 238, 239, 241, 243, 245, 246, 248, 250, 252, 253, 255, 257, 259, 261, 263, 264, 265, 267, 268, 270, 272, 274, 276,
    278, 280]


def packed(setting, code):
    """The curve through the calibrated point, as five-byte numbers of four fields that carry into one another where they
    are added within a byte."""
    shift = setting - REFERENCE[(code - 65) // 2]
    out = b""
    for place in range(0, 84, 4):
        a, b, c, d = ((value + shift) % 65536 for value in REFERENCE[place:place + 4])
        out += bytes(number % 256 for number in (a // 4, a * 64 + b // 16, b * 16 + c // 64, c * 4 + d // 256, d))
    return out


def calibrated(board, setting, code):
    unit = prepared(board, "ux3320")
    table = bytearray(128)
    table[7:9], table[0x69] = bytes([setting // 4, 0xFC + setting % 4]), code
    (unit.path / "i2c/1/table_03.bin").write_bytes(table)
    return unit


@pytest.mark.parametrize("setting, code", [(240, 101), (231, 65), (280, 232), (0, 150), (1023, 65)])
def test_generate_mod(board, setting, code):
    unit = calibrated(board, setting, code)
    curve = packed(setting, code)
    assert answers(unit, ["generate_mod"]) == [(0, "bob:generate mod lut SUCCESS\n")]
    assert list(seen(unit)) == [write(0x7F, [3]), "1 read 0x51 0x87 2 ok", "1 read 0x51 0xe9 1 ok", write(0x7F, [5]),
                                write(0x7F, [5]), write(0x80, curve)]
    assert (unit.path / "i2c/1/table_05.bin").read_bytes()[:105] == curve


@pytest.mark.parametrize("code, text", [(64, "need large than 65. LUT3.E9h = 64"), (233, "index error. index = 84")])
def test_generate_mod_outside_the_curve(board, code, text):
    unit = calibrated(board, 240, code)
    (status, out), = answers(unit, ["generate_mod"])
    assert status == 1 and text in out and out.endswith(FAIL)
    assert len(list(seen(unit))) == 3


@pytest.mark.parametrize("rule, text", [
    ("Write reg=0x7f", "i2c switch tab 3 fail.\n"), ("Read reg=0x87", "bob:read LUT3.87h fail.\n"),
    ("Read reg=0xe9", "bob:read LUT3.E9h fail.\n"), ("Write reg=0x7f skip=1", "i2c switch tab 5 fail.\n"),
    ("Write reg=0x7f skip=2", "i2c switch tab 5 fail.\nbob:generate mod lut fail\n"),
    ("Write reg=0x80", "bob:generate mod lut fail\n")])
def test_generate_mod_on_a_bad_bus(board, rule, text):
    unit = calibrated(board, 240, 101)
    unit.fault("libvx_ponApi_i2c" + rule)
    assert answers(unit, ["generate_mod"]) == [(1, text + FAIL)]


def test_generate_mod_for_other_chips(board):
    unit = prepared(board, "ux3320", 3)
    no_need = (0, "bob:no need to generate mod lut, only UX3320 need it\n")
    assert answers(unit, ["generate_mod"]) == [no_need]
    unit.unit("var/bob_chip_type").write_text("15\n")
    assert answers(unit, ["generate_mod"]) == [(1, "bob:BOSA Chip Type: Unknown.\n" + FAIL)]
    assert list(seen(unit)) == []
