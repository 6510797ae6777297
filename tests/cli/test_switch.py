"""MAC tables, and the rules that take traffic to the CPU."""

import pytest

from bench import FAIL
from links import Bad, attributes, calls, changed, set_attributes, talk

MAC, LONG_MAC = "00:11:22:33:44:5f", "0" * 29 + "1:2:3"  # cut behind 31 characters
TABLE = "switch/port{}/mac_table"


def listing(port, *entries):
    return f"mac address:  port={port}, total={len(entries)}\n" + "".join(
        f"{i}\t {mac}\t{vlan}\n" for i, (mac, vlan) in enumerate(entries))


def done(verb, port, vlan, mac):
    return f"{verb} mac address:  port={port} vid ={vlan} {mac}\n"


def test_words(board):
    """What the words become, and which is refused."""
    unit = board("ux3361")
    before = attributes(unit)
    entries = []
    for port, number, vid, vlan, word, mac in [
            ("0", 0, "4095", 4095, "00:11:22:aa:BB:ff", "00:11:22:aa:bb:ff"), ("pon", 14, "65536", 0, "1:2:3", "01:02:03:00:00:00"),
            ("14", 14, "1x", 1, "1ff:-1:zz:::5:6:7:8", "ff:ff:00:00:00:05"), ("14pon", 14, "-65535", 1, LONG_MAC, "01:00:00:00:00:00")]:
        for verb in ("add", "del", "add"):
            talk(unit, "switch", (f"{verb}mac {port} {vid} {word} more", done(verb, number, vlan, mac)))
            there = changed(unit, before).get(TABLE.format(number), "").splitlines()
            assert (f"{mac} {vlan}" in there) == (verb == "add")
        entries.append((number, (mac, vlan)))
    talk(unit, "switch", ("listmac 0", listing(0, entries[0][1])), ("listmac pon", listing(14, *(entry for _, entry in entries[1:]))))
    now, words = attributes(unit), "1:2:3:4:5:6"
    talk(unit, "switch", *((f"{verb}mac 0 {vid} {words}", Bad(vid)) for verb in ("add", "del") for vid in ("4096", "69632", "-1")),
         *((f"{verb}mac {port} 4096 {words}", Bad(port)) for verb in ("add", "del") for port in ("5", "-1")),
         *((f"{command} {port}", Bad(port)) for command in ("listmac", "clrmac") for port in ("5", "-1")),
         ("clrmac 14 x", ""), ("listmac pon", listing(14)), ("clrmac 1", ""))
    assert changed(unit, now) == {TABLE.format(14): "", TABLE.format(1): ""}


def test_entries(board):
    unit = board("ux3361")
    entry, other = ("01:02:03:04:05:06", 7), ("01:02:03:04:05:06", 8)
    unit.trace()
    talk(unit, "switch", *[(f"{verb}mac 0 {vlan} 1:2:3:4:5:6", done(verb, 0, vlan, entry[0])) for verb, vlan in (
        ("add", 7), ("add", 8), ("add", 7), ("del", 9), ("del", 7))], ("listmac 0", listing(0, other)))
    assert [result for _, result in calls(unit) if result] == [6]  # deleting what is not there
    # Written by hand, as people do; and what is no entry.
    set_attributes(unit, {TABLE.format(0): "\n  0A:0b:C:00:00:01   4095 \r\n\n01:02:03:04:05:06 8"})
    talk(unit, "switch", ("delmac 0 8 1:2:3:4:5:6", done("del", 0, 8, other[0])), ("listmac 0", listing(0, ("0a:0b:0c:00:00:01", 4095))))
    for damage in ("1:2:3:4:5 1", "1:2:3:4:5:6:7 1", "1:2:3:4:5:6", "1:2:3:4:5:6 4096", "1:2:3:4:5:100 1", "1:2:3:4:5:6 -1",
                   "1:2:3:4:5:6 1 1", "x" * 3_000_000, "1:2:3:4:5:6 1\0"):
        set_attributes(unit, {TABLE.format(0): f"01:02:03:04:05:06 8\n{damage}\n"})
        talk(unit, "switch", ("listmac 0", ""))


