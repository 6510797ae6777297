"""bob get, set and table_sel: their words and table rules, the print forms of get, the sources and sinks."""

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
A0_TABLE = "TABLE must be 0, when DEV-ADDRESS is 0x50\n"

START = {"": "Please specify i2c-bus number.", "'' 0x51 0": "i2c-bus number invalid. ex: 0, 1, 2 ...",
         "1": "Please specify DEV-ADDRESS.", "1 0xa2 0": "DEV-ADDRESS invalid, should be 0x50 or 0x51",
         "1 0x51": "Please specify table.", "1 0x51 4t": "TABLE invalid."}  # up to here nothing is selected
OUT, NO_REG = "Length is out of registers.", "REG-ADDRESS invalid."
GET_RUN = {"1 0x51 4 250 0": OUT, "1 0x51 4 250 7": OUT, "1 0x51 4 250 0x10000": OUT}
SET_RUN = {"1 0x51 4": "Please specify REG-ADDRESS.", "1 0x51 4 256": NO_REG, "1 0x51 4 0x80": "Please specify data length.",
           "1 0x51 4 0x80 2z": "Length invalid.", "1 0x51 4 250 0 1": OUT, "1 0x51 4 250 7 1": OUT,
           "1 0x51 4 0x80 2": "Please specify data.", "1 0x51 4 0x80 1 1 2": "Data number is not match legth."}


def test_words(board):
    """What is refused, with which text, and whether the table was selected before."""
    unit = prepared(board, "ux3320")
    rows = [(f"{command} {words}", message + "\n" + usage, selected)
            for command, usage, run in (("get", GET_USAGE, GET_RUN), ("set", SET_USAGE, SET_RUN))
            for table, selected in ((START, 0), (run, 1)) for words, message in table.items()]
    rows += [("get 1 0x51 x 256", NO_REG + "\n" + GET_USAGE, 0), ("get 1 0x50 2", A0_TABLE, 0), ("set 1 0x50 0x100 x", A0_TABLE, 0),
             ("get 1 0x51 4 0x80 4x", "Length invalid.\n", 1), ("set 1 0x51 4 0x80 2 1 256", "Data value invalid.\n", 1)]
    assert answers(unit, [words for words, _, _ in rows]) == [(1, text + FAIL) for _, text, _ in rows]
    assert list(seen(unit)) == [write(0x7F, [4])] * sum(selected for _, _, selected in rows)
    unit.unit("var/bob_chip_type").unlink()
    assert answers(unit, ["get", "set 1"]) == [(1, "Check bosa chip type fail!\n" + FAIL)] * 2


RULES = {
    (0, 3): ([0, 3, 4, 5, 6], "0,3,4,5,6"), (1, 5): ([0, 2, 4, 5, 6], "0,2,4,5,6"),
    (2, 9, 11): ([0, *range(128, 136)], "0,128,129,130,131,132,133,134,135"),
    (4, 8): ([0, *range(128, 135), 255], "0,128,129,130,131,132,133,134,255"),
    (6,): ([0, 2, *range(4, 11)], "0,2,4,5,6,7,8,9,10"), (7, 10, 12, 13, 14): (None, ""),  # any table
}
COMMANDS = {  # words (get and set end right behind the selection), refusal, its own rules
    "get": ("get 1 0x51 {} 0 x", "TABLE must be {}, when DEV-ADDRESS is 0x51\n", {15: (None, "")}),
    "set": ("set 1 0x51 {}", "TABLE must be {}, when DEV-ADDRESS is 0x51\n", {11: (None, ""), 15: (None, "")}),
    "table_sel": ("table_sel {}", "table must be {}\n", dict.fromkeys((0, 1, 3, 5), ([0, 2, 3, 4, 5, 6], "0,2,3,4,5,6"))),
}


