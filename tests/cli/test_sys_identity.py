"""PON mode and role, addresses and serial numbers, port map, language, Ethernet WAN: what has a form of its own."""

from shlex import quote

from bench import FAIL
from sysinfo import calls, each, info, line, replies, sys

MODES = ["EPON", "GPON", "XGPON", "XGSPON", "XEPON", "XESPON", "ETHER", "AUTO"]
SELECTIONS = ["auto_a", "auto_s", *(f"group_{number}" for number in range(10))]
PONMODE = "bad arguments  {} !!\n\tponmode [epon|gpon|xgpon|xgspon|xepon|xespon|ETHER|auto]: get/set pon mode\nsys ponmode fail\n"
ONUTYPE = "bad arguments  {} !!\n\tonutype [sfu|hgu]: get/set onu type\nsys onutype fail\n"
PONMODE_FAILED = (1, "sys ponmode fail\n" + FAIL)


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
    words = ["", "gpon ", "pon", "auto_b", "group_10", "group_", "7", "%s%n", "\xff", "x" * 3000]
    assert sys(unit, *each("ponmode", words)) == replies(words, PONMODE + FAIL)
    assert calls(unit) == [] and info(unit).read_bytes() == before and choice.exists()

    stored = line("Sys Pon Mode:", "XGSPON")
    for text, reply in [("6\n", stored + line("Working Pon Mode:", "ETHER")), ("7\n", stored), ("99\n", stored)]:
        working.write_text(text)
        assert sys(unit, "ponmode") == [(0, reply)]
    working.unlink()
    assert sys(unit, "ponmode") == [(1, stored + line("Working Pon Mode:") + FAIL)]
    # As many words as `show` pretends to have: the stored mode alone.
    assert sys(unit, "ponmode" + " x" * 99, "ponmode" + " x" * 98) == [(0, stored), *replies("x", PONMODE + FAIL)]

    unit.fault("libvx_sys_setPonMode")
    unit.fault("libvx_sys_setPonModestr")
    unit.fault("libvx_ponApi_setPonMode skip=2")
    for command, answer, mode in [("gpon", PONMODE_FAILED, "1\n"), ("auto_a", PONMODE_FAILED, "7\n"),
                                  ("epon", (0, "sys ponmode success\n"), "7\n")]:
        assert sys(unit, f"ponmode {command}") == [answer] and working.read_text() == mode


def test_role(board):
    unit = board("ux3361")
    daemon, told = unit.unit("tmp/vxnetctl"), unit.unit("tmp/told")
    daemon.write_text('#!/bin/sh\necho "$@" >>/tmp/told\n')
    daemon.chmod(0o755)
    first, names = "PATH=/tmp:$PATH", ["SFU", "HGU", "MDU", "HGW", "sfu", "hGu", "Mdu", "hgw"]
    answers = sys(unit, *each("onutype", names, "onutype"), first=first)
    assert answers[0::2] == replies(names, "sys onutype success\n")
    assert answers[1::2] == replies(map(str.upper, names), line("Sys Pon Type:", "{}"))
    assert told.read_text() == "".join(f"-q {name}\n" for name in names)
    told.unlink()
    unit.fault("libvx_sys_setPonType")
    words = ["", "sfu ", "ONU", "0", "sfu;reboot", "\xe9" * 2000]
    assert sys(unit, "onutype sfu", *each("onutype", words), "onutype", first=first) == [
        (0, "sys onutype fail\n"), *replies(words, ONUTYPE + FAIL), (0, line("Sys Pon Type:", "HGW"))]
    assert not told.exists()


def test_mac(board):
    unit = board("ux3361")
    good = ["00:11:22:33:44:55", "FF:FF:FF:FF:FF:FF", "0A:B1:C2:D3:E4:F5"]
    assert sys(unit, *each("mac", map(odd, good), "mac")) == replies(good, "sys mac success\n", line("Mac Address:", "{}"))
    bad = ["00:11:22:33:44:5G", "00:11:22:33:44", "00:11:22:33:44:55:66", "00-11-22-33-44-55", "001122334455", "", " ",
           "00:11:22:33:44:55 ", "0:11:22:33:44:555", "+1:11:22:33:44:55", "%s", "\xff\x80", "x" * 31, "x" * 32, "y" * 5000]
    unit.trace()
    assert sys(unit, *each("mac", bad)) == replies([word[:31] for word in bad],
                                                   "mac is invalid: {}, format is xx:xx:xx:xx:xx:xx\nsys mac fail\n")
    assert calls(unit) == ["is_valid_macAddr"] * len(bad)
    # A library that is less strict: the pieces are taken as they come, no more than six of them.
    unit.fault("libvx_is_valid_macAddr times=3 result=1")
    assert sys(unit, "mac 1:2:f", "mac", "mac 1:2:3:4:5:6:7:8:9", "mac", "mac zz", "mac")[1::2] == replies(
        ["01:02:0F:00:00:00", "01:02:03:04:05:06", "00:00:00:00:00:00"], line("Mac Address:", "{}"))


