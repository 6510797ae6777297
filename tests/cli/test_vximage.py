"""vximage against the bench's own knowledge of the records, and against what vxcli makes of the same images."""

import os
import random
from pathlib import Path

import pytest

from bench import CHIPS, WORKING, answers, section_of, table_sums
from conftest import BUILD, execute

# Checked besides the pages: name, index in the section, and the marker that must be there; the others' sum comes last.
LUT3 = ("a2_lut3", [("LUT3.80h", 0x00, 0xAA), ("LUT3.DCh", 0x5C, 0x55), ("LUT3.DBh", 0x5B, None)])
T80 = ("a2_table80", [("T80.80h", 0x00, 0xAA), ("T80.E6h", 0x66, None)])


def vximage(*words, stdin=""):
    return execute(BUILD / "bin/vximage", *words, stdin=stdin)


def checks(profile, image):
    """(name, offset, what must be there), in the tool's order."""
    chip, section = CHIPS[profile], lambda name: section_of(CHIPS[profile], image, name)
    a0, a2 = chip.sections["a0_tab"][0], chip.sections["a2_lower"][0]
    yield "A0.3Fh", a0 + 0x3F, sum(section("a0_tab")[:0x3F]) % 256
    yield "A0.5Fh", a0 + 0x5F, sum(section("a0_tab")[0x40:0x5F]) % 256
    yield "A2.5Fh", a2 + 0x5F, sum(section("a2_lower")[:0x5F]) % 256
    table, rows = ("", []) if chip.gn else LUT3 if "a2_lut3" in chip.sections else T80
    for name, index, marker in rows:
        yield name, chip.sections[table][0] + index, marker or sum(table_sums(profile, image).values()) % 256


def verdict(profile, path, image):
    """The lines of `vximage check` about checks."""
    for name, offset, wanted in checks(profile, image):
        right = image[offset] == wanted
        yield f"{path}: {name} 0x{image[offset]:02x}, " + ("right" if right else f"wrong: should be 0x{wanted:02x}")


def flipped(image, offsets):
    return bytes(byte ^ 0x35 * (place in offsets) for place, byte in enumerate(image))


@pytest.mark.parametrize("profile", CHIPS)
def test_checks_and_fix(board, profile, tmp_path):
    chip, unit = CHIPS[profile], board(profile)
    answers(unit, ["init"])
    image = unit.unit(WORKING[1:]).read_bytes()
    # Every byte of the record changed alone: those that a check covers, and no others, are found.
    images = {str(tmp_path / f"{place}.bin"): flipped(image, [place]) for place in range(len(image))}
    for path, data in images.items():
        Path(path).write_bytes(data)
    status, out, err = vximage("check", "--chip", chip.name.lower(), *images)
    assert (status, err) == (1, "")
    lines = [line for line in out.splitlines() if ": note: " not in line and ": record of " not in line]
    assert lines == [line for path, data in images.items() for line in verdict(profile, path, data)]

    # All checks from one on fail: vxcli names that one, and fix repairs them all.
    path, rows = unit.unit(WORKING[1:]), list(checks(profile, image))
    for place, (name, offset, _) in enumerate(rows):
        bad = flipped(image, [offset for _, offset, _ in rows[place:]])
        path.write_bytes(bad)
        (unit.path / "flash/bob").write_bytes(b"\xff" * 0x4000)  # nothing that init would take instead
        wanted = {row[0]: row[2] for row in checks(profile, bad)}[name]
        said = f"0x{wanted:{'X' if name in ('LUT3.80h', 'LUT3.DCh', 'T80.80h') else 'x'}}"
        path.chmod(0o640)
        said = [f"checksum {name} is not correct, should be [{said}]; {name}=[0x{bad[offset]:x}]"]
        assert [line for line in answers(unit, ["init"])[0][1].splitlines() if line.startswith("checksum")] == said
        path.write_bytes(bad)
        assert vximage("fix", "--chip", chip.name, path)[::2] == (0, "")
        assert (path.read_bytes(), path.stat().st_mode & 0o777) == (image, 0o640)


@pytest.mark.parametrize("profile", CHIPS)
def test_convert(board, profile, tmp_path):
    chip, unit, text, back = CHIPS[profile], board(profile), tmp_path / "text", tmp_path / "back"
    answers(unit, ["init"])
    image, default = unit.unit(WORKING[1:]).read_bytes(), unit.unit(chip.default[1:])
    chosen = ("--chip", chip.name)
    assert vximage("convert", default, back, *chosen) == (0, "", "") and back.read_bytes() == image
    # The way back, through vxcli.
    assert vximage("convert", *chosen, unit.unit(WORKING[1:]), default)[0] == 0
    unit.unit(WORKING[1:]).unlink()
    assert answers(unit, ["restore"])[0][0] == 0 and unit.unit(WORKING[1:]).read_bytes() == image
    # Any record, whatever its sums and its bytes that exist in files only; nothing is lost unsaid.
    noise = random.Random(profile).randbytes(chip.size)
    back.write_bytes(noise)
    if profile == "ux3320":
        assert vximage("convert", back, text)[0] == 2 and not text.exists()
        noise = noise[:896] + bytes(104)
    assert vximage("convert", "--drop", back, text)[0] == 0
    assert vximage("convert", *chosen, text, "-").out.encode("latin-1") == noise

    # A text is repaired in place of its wrong values; what else it says stays, and what is missing comes behind it.
    rows = list(checks(profile, image))
    kept = [line for line in default.read_text().splitlines()]
    kept[1 + 0x3F:1 + 0x40] = ["# the sum", "63=7; of vendor data\r"]
    start = kept.index("a2_lower")
    del kept[start + 1 + 0x5F]
    text.write_text("\n".join(kept), newline="")
    assert vximage("check", *chosen, text)[0] == 1
    assert vximage("fix", *chosen, text, back)[0] == 0
    kept[1 + 0x40] = f"63=0x{rows[0][2]:02X}; of vendor data\r"
    assert back.read_bytes().decode() == "\n".join([*kept, "a2_lower", f"0x5F=0x{rows[2][2]:02X};", ""])
    assert vximage("check", *chosen, back)[0] == 0


