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
