"""How init finds out which chip there is: probes, retries, failing transfers, the EEPROM flag, the supply."""

import pytest

from bench import CHIPS, FAIL, SUPPLY, answers, events, loaded, seen

RETRY = "warning!!! bob_initialize failed, reinit again!!!\n"
CHECK = "Check bosa chip type fail!\n"
UNKNOWN = "bob:BOSA Chip Type: Unknown.\n"
NO_ID, NO_INDEX = "vxcli bob read chip ID reg fail\n", "vxcli bob read table index fail\n"
SELECT, READ = "libvx_ponApi_i2cWrite reg=0x7f ", "libvx_ponApi_i2cRead "


def again(table, count):
    return f"i2c switch tab {table} fail {count} times, retry it after sleep 500ms\n"


def failed(table):
    return f"i2c switch tab {table} fail.\n"


def from_eeprom(profile):
    return f"bob:BOSA Chip Type: {CHIPS[profile].name}.\nbob:init from EEPROM.\n"


# Rules of the board; what the first attempt says before it finds the chip; and, if it does not, how it ends: a second
# attempt then goes well. A rule that fires keeps the call from the rules below it, and from their counts.
IDENTIFICATIONS = [
    ("ux3361", [SELECT + "times=3"], again(135, 1) + again(135, 2) + failed(135), UNKNOWN),
    ("ux3320", [SELECT + "times=6"], again(135, 1) + again(135, 2) + failed(135) + 2 * failed(255), failed(3) + CHECK),
    # One counter for all probes: it fails at the first, the second and the fourth.
    ("gn25l95", [SELECT, SELECT + "skip=1", SELECT + "skip=4"], again(135, 1) + again(255, 2), failed(3) + CHECK),
    ("gn25l95", [SELECT + "skip=4"], "", failed(2) + CHECK),
    # Reads.
    ("ux3365", [READ + "reg=0x80"], NO_ID, UNKNOWN),
    ("gn28l95", [READ + "reg=0x7f times=3"], 3 * NO_INDEX, UNKNOWN),
    ("ux3320", [READ + "reg=0x80 times=3"], 3 * NO_ID, None),
    ("ux3320s", [READ + "reg=0xd0"], "", "vxcli bob read_reg fail for UX3320\n" + CHECK),
    ("ux3320s", [READ + "reg=0xf5"], "", NO_INDEX + CHECK),
    ("gn25l95d", [READ + "reg=0xd1"], "", "vxcli bob read_reg fail for GN25L95\n" + CHECK),
    ("gn25l95d", [READ + "reg=0x7f skip=4"], "", CHECK),
    # The EEPROM flag: the chip is known by then.
    *[(profile, [fault], "", f"bob:BOSA Chip Type: {CHIPS[profile].name}.\n{said}bob:read regs fail.\n")
      for profile, probes, table, reg, message in [
          ("ux3361", 1, 128, 0xFE, "DS.feh"), ("ux3365", 1, 128, 0xFE, "DS.feh"), ("gn28l97b", 2, 129, 0x89, "LUT81.89h"),
          ("gn28l95", 3, 2, 0xC7, "LUT2.c0h"), ("gn25l95d", 5, 2, 0xC0, "LUT2.c0h"), ("ux3320s", 4, 3, 0xF0, "LUT3.f0h")]
      for fault, said in [(f"{READ}reg=0x{reg:02x}", f"bob:read {message} fail.\n"),
                          (f"{SELECT}skip={probes}", failed(table))]],
]


@pytest.mark.parametrize("profile, faults, said, end", IDENTIFICATIONS)
def test_failing_transfers(board, profile, faults, said, end):
    unit = board(profile + "-eeprom")
    for rule in faults:
        unit.fault(rule)
    unit.trace()
    out = said + from_eeprom(profile) if end is None else said + end + RETRY + from_eeprom(profile)
    assert unit.run("vxcli", "bob", "init")[:2] == (0, out)
    waits = [line for line in seen(unit) if line.startswith("wait")]
    retries = ["wait 500000"] * said.count("retry it")
    assert waits == retries + ["wait 1000000"] * (1 if end is None else 2) and unit.faults() == []