def test_a_full_table(board):
    unit = board("ux3361")

    def entries(count):
        return [(f"02:00:00:{i >> 16:02x}:{i >> 8 & 255:02x}:{i & 255:02x}", i % 4096) for i in range(count)]

    def fill(count):
        set_attributes(unit, {TABLE.format(3): "".join(f"{mac} {vlan}\n" for mac, vlan in entries(count))})

    fill(16384)
    first, added = entries(1)[0], done("add", 3, 9, "09:09:09:09:09:09")
    talk(unit, "switch", ("listmac 3", listing(3, *entries(16384))), ("addmac 3 9 9:9:9:9:9:9", added),
         ("listmac 3", listing(3, *entries(16384))),  # it has been refused: the table is full
         ("delmac 3 0 2:0:0:0:0:0", done("del", 3, 0, first[0])), ("addmac 3 9 9:9:9:9:9:9", added),
         ("listmac 3", listing(3, *entries(16384)[1:], ("09:09:09:09:09:09", 9))))
    fill(16385)
    talk(unit, "switch", ("listmac 3", ""))


def test_four_at_once_lose_no_entry(board):
    unit = board("ux3361")
    unit.sh("for i in 1 2 3 4; do (for j in 1 2 3 4 5 6; do vxcli switch addmac 0 $j $i:0:0:0:0:$j; done) & done; wait")
    lines = (unit.path / TABLE.format(0)).read_text().splitlines()
    assert sorted(lines) == sorted(f"{i:02}:00:00:00:00:{j:02} {j}" for i in range(1, 5) for j in range(1, 7))


# ---- rules for the CPU ----

@pytest.mark.parametrize("verb", ["add", "del"])
def test_refused_rules(board, verb):
    unit = board("ux3361")
    before = attributes(unit)
    talk(unit, "switch",
         *((f"{verb}cpumac {MAC} bad.address {side}", f"iswan {int(side)} is wrong value \n" + FAIL) for side in ("3", "-1", "256")),
         *((f"{verb}cpumac {MAC} '{address}' 1", f"ipv4 {address} is wrong format \n" + FAIL) for address in (
             "0.0.0.0", "1.2.3", "1.2.3.256", "::1.2.3.4", "1.2.3.4 ", "0.0.0.1", "224.0.0.1")),
         # Twelve zero bytes, and four that are 0 or 1 read the wrong way round: so ::1 is none of them.
         *((f"{verb}cpumac {MAC} {address} 1", f"ipv6 {address} is wrong format \n" + FAIL) for address in (
             "::", "::100:0", "1::2::3", "fe80::1%eth0")),
         *((f"{verb}cpumac {MAC} {address} 2", "") for address in ("host", "''")))
    assert changed(unit, before) == {}


def test_rules(board):
    unit = board("ux3361")

    def rules():
        return (unit.path / "switch/cpu_mac").read_text().splitlines()

    for word, address in (("192.168.1.254",) * 2, ("::1",) * 2, ("FE80::1", "fe80::1"), ("::100:1", "::1.0.0.1")):
        for side in ("0", "1x"):
            talk(unit, "switch", (f"addcpumac {MAC} {word} {side} 80 90", f"add cpu mac {MAC} {word}\n"))
            assert rules() == [f"{MAC} {address} {side[0]} -1 -1"]
            talk(unit, "switch", (f"delcpumac {MAC} {word} {side}", f"del cpu mac {MAC} {word}\n"))
            assert rules() == []
    # Only the management WAN's rules have ports: the destination's first, -1 for a missing one.
    for words in ("", "80", "80 90", "80x y z", "4294967295 -1 x"):
        talk(unit, "switch", (f"addcpumac {MAC} 1.2.3.4 2 {words}", f"add cpu mac {MAC} 1.2.3.4\n"))
    wanted = [f"{MAC} 1.2.3.4 2 {ports}" for ports in ("-1 -1", "-1 80", "90 80", "0 80")]
    assert rules() == wanted
    notice = "({})Not del cpumacEntry for tr069 wan,check x_vx_remote_port or x_vx_port is right\r\n"
    talk(unit, "switch", (f"delcpumac {MAC} 1.2.3.4 2", f"del cpu mac {MAC} 1.2.3.4\n" + notice.format(126)),
         (f"delcpumac {MAC} ::1 2", f"del cpu mac {MAC} ::1\n" + notice.format(144)),
         (f"addcpumac {MAC} ::1 2 65536 1", f"add cpu mac {MAC} ::1\n"))
    assert rules() == wanted
