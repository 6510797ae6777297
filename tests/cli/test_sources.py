"""Where init takes the image from, what it says about the sources that fail, and what it leaves in files and store; the
image files of save and restore."""

import os

import pytest

from bench import A0_SHADOW, BACKUP, CHIPS, FAIL, WORKING, answers, factory_image, loaded, section_of, seen, stored


def changed(chip, image, index):
    """A good image of its own: its A0 has a byte that no sum covers."""
    place = chip.sections["a0_tab"][0] + 0x70
    return image[:place] + bytes([index]) + image[place + 1:]


def put(path, kind, chip, image):
    """Makes a source of this kind. Returns what init says before "bob:read data ... fail.", None if it is good."""
    shown = "/" + str(path).partition("/unit/")[2]
    short = f"read_data_from_file [{shown}] failed! {chip.record} size [{chip.size}], get count [%d] \n"
    a2 = chip.sections["a2_lower"][0]
    wrong = (image[a2 + 0x5F] + 1) % 256
    path.unlink(missing_ok=True)
    data, said = {
        "good": (image, None),
        "long": (image + b"tail" * 100, None),
        "short": (image[:-1], short % (chip.size - 1)),
        "empty": (b"", short % 0),
        "wrong": (image[:a2 + 0x5F] + bytes([wrong]) + image[a2 + 0x60:],
                  f"checksum A2.5Fh is not correct, should be [0x{image[a2 + 0x5F]:x}]; A2.5Fh=[0x{wrong:x}]\n"),
        "missing": (None, f"open file: {shown} fail!\n"),
        "directory": (None, f"open file: {shown} fail!\n"),
    }[kind]
    if data is not None:
        path.write_bytes(data)
    if kind == "directory":
        path.mkdir()
    return said


def contents(path):
    return path.read_bytes() if path.is_file() else None


ALL = [("good", "missing"), ("good", "good"), ("good", "wrong"), ("long", "missing"), ("missing", "good"), ("empty", "good"),
       ("wrong", "good"), ("directory", "good"), ("short", "long"), ("missing", "short"), ("wrong", "wrong"), ("wrong", "missing")]
FEW = [("short", "good"), ("empty", "wrong")]


@pytest.mark.parametrize("profile, working, backup", [
    *[("ux3361", *kinds) for kinds in ALL],
    *[(profile, *kinds) for profile in ("ux3320", "ux3320s", "gn25l95", "gn28l97b", "gn28l95") for kinds in FEW]])
def test_each_source_fails_over_to_the_next(board, profile, working, backup):
    chip, unit = CHIPS[profile], board(profile)
    factory = factory_image(profile, unit)
    images = [changed(chip, factory, 1), changed(chip, factory, 2), factory]
    paths = [unit.unit(WORKING[1:]), unit.unit(BACKUP[1:])]
    said = [put(path, kind, chip, image) for path, kind, image in zip(paths, (working, backup), images)] + [None]
    source = said.index(None)
    before = [contents(path) for path in paths]
    names = [WORKING, BACKUP, chip.default]
    out = "".join(f"{said[i]}bob:read data from {names[i]} fail.\n" for i in range(source))
    out = f"bob:BOSA Chip Type: {chip.name}.\n{out}bob:read data from {names[source]}\n"
    cannot_save = source > 0 and working == "directory"
    if cannot_save:
        out += f"bob:open file: {WORKING} fail!\n"
    assert unit.run("vxcli", "bob", "init")[:2] == (0, out)

    used = images[source]
    after = [used, before[1] if source == 1 else used, used]
    if source == 0:
        after = [before[0], before[0] if backup == "missing" else before[1], None]
    elif cannot_save:
        after = [*before, None]
    assert [contents(paths[0]), contents(paths[1]), stored(unit)] == after
    page = unit.unit(A0_SHADOW[1:]) if chip.gn else unit.path / "i2c/1/a0.bin"
    assert page.read_bytes()[:128] == section_of(chip, used, "a0_tab")[:128]


def test_the_store_refills_the_working_image(board):
    """A store that holds an image decides, whatever the working image was; one that fails leaves it."""
    chip, unit = CHIPS["ux3361"], board("ux3361")
    factory = factory_image("ux3361", unit)
    other, working = changed(chip, factory, 9), unit.unit(WORKING[1:])
    working.write_bytes(other)
    assert unit.run("vxcli_bus_steps", "save").out == "ok\n"
    for kind in ("missing", "good"):
        put(working, kind, chip, factory)
        assert answers(unit, ["init"]) == [(0, loaded(chip, WORKING))]
        assert contents(working) == other
    put(working, "good", chip, factory)
    unit.fault("libvx_sys_getBob")
    assert answers(unit, ["init"]) == [(0, loaded(chip, WORKING))] and contents(working) == factory
    assert answers(unit, ["read"]) == [(0, "")] and contents(working) == other


