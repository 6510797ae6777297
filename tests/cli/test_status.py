"""The status files and the commands that only look at them."""

from bench import FAIL, answers

TYPES = {"7\n": "UX3326", "10\n": "GN25L99", "12": "HLC10P0", "13": "HLC10P5", "14": "HLC10P6", "": "UX3320", "garbage\n": "UX3320",
         "2 and more\n": "UX3361", "1\n2\n": "GN25L95", " 3": "UX3320S"}


def test_driver_status(board):
    unit = board("gn28l95")
    unit.unit("var/bob_chip_type").write_text("6\n")
    for driver, running in [(None, False), ("1\n", True), ("0\n", False), ("one\n", False), ("1x", True)]:
        if driver is not None:
            unit.unit("var/bob_driver_status").write_text(driver)
        assert answers(unit, ["driver", "iic_get"]) == [
            (0, f"bob:bob driver init {'SUCCESS' if running else 'FAIL'}.\n"),
            (0, f"Bob chip_type: GN28L95\nvxcli bob iic_get {'start' if running else 'stop'}\n")], driver


def test_chip_type_file(board):
    unit = board("ux3361")
    for text, name in TYPES.items():
        unit.unit("var/bob_chip_type").write_text(text)
        assert unit.run("vxcli", "bob", "iic_get")[:2] == (0, f"Bob chip_type: {name}\nvxcli bob iic_get stop\n"), text


def test_iic_set(board):
    unit = board("ux3361")
    unit.unit("var/bob_chip_type").write_text("2\n")
    status = unit.unit("var/bob_driver_status")
    unit.trace()
    no = (0, "vxcli bob iic_set value not correct. should be [start/stop].\n")
    ok = (0, "Bob chip_type: UX3361\nvxcli bob iic_set OK\n")
    for words, answer, left in [("", (1, "Please specify start or stop.\n" + FAIL), None), ("START", no, None),
                                ("start", ok, "1\n"), ("''", no, "1\n"), ("stop", ok, "0\n")]:
        assert answers(unit, ["iic_set " + words]) == [answer]
        assert (status.read_text() if status.exists() else None) == left
    assert unit.trace() == []