@pytest.mark.parametrize("command", COMMANDS)
def test_table_rules(board, command):
    unit, (words, refusal, own) = prepared(board, "ux3361"), COMMANDS[command]
    numbers = [*range(0, 12), *range(127, 137), 254, 255, 256]
    for chip, (accepted, listed) in ({chip: rule for types, rule in RULES.items() for chip in types} | own).items():
        unit.unit("var/bob_chip_type").write_text(f"{chip}\n")
        results = answers(unit, [words.format(number) for number in numbers])
        good = [number for number in numbers if accepted is None or number in accepted]
        assert [out == refusal.format(listed) + FAIL for _, out in results] == [number not in good for number in numbers], chip
        assert all(out.startswith("bob:BOSA Chip Type: Unknown.\n") == (chip == 15) for _, out in results)
        # table_sel takes the UX3320's table 2 for table 3.
        values = [3 if (command, chip, number) == ("table_sel", 0, 2) else number % 256 for number in good]
        assert list(seen(unit)) == [write(0x7F, [value]) for value in values]


def test_table_words_and_failures(board):
    unit = prepared(board, "ux3361")
    invalid, extra = (1, "table invalid.\n" + FAIL), (1, "Invalid command.\n" + FAIL)
    assert answers(unit, ["table_sel 2", "table_sel", "table_sel 0 0", "table_sel ''", "table_sel 3t"])[1:] == [
        extra, extra, invalid, invalid]
    assert list(seen(unit)) == []
    unit.fault("libvx_ponApi_i2cWrite reg=0x7f times=2")
    assert answers(unit, ["get 1 0x51 130 0x80 1", "set 1 0x51 130 0x80 1 5"]) == [(1, "i2c switch tab 130 fail.\n" + FAIL)] * 2


def rows(data):
    lines = [f"{i:02x}; " + "".join(f"{byte:02x} " for byte in data[i:i + 16]) for i in range(0, len(data), 16)]
    return "\n".join(lines) + ("\n\n" if len(data) % 16 == 0 else "\n")


def test_get_prints(board):
    unit = prepared(board, "ux3361")
    page = bytes(range(7, 135))
    (unit.path / "i2c/1/table_82.bin").write_bytes(page)
    low = (unit.path / "i2c/1/a2_low.bin").read_bytes()[:127] + b"\x82"
    gets = [("get 1 0x51 130", HEADER + rows(low + page), "1 read 0x51 0x00 256 ok"),
             ("get 1 81 0x82 0x85", "data = 0xc\n", "1 read 0x51 0x85 1 ok"),
             ("get 1 0x51 130 0x82 20", rows(page[2:22]), "1 read 0x51 0x82 20 ok"),
             ("get 1 0x51 0202 0xf0 16", rows(page[0x70:0x80]), "1 read 0x51 0xf0 16 ok"),
             ("get 1 0x51 130 0x80 4 9", "", None), ("get 2 0x51 130", "bob get reg fail\n", "2 read 0x51 0x00 256 nak"),
             ("get 0 0x51 130 1", "bob get reg fail.\n", "0 read 0x51 0x01 1 nak")]
    assert answers(unit, [words for words, _, _ in gets]) == [(0, out) for _, out, _ in gets]
    # One selection and one transfer each; the selection on bus 1, the transfer on the bus that was typed.
    assert list(seen(unit)) == [line for _, _, transfer in gets for line in (write(0x7F, [0x82]), transfer) if line]
    assert (unit.path / "i2c/1/table").read_text() == "130\n"


def test_a0_of_the_shadow_file(board):
    unit = prepared(board, "gn28l95")
    unit.unit(A0_SHADOW[1:]).write_bytes(bytes(range(256)))
    assert answers(unit, ["get 1 0x50 0", "set 1 0x50 0 9 2 0xaa -2", "get 3 0x50 0 8 4"]) == [
        (0, HEADER + rows(bytes(range(256)))), (0, "bob set reg success\n"), (0, "00; 08 aa fe 0b \n")]
    assert list(seen(unit)) == [write(0x7F, [0])] * 3


def test_set_writes_in_the_chips_pieces(board):
    """As write_regs does."""
    unit = prepared(board, "ux3361")
    assert answers(unit, ["set 1 0x51 0 0x1c 6 1 2 3 4 5 6"])[0][1].endswith("bob set reg success\n")
    assert list(seen(unit)) == [write(0x7F, [0]), write(0x1C, [1, 2, 3, 4]), "wait 5000", write(0x20, [5, 6])]
    assert answers(unit, ["set 2 0x51 0 0x1c 1 1"])[0][1].endswith("bob set reg fail\n")
