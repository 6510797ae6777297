"""PON mode and role, addresses and serial numbers, port map, language, Ethernet WAN: what has a form of its own."""

from shlex import quote

import pytest

from bench import FAIL
from sysinfo import calls, each, info, line, replies, sys

MODES = ["EPON", "GPON", "XGPON", "XGSPON", "XEPON", "XESPON", "ETHER", "AUTO"]
SELECTIONS = ["auto_a", "auto_s", *(f"group_{number}" for number in range(10))]
PONMODE = "bad arguments  {} !!\n\tponmode [epon|gpon|xgpon|xgspon|xepon|xespon|ETHER|auto]: get/set pon mode\nsys ponmode fail\n"
ONUTYPE = "bad arguments  {} !!\n\tonutype [sfu|hgu]: get/set onu type\nsys onutype fail\n"


def odd(name):
    return "".join(c.upper() if place % 2 else c.lower() for place, c in enumerate(name))


def test_every_mode(board):
    unit = board("ux3361")
    choice, working = unit.unit("userconfig/config/GUIPonMode"), unit.path / "pon/mode"
    for name in [way(name) for name in MODES + SELECTIONS for way in (str, odd, str.swapcase)]:
        mode = MODES.index(name.upper()) if name.upper() in MODES else 7
        setter, stored = ("setPonMode", MODES[mode]) if name.upper() in MODES else ("setPonModestr", name)
        choice.write_text("EPON")
        unit.trace()
        assert sys(unit, f"ponmode {name}", "ponmode") == [
            (0, "sys ponmode success\n"),
            (0, line("Sys Pon Mode:", stored) + (line("Working Pon Mode:", MODES[mode]) if mode < 7 else ""))]
        assert calls(unit) == [f"sys_{setter}", "ponApi_setPonMode",
                               "sys_getValueEmpty", "setDebugLevel", "ponApi_getPonMode", "setDebugLevel"]
        assert working.read_text() == f"{mode}\n" and not choice.exists()


def test_modes_that_are_none(board):
    unit = board("ux3361")
    choice, working = unit.unit("userconfig/config/GUIPonMode"), unit.path / "pon/mode"
    sys(unit, "load")
    choice.write_text("EPON")
    before = info(unit).read_bytes()
    unit.trace()
    words = ["", "gpon ", "pon", "auto_b", "group_10", "7", "x" * 3000]
    assert sys(unit, *each("ponmode", words)) == replies(words, PONMODE + FAIL)
    assert calls(unit) == [] and info(unit).read_bytes() == before and choice.exists()

    stored = line("Sys Pon Mode:", "XGSPON")
    working.write_text("99\n")
    assert sys(unit, "ponmode") == [(0, stored)]
    working.unlink()
    assert sys(unit, "ponmode") == [(1, stored + line("Working Pon Mode:") + FAIL)]
    # As many words as `show` pretends to have: the stored mode alone.
    assert sys(unit, "ponmode" + " x" * 99, "ponmode" + " x" * 98) == [(0, stored), *replies("x", PONMODE + FAIL)]


def test_role(board):
    unit = board("ux3361")
    daemon, told = unit.unit("tmp/vxnetctl"), unit.unit("tmp/told")
    daemon.write_text('#!/bin/sh\necho "$@" >>/tmp/told\n')
    daemon.chmod(0o755)
    first, names = "PATH=/tmp:$PATH", ["SFU", "HGU", "MDU", "hGw"]
    assert sys(unit, *each("onutype", names, "onutype"), first=first) == [
        reply for name in names for reply in replies([name.upper()], "sys onutype success\n", line("Sys Pon Type:", "{}"))]
    assert told.read_text() == "".join(f"-q {name}\n" for name in names)
    told.unlink()
    unit.fault("libvx_sys_setPonType")
    words = ["", "sfu ", "sfu;reboot", "\xe9" * 2000]
    assert sys(unit, "onutype sfu", *each("onutype", words), "onutype", first=first) == [
        (0, "sys onutype fail\n"), *replies(words, ONUTYPE + FAIL), (0, line("Sys Pon Type:", "HGW"))]
    assert not told.exists()