def test_serial_numbers(board):
    unit = board("ux3361")
    warning = ("WARNING: {},the SN should be 16 hexadecimal digits or 12 digits with 8 hexadecimal after four characters"
               " or 64 ASCII\n")
    good = ["0123456789abCDEF", "VXLM12345678", "    0a1B2c3D", "x", "A b", "x" * 64, "V" * 11, "G" * 13]
    unusual = ["ABCD1234567Z", "0123456789abcdeG", "", "\xe9", "VXL\xff12345678", "x" * 63 + "\x80"]
    long = ["x" * 65, "0123456789abcdef" * 400]
    stored, failed, got = "sys gponsn success\n", "sys gponsn fail\n", line("Gpon SN:", "{}")
    assert sys(unit, *each("gponsn", good, "gponsn")) == replies(good, stored, got)
    assert sys(unit, *each("gponsn", unusual, "gponsn")) == replies(unusual, warning + stored, got)
    assert sys(unit, *each("gponsn", long)) == replies(long, warning + failed)
    unit.fault("libvx_is_valid_gponSN result=0")
    unit.fault("libvx_sys_setGponSn skip=1")
    assert sys(unit, "gponsn x", "gponsn VXLM12345678") == [*replies("x", warning + stored), (0, failed)]
    words = [*good, *unusual, "%s%n"]
    assert sys(unit, *each("sn", words, "sn")) == replies(words, "sys sn success\n", line("SN:", "{}"))
    assert sys(unit, *each("sn", long), "sn") == [*replies(long, "sys sn fail\n"), (0, line("SN:", "%s%n"))]


def test_port_map(board):
    unit = board("ux3361")
    maps, invalid = ["0,1,2,3", "3,2,1,0", "10,11,12,13"], "Phy Port Map is invalid: {}, format is x,x,x,x\n" + FAIL
    assert sys(unit, *each("phyportmap", maps, "phyportmap")) == replies(
        maps, "sys phy port map success\n", line("Phy Port Map:", "{}"))
    bad = ["1,2,3", "1,2,3,4,5", "1,2,3,", ",1,2,3", "a,b,c,d", "1.2.3.4", "1, 2,3,4", "", "\xb2,\xb2,\xb2,\xb2", "1," * 2000]
    unit.trace()
    assert sys(unit, *each("phyportmap", bad)) == replies(bad, invalid)
    assert calls(unit) == ["is_valid_phyPortMap"] * len(bad)
    unit.fault("libvx_sys_setPhyPortMap")
    unit.fault("libvx_is_valid_phyPortMap skip=1 result=0")
    assert sys(unit, "phyportmap 4,5,6,7", "phyportmap 4,5,6,7", "phyportmap") == [
        (0, "sys phy port map fail\n"), *replies(["4,5,6,7"], invalid), (0, line("Phy Port Map:", maps[-1]))]


def test_language(board):
    unit = board("ux3361")
    good, bad = ["English", "Chinese", "Japanese", "", "Spain"], ["english", "Spanish", "Spain ", "Chin", " ", "%d", "x" * 3000]
    assert sys(unit, *each("language", good, "language")) == replies(good, "sys language success\n", line("Language:", "{}"))
    assert sys(unit, *each("language", bad), "language") == [
        *replies(bad, "Language {} is invalid\nsys language fail\n"), (0, line("Language:", "Spain"))]


def test_ethwan(board):
    unit = board("ux3361")
    file = unit.unit("userconfig/config/ethwan")
    success, cleaned = (0, "Set ethwan success!\n"), (0, "Clean ethwan success!\n")
    wrong = (0, "The parameter is not right!\neg: eth0 eth1 eth2 eth3 apcli* null(means clean)\n")
    assert sys(unit, "ethwan") == [(0, "")] and not file.exists()
    for name in ("eth1", "ethernet9", "apcli0", "eth", "apcli", "eth\xff%s", "eth" + "x" * 2000):
        assert sys(unit, f"ethwan {quote(name)} eth0", "ethwan") == [success, (0, name[:63])]
        assert file.read_bytes() == name.encode("latin-1")
    assert sys(unit, *each("ethwan", ["ETH0", "", "apcl", "et", "nul", " eth0"])) == [wrong] * 6
    for text, word in [(" \n eth2 eth3", "eth2"), ("", ""), ("eth4\n", "eth4")]:
        file.write_text(text)
        assert sys(unit, "ethwan") == [(0, word)]
    assert sys(unit, "ethwan null") == [cleaned] and not file.exists()
    assert sys(unit, "ethwan null", stderr=None) == [cleaned]
    file.mkdir()
    assert sys(unit, "ethwan eth0") == [(0, "Set ethwan failed! can not open file /userconfig/config/ethwan\n")]