@pytest.mark.parametrize("profile", CHIPS)
@pytest.mark.parametrize("kind", ["missing", "wrong"])
def test_no_source_at_all(board, profile, kind):
    chip, unit = CHIPS[profile], board(profile)
    default = unit.unit(chip.default[1:])
    said = f"bob:open file: {chip.default} fail!\n"
    if kind == "wrong":
        total = section_of(chip, factory_image(profile, unit), "a2_lower")[0x5F]
        with open(default, "a") as text:
            text.write(f"a2_lower\n0x5F={(total + 7) % 256};\n")
        said = (f"checksum A2.5Fh is not correct, should be [0x{total:x}]; A2.5Fh=[0x{(total + 7) % 256:x}]\n")
    else:
        default.unlink()
    unit.trace()
    attempt = loaded(chip).replace(f"bob:read data from {chip.default}\n", f"{said}bob:read data from {chip.default} fail.\n")
    retry = "warning!!! bob_initialize failed, reinit again!!!\n"
    assert answers(unit, ["init", "driver", "restore"]) == [
        (1, 3 * (attempt + retry) + FAIL), (0, "bob:bob driver init FAIL.\n"),
        (1, f"{said}bob:read data from {chip.default} fail.\n{FAIL}")]
    assert sum(" write " in line and "0x7f" not in line for line in seen(unit)) == 0
    assert not any(unit.unit(path[1:]).exists() for path in (WORKING, BACKUP, A0_SHADOW)) and stored(unit) is None


def test_factory_text_of_any_shape(board):
    """Lines that are none, registers that no field has, lines before the first keyword, a line longer than the buffer, no
    line at all: nothing of it gets into the image, and what is left out is zero."""
    chip, unit = CHIPS["gn28l97b"], board("gn28l97b")
    default = unit.unit(chip.default[1:])
    default.write_text("0x01=0x11;\n" + "=" * 600 + "\n" + "y" * 127 + "0x02=0x22;\na2_tableFF a2_table86 0x85=1;\n0x80=1;\n0xC0=2;\n"
                       "99=3;\n0x81=4\n0x82 =5;\n0x82= 5;\n0x80=;\n;0x82=5;\n0x82;=5;\n0x82==5;\n=5;\na2_lut2\n0x83=6;\n\x00junk\n"
                       "a2_tableFF\n0x89=0x107;\n0x8A=8;\na0_tab\n0xFF=9;\n256=1;\n# a2_lower\n0x7A=10;\n0x80=1;\n0x01=256;\n" +
                       "z" * 127 + "a0_tab=\n0x7B=11")
    wanted = bytearray(chip.size)
    for section, index, value in [("a2_table86", 0, 1), ("a2_table86", 3, 6), ("a2_tableFF", 9, 7), ("a0_tab", 255, 9),
                                  ("a2_lower", 0x7A, 10), ("a0_tab", 0x7B, 11)]:
        wanted[chip.sections[section][0] + index] = value
    assert answers(unit, ["init"])[0] == (0, loaded(chip))
    assert unit.unit(WORKING[1:]).read_bytes() == bytes(wanted)


def test_save_and_restore_without_their_files(board):
    """The working image cannot be made: no copy is tried, the library is called all the same. No backup: all is well."""
    unit = board("ux3361")
    answers(unit, ["init"])
    working = unit.unit(WORKING[1:])
    duration = "Bob chip_type: UX3361\nvxcli bob write_all_datas_to_flash duration: 0.000000\n"
    success = f"bob:read data from {CHIPS['ux3361'].default} SUCCESS\n"
    working.unlink()
    working.mkdir()
    os.utime(unit.unit(BACKUP[1:]), (1, 1))
    unit.trace()
    no_file = f"bob:open file: {WORKING} fail!\n"
    assert answers(unit, ["save", "restore"]) == [(0, no_file + duration), (0, success + no_file)]
    assert [line for line in seen(unit) if line.startswith("call")] == ["call libvx_sys_saveBob"] * 2
    assert unit.unit(BACKUP[1:]).stat().st_mtime == 1
    working.rmdir()
    unit.unit("userconfig/config").rename(unit.unit("userconfig/away"))
    assert answers(unit, ["save", "restore"], stderr=None) == [(0, duration), (0, success)]
    assert working.read_bytes() == stored(unit)