@pytest.mark.parametrize("word, label, good, bad, refusal", [
    ("mac", "Mac Address:", ["00:11:22:33:44:55", "0A:b1:C2:D3:E4:F5"],
     ["00:11:22:33:44:5G", "00:11:22:33:44:55:66", "00-11-22-33-44-55", "", "0:11:22:33:44:555", "x" * 31],
     "mac is invalid: {}, format is xx:xx:xx:xx:xx:xx\nsys mac fail\n"),
    ("phyportmap", "Phy Port Map:", ["0,1,2,3", "10,11,12,13"], ["1,2,3", "1,2,3,4,5", "a,b,c,d", "1, 2,3,4", "", "1," * 2000],
     "Phy Port Map is invalid: {}, format is x,x,x,x\n" + FAIL),
    ("language", "Language:", ["English", "Chinese", "Japanese", "", "Spain"], ["english", "Spain ", "Chin", "x" * 3000],
     "Language {} is invalid\nsys language fail\n"),
])
def test_texts_of_a_form(board, word, label, good, bad, refusal):
    unit = board("ux3361")
    results = sys(unit, *each(word, good, word))
    assert all(status == 0 and out.endswith(" success\n") for status, out in results[0::2])
    shown = [text.upper() if word == "mac" else text for text in good]
    assert results[1::2] == replies(shown, line(label, "{}"))
    assert sys(unit, *each(word, bad), word) == [*replies(bad, refusal), (0, line(label, shown[-1]))]


def test_serial_numbers(board):
    unit = board("ux3361")
    warning = ("WARNING: {},the SN should be 16 hexadecimal digits or 12 digits with 8 hexadecimal after four characters"
               " or 64 ASCII\n")
    good = ["0123456789abCDEF", "VXLM12345678", "x", "A b", "x" * 64]
    unusual = ["ABCD1234567Z", "0123456789abcdeG", "", "VXL\xff12345678"]
    stored, failed, got = "sys gponsn success\n", "sys gponsn fail\n", line("Gpon SN:", "{}")
    assert sys(unit, *each("gponsn", good, "gponsn")) == replies(good, stored, got)
    assert sys(unit, *each("gponsn", unusual, "gponsn")) == replies(unusual, warning + stored, got)
    unit.fault("libvx_is_valid_gponSN result=0")
    unit.fault("libvx_sys_setGponSn skip=1")
    assert sys(unit, "gponsn x", "gponsn VXLM12345678") == [*replies("x", warning + stored), (0, failed)]
    words = [*good, *unusual, "%s%n"]
    assert sys(unit, *each("sn", words, "sn")) == replies(words, "sys sn success\n", line("SN:", "{}"))


def test_ethwan(board):
    unit = board("ux3361")
    file = unit.unit("userconfig/config/ethwan")
    success, cleaned = (0, "Set ethwan success!\n"), (0, "Clean ethwan success!\n")
    wrong = (0, "The parameter is not right!\neg: eth0 eth1 eth2 eth3 apcli* null(means clean)\n")
    assert sys(unit, "ethwan") == [(0, "")] and not file.exists()
    for name in ("eth1", "apcli0", "eth", "eth" + "x" * 2000):
        assert sys(unit, f"ethwan {quote(name)} eth0", "ethwan") == [success, (0, name[:63])]
        assert file.read_bytes() == name.encode("latin-1")
    assert sys(unit, *each("ethwan", ["ETH0", "", "apcl", " eth0"])) == [wrong] * 4
    file.write_text(" \n eth2 eth3")
    assert sys(unit, "ethwan", "ethwan null") == [(0, "eth2"), cleaned] and not file.exists()
    assert sys(unit, "ethwan null", stderr=None) == [cleaned]
    file.mkdir()
    assert sys(unit, "ethwan eth0") == [(0, "Set ethwan failed! can not open file /userconfig/config/ethwan\n")]
