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
    kept = set()
    for i, latch in enumerate(steps(unit, " ".join(f"w:51:7f:{number:02x} r:51:7f:1" for number in range(256)))[1::2]):
        if int(latch, 16) == i:
            kept.add(i)
        last = int(latch, 16)
        assert last in TABLES[profile]
    assert kept == TABLES[profile]
    assert (unit.path / "i2c/1/table").read_text() == f"{last}\n"


@pytest.mark.parametrize("profile", CHIPS)
def test_upper_half_shows_the_selected_table(board, profile):
    unit = board(profile)
    tables = sorted(TABLES[profile])
    words = " ".join(f"w:51:7f:{table:02x} w:51:a8:{table ^ 0x55:02x}5a wait:4000" for table in tables)
    assert set(steps(unit, words)) == {"ok"}
    assert steps(unit, " ".join(f"w:51:7f:{table:02x} r:51:a8:2" for table in tables))[1::2] == [
        f"{table ^ 0x55:02x}5a" for table in tables]
    assert all((unit.path / f"i2c/1/table_{table:02x}.bin").read_bytes()[0x28] == table ^ 0x55 for table in tables)
    # A run that crosses the select register selects with the byte that falls there.
    if PAGES[profile] == 256:
        assert steps(unit, "w:51:7e:1105aa r:51:7e:3") == ["ok", "1105aa"]
        assert (unit.path / "i2c/1/table").read_text() == "5\n"


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
    unit.trace()
    steps(unit, "w:51:7f:00 w:51:10:01 r:51:7f:1")
    assert unit.trace()[-1].fields[5] == ("busy" if write_us(profile) else "ok")
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
    devices = [f"{device:02x}" for device in (0, 0x4F, 0x52, 0x55, 0x58, 0xA0, 0xA2)]
    assert set(steps(unit, " ".join(f"r:{device}:00:1 w:{device}:00:01" for device in devices))) == {BUSY}
    assert set(steps(unit, "b:0 r:51:00:1 b:2 r:51:00:1 b:ffffffff w:51:00:01")) == {BUSY}
    assert steps(unit, "r:51:100:1 r:51:00:101 w:51:100:01") == ["fail 1"] * 3
    assert steps(unit, "r:51:00:0 w:51:00:") == ["", "ok"]


@pytest.mark.parametrize("profile, table, first, count", [
    ("ux3361", 0x87, 0x80, 7), ("ux3362s", 0x80, 0xFE, 1), ("gn28l97b", 0xFF, 0x80, 7), ("gn28l96", 0x81, 0x89, 1),
    ("gn28l95", 0xFF, 0x80, 1), ("gn28l95", 2, 0xC7, 1), ("ux3320", 3, 0xD0, 1), ("ux3320s", 3, 0xF5, 7), ("ux3320s", 3, 0xF0, 1),
    ("gn25l95", 2, 0xD1, 1), ("gn25l95d", 2, 0xC0, 1), ("ux3365", 0, 0x60, 10)])
def test_registers_that_cannot_be_written(board, profile, table, first, count):
    unit = board(profile)
    select, registers = f"w:51:7f:{table:02x}", [f"{reg:02x}" for reg in range(first, first + count)]
    read = f"{select} r:51:{first:02x}:{count}"
    before = steps(unit, read)
    assert set(steps(unit, " ".join([select, *(f"w:51:{reg}:ee wait:4000" for reg in registers)]))) == {"ok"}
    assert steps(unit, read) == before and "ee" * count not in before[1]


def test_a_clock_that_was_set_back(board):
    unit = board("ux3361")
    (unit.path / "i2c/1/busy").write_text("9000000000.000000000\n")
    assert steps(unit, "r:51:60:1 r:51:60:1") == ["23", "23"]  # 35 degrees


def test_diagnostics_come_from_the_a2_page(board):
    unit = board("ux3361")
    page = unit.path / "i2c/1/a2_low.bin"
    data = page.read_bytes()
    page.write_bytes(data[:0x60] + bytes([0xFF, 0x38, 0x80, 0xE8, 1, 2, 3, 4, 0xFF, 0xFE]) + data[0x6A:])
    assert steps(unit, "diag") == ["-200 33000 258 772 65534"]
    unit.fault("libvx_ponApi_eponGetOptDiag result=3")
    unit.fault("libvx_ponApi_i2cRead reg=0x60 result=2")
    assert steps(unit, "diag diag diag") == ["fail 3", "fail 2", "-200 33000 258 772 65534"]


def test_damaged_boards_answer_with_failures(board):
    unit = board("ux3361")
    for name, text in (("chip", "UX9999\n"), ("table", "256\n"), ("eeprom", "yes\n")):
        path = unit.path / "i2c/1" / name
        kept = path.read_text()
        path.write_text(text)
        assert steps(unit, "r:51:00:1") == [BUSY], name
        path.write_text(kept)
    (unit.path / "i2c/1/table_81.bin").write_bytes(b"short")
    assert steps(unit, "w:51:7f:81 r:51:80:2 r:51:00:1")[1] == BUSY
    assert unit.run("env", "VXBOARD=/nowhere", "vxcli_bus_steps", "r:51:0:1", "get", "save", "diag").out == "fail 6\n" * 4
    assert unit.run("env", "-u", "VXBOARD", "vxcli_bus_steps", "w:51:0:1", "get").out == "fail 6\n" * 2