@pytest.mark.parametrize("faults, said, chip_type, driver", [
    (SELECT + "times=always", again(135, 1) + again(135, 2) + failed(135) + 2 * failed(255) + failed(3) + CHECK, None, None),
    (READ + "reg=0xf0 times=always", "bob:BOSA Chip Type: UX3320S.\nbob:read LUT3.f0h fail.\nbob:read regs fail.\n", "3\n", "0\n"),
])
def test_three_attempts(board, faults, said, chip_type, driver):
    unit = board("ux3320s")
    unit.fault(faults)
    assert unit.run("vxcli", "bob", "init")[:2] == (1, 3 * (said + RETRY) + FAIL)
    for name, text in (("chip_type", chip_type), ("driver_status", driver), ("e2prom_status", None)):
        path = unit.unit("var/bob_" + name)
        assert (path.read_text() if path.exists() else None) == text


@pytest.mark.parametrize("profile, table, index, data, found", [
    ("ux3361", "87", 0, b"UX3363", "UX3361"), ("ux3361", "87", 4, b"632", None), ("ux3361", "87", 4, b"650", "UX3365"),
    ("ux3365", "87", 4, b"630", "UX3362S"), ("gn28l97b", "ff", 6, b"6", "GN28L96"), ("gn28l97b", "ff", 6, b"5", None),
    ("ux3320s", "03", 0x7B, b"T", "UX3320"), ("ux3320", "03", 0x75, b"UX3320S", "UX3320S"), ("ux3320", "03", 0x50, b"\xa3", None),
    ("gn25l95", "02", 0x51, b"\xa4", "GN25L95D"), ("gn25l95", "02", 0x51, b"\xa5", None),
])
def test_signatures(board, profile, table, index, data, found):
    """What the identification registers say decides; without a known chip the type file says so."""
    unit = board(profile + "-eeprom")
    page = unit.path / "i2c" / "1" / f"table_{table}.bin"
    page.write_bytes(page.read_bytes()[:index] + data + page.read_bytes()[index + len(data):])
    names = {chip.name: chip.type for chip in CHIPS.values()}
    assert answers(unit, ["init"]) == [(0, f"bob:BOSA Chip Type: {found}.\nbob:init from EEPROM.\n") if found else
                                       (1, 3 * (UNKNOWN + RETRY) + FAIL)]
    assert unit.unit("var/bob_chip_type").read_text() == f"{names.get(found, 15)}\n"


@pytest.mark.parametrize("vcc, attempts", [(30999, 3), (31000, 1), (35000, 1), (35001, 3)])
def test_supply(board, vcc, attempts):
    unit, chip = board("ux3361-eeprom"), CHIPS["ux3361"]
    page = unit.path / "i2c/1/a2_low.bin"
    data = page.read_bytes()
    page.write_bytes(data[:0x62] + vcc.to_bytes(2, "big") + data[0x64:])
    unit.trace()
    abnormal = f"PON Voltage abnormal: {vcc}\n" if attempts == 3 else ""
    assert unit.run("vxcli", "bob", "init")[:2] == (0, attempts * (from_eeprom("ux3361") + abnormal))
    assert list(seen(unit)) == list(events(chip, f"{chip.find} {SUPPLY}")) * attempts


def test_supply_that_cannot_be_read(board):
    unit = board("gn28l95")
    chip, warning = CHIPS["gn28l95"], "warning!!! libvx_ponApi_eponGetOptDiag failed, reinit again!!!\n"
    unit.fault("libvx_ponApi_eponGetOptDiag")
    unit.fault(READ + "dev=0x51 reg=0x60")
    # The second and third attempts find the image that the first has left.
    stored = loaded(chip, "/var/velmarix_bob.bin")
    assert unit.run("vxcli", "bob", "init")[:2] == (0, loaded(chip) + warning + stored + warning + stored)
