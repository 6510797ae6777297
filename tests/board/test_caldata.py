"""Ranges of flash that cannot be copied to files and back; the Wi-Fi calibration shows that the others are."""


def test_what_cannot_be_done_changes_nothing(board):
    unit = board("ux3361")
    flash, file, faults = unit.path / "flash/hwconfig", unit.unit("tmp/file"), unit.path / "faults"
    before = flash.read_bytes()
    file.write_bytes(b"kept")
    faults.write_bytes(b"#" * 4096)  # as long as a partition could be
    ranges = ("hwconfig:0:10001", "hwconfig:ffffffff:2", "hwconfig:1:ffffffff", "nosuch:0:1", "../faults:0:1")
    for words in [*(f"{words}:/tmp/file" for words in ranges), "hwconfig:0:10:/tmp", "hwconfig:0:10:/tmp/no/file"]:
        out = unit.run("vxcli_bus_steps", f"calget:{words}", f"calsave:{words}").out
        assert {step[:4] for step in out.splitlines()} == {"fail"}, words
    assert file.read_bytes() == b"kept" and flash.read_bytes() == before and faults.read_bytes() == b"#" * 4096
