"""The chip models on the bus, as a tool sees them that pages and waits wrongly."""

import pytest

from bench import CHIPS

PAGES = {"ux3320": 256, "ux3320s": 16, "ux3361": 16, "ux3362s": 16, "ux3365": 16, "gn25l95": 8, "gn25l95d": 8, "gn28l97b": 8,
         "gn28l96": 8, "gn28l95": 8}
UX336X, GN28L97 = {0, *range(0x80, 0x88)}, {0, *range(0x80, 0x87), 0xFF}
TABLES = {"ux3320": {0, 3, 4, 5, 6}, "ux3320s": {0, 3, 4, 5, 6}, "ux3361": UX336X, "ux3362s": UX336X, "ux3365": UX336X,
          "gn25l95": {0, 2, 4, 5, 6}, "gn25l95d": {0, 2, 4, 5, 6}, "gn28l97b": GN28L97, "gn28l96": GN28L97,
          "gn28l95": {0, 2, *range(4, 11), 0xFF}}
BUSY = "fail 6"


def steps(unit, text):
    return unit.run("vxcli_bus_steps", *text.split()).out.splitlines()


def write_us(profile):
    return 4000 if PAGES[profile] == 16 else 0


@pytest.mark.parametrize("profile", CHIPS)
def test_only_its_tables_latch(board, profile):
    unit = board(profile)
    latches = [int(latch, 16) for latch in steps(unit, " ".join(f"w:51:7f:{n:02x} r:51:7f:1" for n in range(256)))[1::2]]
    assert {n for n, latch in enumerate(latches) if n == latch} == TABLES[profile] == set(latches)
    assert (unit.path / "i2c/1/table").read_text() == f"{latches[-1]}\n"


@pytest.mark.parametrize("profile", CHIPS)
def test_a_write_wraps_inside_its_page(board, profile):
    unit = board(profile)
    size, first = PAGES[profile], 0x4C
    end = first // size * size + size
    assert steps(unit, f"w:51:40:{'00' * size if size < 256 else '00' * 32} wait:4000 "
                       f"w:51:{first:02x}:a1a2a3a4a5a6a7a8")[-1] == "ok"
    page = (unit.path / "i2c/1/a2_low.bin").read_bytes()
    for i in range(8):
        place = first + i if first + i < end else first + i - size
        assert page[place] == 0xA1 + i, i


@pytest.mark.parametrize("profile", CHIPS)
def test_nothing_is_acknowledged_while_it_writes(board, profile):
    unit = board(profile)
    too_soon = BUSY if write_us(profile) else "ok"
    assert steps(unit, "w:51:7f:00 w:51:10:01 w:51:11:02 wait:3999 w:51:12:03 wait:1 w:51:13:04") == [
        "ok", "ok", too_soon, too_soon, "ok"]
    assert steps(unit, "r:51:13:1 w:51:10:05 r:51:10:1 wait:4000 r:51:10:1 w:51:7f:00 r:51:10:1") == [
        "04", "ok", BUSY if write_us(profile) else "05", "05", "ok", "05"]
    # A later process is never too soon, neither with its first transfer nor with the next.
    assert steps(unit, "w:51:10:01") == ["ok"]
    assert steps(unit, "r:51:10:1 r:51:10:1") == ["01", "01"]


@pytest.mark.parametrize("profile", ["gn25l95", "gn28l95", "gn28l96"])
def test_a0_of_the_gn_chips(board, profile):
    assert steps(board(profile), "r:50:00:1 w:50:00:01") == [BUSY, BUSY]
    unit = board(profile + "-eeprom")
    assert steps(unit, "w:50:c0:01 w:50:c1:02 wait:4000 w:50:c1:03 wait:4000 r:50:c0:2") == ["ok", BUSY, "ok", "0103"]


def test_other_addresses_do_not_answer(board):
    unit = board("ux3361")
    assert set(steps(unit, " ".join(f"r:{device}:00:1 w:{device}:00:01" for device in ("4f", "52", "a2")))) == {BUSY}
    assert set(steps(unit, "b:0 r:51:00:1 b:2 r:51:00:1 b:ffffffff w:51:00:01")) == {BUSY}
    assert steps(unit, "r:51:100:1 r:51:00:101 w:51:100:01 r:51:00:0 w:51:00:") == ["fail 1"] * 3 + ["", "ok"]


@pytest.mark.parametrize("profile, table, first, count", [
    ("ux3361", 0x87, 0x80, 7), ("ux3362s", 0x80, 0xFE, 1), ("gn28l97b", 0xFF, 0x80, 7), ("gn28l95", 2, 0xC7, 1),
    ("ux3320s", 3, 0xF0, 1), ("gn25l95", 2, 0xD1, 1), ("ux3365", 0, 0x60, 10)])
def test_registers_that_cannot_be_written(board, profile, table, first, count):
    unit = board(profile)
    select, read = f"w:51:7f:{table:02x}", f" r:51:{first:02x}:{count}"
    before = steps(unit, select + read)[1]
    writes = " ".join(f"w:51:{reg:02x}:ee wait:4000" for reg in range(first, first + count))
    assert steps(unit, f"{select} {writes}{read}")[-1] == before != "ee" * count


def test_damaged_boards_answer_with_failures(board):
    unit = board("ux3361")
    table = unit.path / "i2c/1/table"
    table.write_text("256\n")
    assert steps(unit, "r:51:00:1") == [BUSY]
    table.write_text("0\n")
    assert unit.run("env", "VXBOARD=/nowhere", "vxcli_bus_steps", "r:51:0:1", "get", "save", "diag").out == "fail 6\n" * 4
    assert unit.run("env", "-u", "VXBOARD", "vxcli_bus_steps", "w:51:0:1", "get").out == "fail 6\n" * 2
