"""bob get and set: their words and table rules, the print forms of get, the sources and sinks."""

import pytest

from bench import A0_SHADOW, FAIL, answers, seen
from test_registers import prepared, write

WORDS = """I2CBUS is an integer (0,1,2...)
DEV-ADDRESS is an integer (0x50 or 0x51)
TABLE is an integer (0,2,3,4,5,6,7,8,9,10,128,129...)
REG-ADDRESS is an integer (0-0xFF)
LENGTH is an integer (1-256)"""
GET_USAGE = ("Usage: vxcli bob get I2CBUS DEV-ADDRESS TABLE [REG-ADDRESS] [LENGTH]\n"
             f"e.g.: vxcli bob get 0 0x51 0 0x10 4\n{WORDS}\n")
SET_USAGE = ("Usage: vxcli bob set I2CBUS DEV-ADDRESS TABLE REG-ADDRESS LENGTH DATA1 [DATA2]...\n"
             f"e.g.: vxcli bob set 0 0x50 0 0x10 4 0x43 0x44 0x45 0x48\n{WORDS}\n"
             "DATA is an integer (0-0xFF), the DATA number must match the LENGTH\n")
HEADER = "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f\n"
A0_TABLE = "TABLE must be 0, when DEV-ADDRESS is 0x50"

START = {"": "Please specify i2c-bus number.", "x": "i2c-bus number invalid. ex: 0, 1, 2 ...",
         "'' 0x51 0": "i2c-bus number invalid. ex: 0, 1, 2 ...", "1": "Please specify DEV-ADDRESS.",
         "1 0x5g 0": "DEV-ADDRESS invalid.", "1 '' 0": "DEV-ADDRESS invalid.",
         "1 0xa2 0": "DEV-ADDRESS invalid, should be 0x50 or 0x51", "1 160 0": "DEV-ADDRESS invalid, should be 0x50 or 0x51",
         "1 0x51": "Please specify table."}
# Up to here nothing is selected.
GET_WORDS = {"1 0x51 x": "TABLE invalid.", "1 0x51 '' 0": "TABLE invalid.", "1 0x51 x 256": "REG-ADDRESS invalid.",
             "1 0x51 0 1g": "REG-ADDRESS invalid.", "1 0x51 0 '' 4": "REG-ADDRESS invalid."}
SET_WORDS = {"1 0x51 x": "TABLE invalid.", "1 0x51 4t 256": "TABLE invalid."}
# From here on, the table is.
LENGTHS = {"0": "Length is out of registers.", "7": "Length is out of registers.", "0x10000": "Length is out of registers."}
GET_RUN = {f"1 0x51 4 250 {length}": message for length, message in LENGTHS.items()}
SET_RUN = {"1 0x51 4": "Please specify REG-ADDRESS.", "1 0x51 4 256": "REG-ADDRESS invalid.",
           "1 0x51 4 0x80": "Please specify data length.", "1 0x51 4 0x80 2z": "Length invalid.",
           **{f"1 0x51 4 250 {length} 1": message for length, message in LENGTHS.items()},
           "1 0x51 4 0x80 2": "Please specify data.", "1 0x51 4 0x80 2 1": "Data number is not match legth.",
           "1 0x51 4 0x80 1 1 2": "Data number is not match legth."}


def test_words(board):
    """What is refused, with which text, and whether the table was selected before."""
    unit = prepared(board, "ux3320")
    selection = write(0x7F, [4])
    rows = [(f"{command} {words}", message + "\n" + usage, selected)
            for command, usage, tables in (("get", GET_USAGE, [(START, 0), (GET_WORDS, 0), (GET_RUN, 1)]),
                                           ("set", SET_USAGE, [(START, 0), (SET_WORDS, 0), (SET_RUN, 1)]))
            for table, selected in tables for words, message in table.items()]
    rows += [("get 1 0x50 2", A0_TABLE + "\n", 0), ("set 1 0x50 0x100 x", A0_TABLE + "\n", 0),
             ("get 1 0x51 4 0x80 4x", "Length invalid.\n", 1)]
    rows += [(f"set 1 0x51 4 0x80 2 1 {word}", "Data value invalid.\n", 1) for word in ("256", "-1", "''", "1x")]
    assert answers(unit, [words for words, _, _ in rows]) == [(1, text + FAIL) for _, text, _ in rows]
    assert list(seen(unit)) == [selection] * sum(selected for _, _, selected in rows)
    unit.unit("var/bob_chip_type").unlink()
    assert answers(unit, ["get", "set 1"]) == [(1, "Check bosa chip type fail!\n" + FAIL)] * 2


ANY = None
RULES = {
    (0, 3): ([0, 3, 4, 5, 6], "0,3,4,5,6"), (1, 5): ([0, 2, 4, 5, 6], "0,2,4,5,6"),
    (2, 9): ([0, *range(128, 136)], "0,128,129,130,131,132,133,134,135"),
    (4, 8): ([0, *range(128, 135), 255], "0,128,129,130,131,132,133,134,255"),
    (6,): ([0, 2, *range(4, 11)], "0,2,4,5,6,7,8,9,10"), (7, 10, 12, 13, 14, 15): (ANY, ""),
}
UX3365 = {"get": RULES[2, 9], "set": (ANY, "")}  # the one chip that the two commands judge differently


