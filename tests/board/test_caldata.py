"""Ranges of flash copied to files and back, as the Wi-Fi calibration is."""

import pytest

SIZE = 0x10000
PATTERN = bytes((i * 7 + i // 256) % 251 for i in range(SIZE))


@pytest.fixture
def unit(board):
    made = board("ux3361")
    (made.path / "flash/hwconfig").write_bytes(PATTERN)
    return made


def test_what_cannot_be_done_changes_nothing(unit):
    flash, file, faults = unit.path / "flash/hwconfig", unit.unit("tmp/file"), unit.path / "faults"
    file.write_bytes(b"kept")
    faults.write_bytes(b"#" * 4096)  # as long as a partition could be
    ranges = ("hwconfig:0:10001", "hwconfig:ffffffff:2", "hwconfig:1:ffffffff", "nosuch:0:1", "../faults:0:1")
    for words in [*(f"{words}:/tmp/file" for words in ranges), "hwconfig:0:10:/tmp", "hwconfig:0:10:/tmp/no/file"]:
        out = unit.run("vxcli_bus_steps", f"calget:{words}", f"calsave:{words}").out
        assert {step[:4] for step in out.splitlines()} == {"fail"}, words
    assert file.read_bytes() == b"kept" and flash.read_bytes() == PATTERN and faults.read_bytes() == b"#" * 4096


@pytest.mark.parametrize("offset, size, cut", [(0x3000, 0xE00, 0x3200), (0x1000, 0x2000, 0x2200)])
def test_a_power_loss_costs_only_what_was_being_saved(unit, offset, size, cut):
    """The process is killed at its first write behind `cut`: in the middle of a block's erase."""
    unit.unit("tmp/source").write_bytes(bytes(size))
    script = f"ulimit -c 0; ulimit -f {cut // 512}; vxcli_bus_steps calsave:hwconfig:{offset:x}:{size:x}:/tmp/source; echo $?"
    assert unit.sh(script, stderr=None).out == "153\n"
    after, block = (unit.path / "flash/hwconfig").read_bytes(), cut // 4096 * 4096
    assert after[:block] == PATTERN[:offset] + bytes(block - offset)
    assert after[block + 4096:] == PATTERN[block + 4096:] and after[block:cut] == b"\xff" * (cut - block)
