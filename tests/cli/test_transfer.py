"""Calibration images on the bus, chip by chip: every transfer, every wait, in order, of init, restore, save."""

import re

import pytest

from bench import (A0_SHADOW, BACKUP, CHIPS, FAIL, SUPPLY, WORKING, answers, events, factory_image, loaded, registers,
                   section_of, seen, stored)

DURATION = "vxcli bob write_all_datas_to_flash duration: 0.000000\n"


def fresh(board, profile):
    """A board and its factory image; in both bit 6 of A2 register 0x6E, which is pulsed, is set to begin with."""
    unit = board(profile)
    with open(unit.unit(CHIPS[profile].default[1:]), "a") as text:
        text.write("a2_lower\n0x6E=0x48;\n")
    unit.trace()
    return unit, factory_image(profile, unit)


def patched(chip, image, changes):
    """The image with bytes changed, given as {(section, index): value}."""
    image = bytearray(image)
    for (section, index), value in changes.items():
        image[chip.sections[section][0] + index] = value
    return bytes(image)


def read_back(chip, image):
    """What a loaded image becomes when it is read back."""
    if chip.record == "bob_data_gn_s":
        return patched(chip, image, {("a2_lut2", 0x44): 0, **{("a2_lut0", i): 0 for i in range(128)}})
    if chip.name == "GN28L96":  # its table 0xFF is never written: behind the name the chip has nothing
        return patched(chip, image, {("a2_tableFF", i): 0 for i in (7, 8, 9)})
    return image if chip.gn else patched(chip, image, {("a2_lower", 0x6E): 0x08})


def files(unit):
    return [unit.unit(path[1:]).read_bytes() for path in (WORKING, BACKUP)] + [stored(unit)]


def status_files(unit):
    return [unit.unit("var/bob_" + name).read_text() for name in ("chip_type", "driver_status", "e2prom_status")]


@pytest.mark.parametrize("profile", CHIPS)
def test_life_of_a_chip_without_eeprom(board, profile):
    chip, (unit, image) = CHIPS[profile], fresh(board, profile)
    assert unit.run("vxcli", "bob", "init")[:2] == (0, loaded(chip))
    assert list(seen(unit)) == list(events(chip, f"{chip.find} !getBob {chip.write} !saveBob {SUPPLY}", image))
    assert status_files(unit) == [f"{chip.type}\n", "1\n", "0\n"]
    assert files(unit) == [image] * 3
    if chip.gn:
        assert unit.unit(A0_SHADOW[1:]).read_bytes() == section_of(chip, image, "a0_tab")
    for section, (_, count) in chip.sections.items():
        name = registers(profile, section)
        if name and not (chip.gn and section == "a0_tab"):
            wanted = section_of(chip, image if section == "a2_lut2" else read_back(chip, image), section)
            assert (unit.path / "i2c/1" / name).read_bytes()[:count] == wanted, section

    # What is changed in the chip is what is saved, and loaded at the next start.
    answers(unit, ["write_reg 0x51 0x70 0x5a", "write_reg 0x50 0xc0 0xa5"])
    unit.trace()
    assert unit.run("vxcli", "bob", "save")[:2] == (0, f"Bob chip_type: {chip.name}\n{DURATION}")
    assert list(seen(unit)) == list(events(chip, f"{chip.read} !saveBob"))
    saved = patched(chip, read_back(chip, image), {("a2_lower", 0x70): 0x5A, ("a0_tab", 0xC0): 0xA5})
    assert files(unit) == [saved] * 3
    unit.power_cycle()
    unit.unit(BACKUP[1:]).unlink()
    unit.trace()
    assert unit.run("vxcli", "bob", "init")[:2] == (0, loaded(chip, WORKING))
    assert list(seen(unit)) == list(events(chip, f"{chip.find} !getBob {chip.write} {SUPPLY}", saved))
    assert files(unit) == [saved] * 3
    assert (unit.path / "i2c/1/a2_low.bin").read_bytes()[0x70] == 0x5A

    # And the way back.
    unit.trace()
    assert unit.run("vxcli", "bob", "restore")[:2] == (0, f"bob:read data from {chip.default} SUCCESS\n")
    before = "@2 c4=00 " if chip.record == "bob_data_gn_s" else ""
    assert list(seen(unit)) == list(events(chip, f"!saveBob {before}{chip.write}", image))
    assert files(unit) == [image] * 3


@pytest.mark.parametrize("profile", CHIPS)
def test_life_of_a_chip_with_eeprom(board, profile):
    chip, unit = CHIPS[profile], board(profile + "-eeprom")
    unit.trace()
    no_need = "No need to {} if eeprom exists!\n"
    assert answers(unit, ["init", "save", "write_all_datas_to_flash", "restore"]) == [
        (0, f"bob:BOSA Chip Type: {chip.name}.\nbob:init from EEPROM.\n"),
        *[(0, no_need.format("save"))] * 2, (0, no_need.format("restore"))]
    assert list(seen(unit)) == list(events(chip, f"{chip.find} {SUPPLY}"))
    assert status_files(unit) == [f"{chip.type}\n", "1\n", "1\n"]
    assert not any(unit.unit(path[1:]).exists() for path in (WORKING, BACKUP, A0_SHADOW)) and stored(unit) is None