@pytest.mark.parametrize("command", ["get", "set"])
def test_table_rules(board, command):
    unit = prepared(board, "ux3361")
    numbers = [*range(0, 12), *range(127, 137), 254, 255, 256, 300]
    rules = {chip: rule for types, rule in RULES.items() for chip in types} | {11: UX3365[command]}
    for chip, (accepted, listed) in rules.items():
        unit.unit("var/bob_chip_type").write_text(f"{chip}\n")
        # A bad length or register stops the command right after the selection.
        tail = " 0 x" if command == "get" else ""
        results = answers(unit, [f"{command} 1 0x51 {number}{tail}" for number in numbers])
        refusal = f"TABLE must be {listed}, when DEV-ADDRESS is 0x51\n" + FAIL
        good = [number for number in numbers if accepted is ANY or number in accepted]
        assert [refusal == out for _, out in results] == [number not in good for number in numbers], chip
        assert all(out.startswith("bob:BOSA Chip Type: Unknown.\n") == (chip == 15) for _, out in results)
        assert list(seen(unit)) == [write(0x7F, [number % 256]) for number in good]
    unit.unit("var/bob_chip_type").write_text("2\n")
    unit.fault("libvx_ponApi_i2cWrite reg=0x7f")
    assert answers(unit, [command + " 1 0x51 130 0x80 1 5"]) == [(1, "i2c switch tab 130 fail.\n" + FAIL)]


def rows(data):
    lines = [f"{i:02x}; " + "".join(f"{byte:02x} " for byte in data[i:i + 16]) for i in range(0, len(data), 16)]
    return "\n".join(lines) + ("\n\n" if len(data) % 16 == 0 else "\n")


def test_get_prints(board):
    unit = prepared(board, "ux3361")
    page = bytes(range(7, 135))
    (unit.path / "i2c/1/table_82.bin").write_bytes(page)
    low = (unit.path / "i2c/1/a2_low.bin").read_bytes()[:127] + b"\x82"
    assert answers(unit, ["get 1 0x51 130", "get 1 81 0x82 0x85", "get 1 0x51 130 0x82 20", "get 1 0x51 0202 0xf0 16",
                          "get 1 0x51 130 0x80 4 9", "get 2 0x51 130", "get 0 0x51 130 1", "get 9 0x51 130 1 1"]) == [
        (0, HEADER + rows(low + page)), (0, "data = 0xc\n"), (0, rows(page[2:22])), (0, rows(page[0x70:0x80])), (0, ""),
        (0, "bob get reg fail\n"), (0, "bob get reg fail.\n"), (0, "bob get reg fail\n")]
    # One selection and one transfer each; the selection on bus 1, the transfer on the bus that was typed.
    expected = []
    for transfer in ("1 read 0x51 0x00 256 ok", "1 read 0x51 0x85 1 ok", "1 read 0x51 0x82 20 ok",
                     "1 read 0x51 0xf0 16 ok", None, "2 read 0x51 0x00 256 nak", "0 read 0x51 0x01 1 nak",
                     "9 read 0x51 0x01 1 nak"):
        expected += [write(0x7F, [0x82])] + ([transfer] if transfer else [])
    assert list(seen(unit)) == expected
    assert (unit.path / "i2c/1/table").read_text() == "130\n"


def test_a0_of_the_shadow_file_and_of_the_chip(board):
    unit = prepared(board, "gn28l95")
    shadow = unit.unit(A0_SHADOW[1:])
    shadow.write_bytes(bytes(range(256)))
    assert answers(unit, ["get 1 0x50 0", "get 1 0x50 0 0x20", "set 1 0x50 0 9 2 0xaa -2", "get 3 0x50 0 8 4"]) == [
        (0, HEADER + rows(bytes(range(256)))), (0, "data = 0x20\n"), (0, "bob set reg success\n"),
        (0, "00; 08 aa fe 0b \n")]
    shadow.unlink()
    assert answers(unit, ["get 1 0x50 0", "get 1 0x50 0 1"]) == [
        (0, f"bob:open file: {A0_SHADOW} fail!\nbob get reg fail\n"),
        (0, f"bob:open file: {A0_SHADOW} fail!\nbob get reg fail.\n")]
    assert list(seen(unit)) == [write(0x7F, [0])] * 6
    unit = prepared(board, "gn28l95-eeprom", e2prom=1)
    page = (unit.path / "i2c/1/a0.bin").read_bytes()
    assert answers(unit, ["get 1 0x50 0"]) == [(0, HEADER + rows(page))]


@pytest.mark.parametrize("profile, chip_type, pieces, wait", [
    ("ux3320", 0, (12,), 0), ("ux3320", 15, (12,), 0), ("ux3320", 7, (12,), 0), ("ux3361", 2, (4, 8), 5000),
    ("ux3365", 11, (4, 8), 5000), ("gn28l95", 6, (4, 8), 0),
])
def test_set_writes_in_the_chips_pieces(board, profile, chip_type, pieces, wait):
    unit = prepared(board, profile, chip_type)
    status, out = answers(unit, ["set 1 0x51 0 0x1c 12 " + " ".join(map(str, range(12)))])[0]
    assert (status, out.splitlines()[-1]) == (0, "bob set reg success")
    events = list(seen(unit))
    assert events[0] == write(0x7F, [0])
    writes = [event for event in events[1:] if event.startswith("1 write")]
    assert [int(event.split()[4]) for event in writes] == list(pieces)
    assert events.count("wait 5000") == (1 if wait else 0)  # after the piece that ends at 0x20
    assert (unit.path / "i2c/1/a2_low.bin").read_bytes()[0x1C:0x28] == bytes(range(12))
    assert answers(unit, ["set 2 0x51 0 0x1c 1 1"])[0][1].endswith("bob set reg fail\n")