def test_which_chip(board, tmp_path):
    unit, path = board("ux3365"), tmp_path / "image"
    answers(unit, ["init"])
    image = bytearray(unit.unit(WORKING[1:]).read_bytes())
    flash = unit.path / "flash/bob"
    flash.write_bytes(flash.read_bytes()[8192:] + flash.read_bytes()[:8192])  # from one bank to the other
    assert vximage("fix", flash, path).out.startswith(f"{flash}: record in flash of") and path.read_bytes() == image
    flash.write_bytes(flash.read_bytes().replace(image[-4:], b"torn"))
    assert vximage("show", flash).status == 2
    assert vximage("check", path).out.startswith(f"{path}: record of UX3361, UX3362S or UX3365, checked as UX3365\n")
    image[512 + 0x66] ^= 1
    path.write_bytes(image)
    assert vximage("fix", path) == (2, "", f"vximage: {path}: may be of UX3361, UX3362S or UX3365, which sum "
                                           "differently: say which with --chip\n")
    assert path.read_bytes() == image


def test_show(board):
    unit = board("ux3361")
    answers(unit, ["init"])
    image = bytearray(unit.unit(WORKING[1:]).read_bytes())
    image[512], image[640] = 0xAB, 0x99  # the marker of table 0x80, and what is reserved behind it
    out = vximage("show", "-", stdin=image.decode("latin-1")).out
    table = out[out.index("\nTable 0x80 (a2_table80), at 512 in the record\n"):].split("\n\n")[0].splitlines()[1:]
    marked = [f"{byte:02x}" for byte in image[512:640]]
    for row, start in enumerate(range(0, 128, 16)):
        cells = "".join(("!" if i == 0 else "*" if i == 0x66 else " ") + marked[i] for i in range(start, start + 16))
        assert table[1 + row].startswith(f"  {0x80 + start:02x}:{cells}  ")
    assert table[9] == "  T80.80h 0xab, wrong: should be 0xaa" and "chksum 0x99, vxcli loads it as" in table[11]


TEXT_FAULTS = [  # the lines behind a good first one, and what is said about them by number
    ("0x10 =0x20;", "2: not read"), ("0x10= 0x20;", "2: not read"), ("0x1g=1;", "2: not read"),
    ("\n0x10=0x20", "3: no \";\""), ("a2_lower\n0x80=1;", "3: register 0x80 is not in a2_lower"),
    ("a2_lut3\n0x7f=1;", "3: register 0x7f"), ("1=0x100;", "2: the value"), ("1=1;\na2_lower\n1=1;\na0_tab\n1=1;", "6: "),
    ("1=1; 2=2;", "2: vxcli takes only"), ("; a2_lower", "2: vxcli takes this"), ("1=1; a2_mod", "2: vxcli takes this"),
    ("a2_lut9\n0x80=1;\n0x81=1;", "2: unknown"), ("a2_mod a2_apd", "2: vxcli takes"), ("a2_modx", "2: vxcli takes"), ("# a2_lut9", "2: unknown"), ("hello", "2: neither"),
    ("1=1;\0", "2: a control"), ("1=1; " + "x" * 123, "2: more than 127"),
]


def test_unusable_input(tmp_path):
    path = tmp_path / "image"
    for lines, said in TEXT_FAULTS:
        path.write_text("a0_tab\n" + lines + "\n")
        status, out, err = vximage("check", "--chip", "ux3320", path)
        assert (status, out) == (2, "") and err.startswith(f"vximage: {path}:{said}") and err.count("\n") == 1, lines
    good = "128=1; " + "x" * 120 + "\n \r\n// a comment\n;x\n## a2_mod ##\r\n0xE8=010;\n"
    path.write_text("a0_tab\na2_apd\n" + good, newline="")
    assert vximage("check", "--chip", "UX3320", path)[::2] == (1, "")
    (tmp_path / "link").symlink_to("nowhere")
    os.mkfifo(tmp_path / "fifo")
    assert vximage("help") == vximage("--help")
    for words, said in [
            (["check", path], ": its sections may be of UX3320 or UX3320S: say which with --chip"),
            (["check", "--chip", "gn28l95", path], "has the sections of a UX3320 or UX3320S, not those of a GN28L95"),
            (["check", "--chip", "UX3326", path], "no chip \"UX3326\""), (["show", tmp_path], "is a directory"),
            (["show", tmp_path / "none"], "No such file"), (["show", tmp_path / "fifo"], "is no regular file"),
            (["show", "/dev/null"], "is no regular file"), (["show", "-"], "is empty"), (["fix"], "usage: vximage fix"),
            (["show", path, path], "usage: vximage show"),
            (["convert", "--chip", "ux3320", path, tmp_path / "fifo"], "is no regular file"), (["me\nnd", path], "unknown command \"me\\x0and"),
            (["convert", "--chip", "ux3320", path, tmp_path / "link"], "No such file"), (["show", "--chip"], "a name must")]:
        status, out, err = vximage(*words)
        assert (status, out, err.count("\n")) == (2, "", 1) and said in err and err.startswith("vximage: "), words
    for size in (1, 999, 1001, 300_000):
        path.write_bytes(bytes(size))
        status, out, err = vximage("check", path)
        assert (status, out, err.count("\n")) == (2, "", 1) and f"{min(size, 262144)} bytes are no image" in err, size