# Two transfers that fail, as rules of the board, and the chip's sequence with what becomes of them: a select that fails
# costs its table, any other write only itself.
@pytest.mark.parametrize("profile, fault, cut, said", [
    ("ux3361", "reg=0x7f skip=3", ("@82 ~10 a2_table82:107 ~10", "@82 ~10"), "i2c switch tab 130 fail.\n"),
    ("ux3320s", "reg=0x7f skip=8", ("@3 ~10 a2_lut3:125", "@3"), "i2c switch tab 3 fail.\n"),
    ("ux3320", "reg=0x7f skip=8", ("@3 a2_lut3:93", "@3"), "i2c switch tab 3 fail.\n"),
    ("gn28l95", "reg=0x90 skip=2", ("", ""), ""),
    ("ux3362s", "reg=0x6e", ("", ""), ""),
])
def test_transfers_that_fail(board, profile, fault, cut, said):
    chip, (unit, image) = CHIPS[profile], fresh(board, profile)
    unit.fault("libvx_ponApi_i2cWrite " + fault)
    assert unit.run("vxcli", "bob", "init")[:2] == (0, f"{loaded(chip)}{said}bob:write data to {chip.name} fail.\n")
    wanted = list(events(chip, f"{chip.find} !getBob {chip.write.replace(*cut)} !saveBob {SUPPLY}", image))
    lines = list(seen(unit))
    assert [line.replace(" fault", " ok") for line in lines] == wanted and sum(" fault" in line for line in lines) == 1
    assert status_files(unit)[1] == "0\n" and files(unit) == [image] * 3
    unit.fault("libvx_ponApi_i2cWrite times=1")
    status, out = answers(unit, ["restore"])[0]
    assert status == 1 and out.endswith(f"bob:write data to {chip.name} fail.\n" + FAIL)


@pytest.mark.parametrize("profile", CHIPS)
def test_save_of_a_chip_that_fails(board, profile):
    chip, (unit, image) = CHIPS[profile], fresh(board, profile)
    answers(unit, ["init"])
    table = int(re.search("@(.+?) ", chip.read)[1], 16)  # the first that is read
    for fault, said in [("dev=0x51 reg=0x80", f"__ux_read_lut {table} fail.\n"), ("dev=0x51 reg=0x00", "__ux_read_lut 0 fail.\n"),
                        *([] if chip.gn else [("dev=0x50", "read_from_ux_a0 fail.\n")])]:
        unit.fault("libvx_ponApi_i2cRead " + fault)
        assert answers(unit, ["save"]) == [(1, f"{said}read data from {chip.saved_as} fail.\n{FAIL}")], fault
    # Readable and wrong: a byte of A2 lower that its sum covers.
    answers(unit, ["write_reg 0x51 0x05 0x77"])
    total = sum((unit.path / "i2c/1/a2_low.bin").read_bytes()[:0x5F]) % 256
    was = section_of(chip, image, "a2_lower")[0x5F]
    assert answers(unit, ["write_all_datas_to_flash"]) == [(1, (
        f"checksum A2.5Fh is not correct, should be [0x{total:x}]; A2.5Fh=[0x{was:x}]\n"
        f"{chip.saved_as} data not correct.\n{FAIL}"))]
    assert files(unit) == [image] * 3


@pytest.mark.parametrize("number, name", [(7, "UX3326"), (14, "HLC10P6")])
def test_chips_without_a_record(board, number, name):
    """Nothing is on the bus; the image files are empty afterwards, and that counts as success."""
    unit = board("ux3361")
    unit.unit("var/bob_chip_type").write_text(f"{number}\n")
    for words, out in (("save", f"Bob chip_type: {name}\n{DURATION}"), ("restore", "")):
        unit.unit(WORKING[1:]).write_text("old")
        unit.trace()
        assert answers(unit, [words]) == [(0, out)]
        assert list(seen(unit)) == ["call libvx_sys_saveBob"] and files(unit) == [b""] * 3


@pytest.mark.parametrize("profile", ["ux3320", "ux3320s"])
def test_lut3_is_read_whole(board, profile):
    """What a failing read of table 3 says, on the two chips that read it by a routine of its own."""
    unit, _ = fresh(board, profile)
    answers(unit, ["init"])
    unit.fault("libvx_ponApi_i2cRead reg=0x80 skip=3")
    unit.fault("libvx_ponApi_i2cWrite reg=0x7f skip=4")
    said = f"__ux_read_lut3 fail.\ni2c switch tab 0 fail.\nread data from {profile} fail.\n{FAIL}"
    assert answers(unit, ["save"]) == [(1, said)]
