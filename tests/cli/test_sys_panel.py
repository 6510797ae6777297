"""LEDs, buttons, rogue detection; partitions, versions and services; the crash."""

import pytest

from bench import FAIL
from conftest import SANITIZED
from sysinfo import calls, sys

LEDS = {"LED_PWR": "pwr", "LED_PON": "pon", "LED_LOS": "los", "LED_LAN": "lan", "LED_WPS": "wps", "LED_WLAN": "wlan",
        "LED_FXS1": "fxs1", "LED_FXS2": "fxs2", "LED_WAN": "int", "LED_INT": "int", "LED_DNLINK": "dnlink"}
STATES = {"OFF": ("0", "none"), "ON": ("1", "none"), "BLINK": ("1", "timer")}


def leds(unit):
    """Each LED's brightness, trigger and delays."""
    return {name: [(unit.path / f"led/{name}_led" / text).read_text().strip()
                   for text in ("brightness", "trigger", "delay_on", "delay_off")] for name in LEDS.values()}


def test_leds(board):
    unit = board("ux3361")
    for timer, (name, state) in enumerate([(name, state) for name in LEDS for state in STATES], 250):
        before = leds(unit)
        assert sys(unit, f"led_event {name} {state} {timer}ms 7") == [(0, "led event op\n")]
        assert leds(unit) == {**before, LEDS[name]: [*STATES[state], str(timer), str(timer)]}
    for words, brightness in [("2 0", "1"), ("on", "0")]:
        assert sys(unit, f"led {words}") == [(0, "sys led success\n")]
        assert {tuple(attributes[:2]) for attributes in leds(unit).values()} == {(brightness, "none")}


def test_leds_that_are_none(board):
    unit = board("sfu-gn25l95")
    unit.trace()
    words = ["led_pwr ON 0", "LED_PWR on 0", "LED_END ON 0", "'' ON 0", "LED_PWR '' 0", "LED_" + "X" * 3000 + " ON 0"]
    assert sys(unit, *(f"led_event {word}" for word in words)) == [(1, FAIL)] * len(words)
    assert calls(unit) == []


def test_buttons_and_rogue_detection(board):
    unit = board("ux3361")

    def state():
        return [int((unit.path / name).read_text()) for name in (
            "sys/button_test", "pon/rogue_detect", "pon/rogue_shutdown", "pon/rogue_found")]

    (unit.path / "pon/rogue_found").write_text("1\n")
    for command, after in [("button 1", [1, 0, 0, 1]), ("mfg 0", [0, 0, 0, 1]), ("rogue 1 0 0", [0, 1, 0, 1]),
                           ("rogue 0 1x 0", [0, 0, 1, 1]), ("rogue 1 1 1 1", [0, 1, 1, 0])]:
        assert sys(unit, command) == [(0, f"sys {command.split()[0]} success\n")] and state() == after, command
    unit.fault("libvx_ponApi_setPonSelfRogueDetect")
    assert sys(unit, "rogue 0 0 0", "rogue 2 0 0") == [(0, "sys rogue fail\n")] * 2 and state() == [0, 1, 1, 0]


@pytest.mark.parametrize("name, operation", [("backup", "Backup"), ("preconf", "Pre")])
def test_files_in_partitions(board, name, operation):
    unit = board("ux3361")
    flash, config, got = unit.path / "flash" / name, unit.unit("tmp/config"), unit.unit("tmp/got")
    blank = b"\xff" * flash.stat().st_size
    save, get, none = f"save{name} /tmp/config", f"get{name} /tmp/got", f"save{name} /tmp/none"
    config.write_bytes(b"first")
    unit.trace()
    assert sys(unit, f"get{name}", f"save{name}", get + " /tmp/got", save + " /tmp/got") == [(0, "")] * 4
    assert calls(unit) == [] and not got.exists()
    assert sys(unit, get, save, none, f"get{name} /tmp/no/such", get) == [(0, "")] * 5 and got.read_bytes() == b"first"
    for contents in (bytes(range(256)) * 100, b"", b"short"):
        config.write_bytes(contents)
        sys(unit, save)
        unit.power_cycle()
        got.write_bytes(b"?" * 30000)
        sys(unit, get)
        assert got.read_bytes() == contents
    config.write_bytes(b"!" * 70000)  # more than there is room for
    unit.fault(f"libvx_sys_erase{operation}Config")
    assert sys(unit, save, f"erase{name} now", get) == [(0, "")] * 3 and got.read_bytes() == b"short"
    assert sys(unit, f"erase{name}", get) == [(0, "")] * 2 and flash.read_bytes() == blank and got.read_bytes() == b"short"


def test_the_image_in_use_is_not_erased(board):
    unit = board("ux3361")
    images = {name: (unit.path / "flash" / name).read_bytes() for name in ("image0", "image1")}
    unit.fault("libvx_sys_eraseBackupImageMtd")
    for main, erased in [("image1", {}), ("neither", {}), ("image1", {"image0"}), ("image0", {"image0", "image1"})]:
        (unit.path / "sys/main_image").write_text(main + "\n")
        assert sys(unit, "eraseslave") == [(0, "sys eraseslave success\n")]
        for name, contents in images.items():
            assert set((unit.path / "flash" / name).read_bytes()) == ({0xFF} if name in erased else set(contents)), (main, name)


def test_services(board):
    unit = board("ux3361")
    config = unit.unit("userconfig/config")
    (config / "deep").mkdir()
    (config / "deep/file").write_text("x")
    unit.unit("tmp/kept").mkdir()
    unit.unit("tmp/kept/file").write_text("x")
    (config / "link").symlink_to("/tmp/kept")  # never out of the board: a fault would follow it
    unit.fault("libvx_sys_restoredefault")
    assert sys(unit, "restoredefault") == [(1, FAIL)] and (config / "deep/file").exists()
    assert sys(unit, "restoredefault now") == [(0, "")] and list(config.iterdir()) == []
    assert unit.unit("tmp/kept/file").exists()
    unit.fault("libvx_sys_vxnatFlush")
    assert sys(unit, *["flushnat"] * 3) == [(0, "sys flushnat success\n")] * 3
    assert (unit.path / "sys/nat_flushes").read_text() == "2\n"


def test_segv(board):
    died = (99 if SANITIZED else 128 + 11, "")
    assert sys(board("ux3361"), "segv", "segv now", stderr=None) == [died, died]
