"""The EPON and the GPON group. The grammar of schedules and limits is the same for the ports, see there."""

import pytest

from links import Bad, attributes, calls, changed, set_attributes, talk

# group: what it numbers, how many of them a home gateway has
LINKS = {"epon": ("llid", 8), "gpon": ("tcont", 32)}
MANY = 2**64 - 1


def limit(en, rate):
    return f"tx rate limit en = {en}, rate = {rate}kbps\n"


def schedule(mode, prio, weight):
    return f"qos mod = {mode}\n" + "".join(f"Queue {i}:  prio {prio[i]} weight {weight[i]}\n" for i in range(8))


@pytest.mark.parametrize("group", LINKS)
def test_switches(board, group):
    unit = board("ux3361")
    set_attributes(unit, {f"pon/{group}/{name}": "x\n" for name in ("tx", "rx", "rogue")})
    for name, operation in (("tx", "OptTxCtl"), ("rx", "OptRxCtl"), ("rogue", "SetRogueOnu")):
        unit.trace()
        talk(unit, group, *((f"{name} {word}", Bad(word)) for word in ("2", "-1", "4294967295")), (f"{name} ''", ""))
        assert calls(unit) == [(f"ponApi_{group}{operation}", 0)] and attributes(unit)[f"pon/{group}/{name}"] == "0\n"
        # 0 for no number, the number that a word begins with, its low 32 bits; the rest is ignored.
        for word, value in (("1", 1), ("0", 0), ("1x 2", 1), ("x", 0), ("4294967297", 1), ("0x1", 0)):
            talk(unit, group, (f"{name} {word}", ""))
            assert attributes(unit)[f"pon/{group}/{name}"] == f"{value}\n"


def test_status(board):
    unit = board("ux3361")
    set_attributes(unit, {"pon/epon/los": "200", "pon/epon/link": "5", "pon/epon/fec_mode": "4294967295", "pon/epon/fec": "7",
                          "pon/gpon/los": "1", "pon/gpon/state": "3", "pon/gpon/fec": "2147483647"})
    unit.trace()
    talk(unit, "epon", ("status x", "los = 200\nlink = 5\nfecMode = -1\nfec = 7\n"))
    assert [name for name, _ in calls(unit)] == [
        "ponApi_eponIsLosExisted", "ponApi_eponGetFecMode", "ponApi_eponGetFecStatus", "ponApi_eponGetRegStatus"]
    talk(unit, "gpon", ("status x", "los = 1\nstate = O3\nfec = 2147483647\n"))
    assert [name for name, _ in calls(unit)] == [
        "ponApi_gponGetPonStaus", "ponApi_gponGetLosStatus", "ponApi_gponGetFecStatus"]


def test_state(board):
    unit = board("ux3361")
    before = attributes(unit)
    talk(unit, "gpon", ("state", "gpon state O5\n"), ("state 7", ""), ("state", "gpon state O7\n"),
         *((f"state {word}", Bad(word)) for word in ("5", "0", "2", "8", "-1", "x")), ("state 1 1", ""), ("state 5 5", ""),
         ("state", "gpon state O7\n"), ("state 1x", ""), ("state", "gpon state O1\n"))
    assert changed(unit, before) == {"pon/gpon/state": "1\n"}


# ---- counters ----

_SIDES = ("DropEvents", "Octs", "Pkts")
_FAULTS = [side + name for name in ("CrcErrPkts", "UnderSzPkts", "OverSzPkts", "Fragments", "Jabbers") for side in ("ds", "us")]
_START = [side + name for name in _SIDES for side in ("ds", "us")]
_RANGES = ("64_127", "128_255", "256_511", "512_1023", "1024_1518")
_DISCARDS = ["dsDiscards", "usDiscards"]


def _sizes(*names):
    return [f"{side}Pkts{name}" for side in ("ds", "us") for name in names]


def _words(text):
    return text.split()


COUNTERS = {
    "epon": ("stats", "pon/epon", _START + _words("dsBcastPkts usBcastPkts dsBcastOcts dsMcastPkts usMcastPkts dsMcastOcts") +
             _FAULTS + _sizes("64", "127", "255", "511", "1023", "1518") + _DISCARDS +
             _words("dsDiscardOcts usDiscardOcts dsErr usErr statusChgTime"), 41),
    "gpon": ("stats", "pon/gpon", _START + _words("dsBcastOcts dsBcastPkts usBcastPkts dsMcastPkts dsMcastOcts usMcastPkts") +
             _FAULTS + _sizes("_l64", *("_" + each for each in _RANGES)) +
             _words("dsDiscards dsDiscardOcts usDiscards usDiscardOcts dsErr usErr fecErr hecErr bipErr frmCnt"), 44),
    "port": ("stats 14", "switch/port14", _START + _words("dsBcastPkts usBcastPkts dsMcastPkts usMcastPkts") + _FAULTS +
             _sizes("64", *("_" + each for each in _RANGES)) + _DISCARDS + _words("dsErr usErr statusChgTime"), 37),
}


@pytest.mark.parametrize("group", COUNTERS)
def test_counters(board, group):
    command, directory, names, count = COUNTERS[group]
    assert len(names) == count
    unit = board("ux3361")
    zeros = "".join(f"{name} = 0\n" for name in names)
    talk(unit, group, (command, zeros))
    values = {name: MANY - i for i, name in enumerate(names)}
    missing = names[7]  # counts as 0
    gem = _words("dsGemCnt dsGemPlCnt usGemCnt usGemPlCnt")  # not shown
    set_attributes(unit, {f"{directory}/stats/{name}": f"{value}\n" for name, value in values.items() if name != missing})
    set_attributes(unit, {f"{directory}/stats/{name}": "1\n" for name in gem})
    values[missing] = 0
    talk(unit, group, (command + " x", "".join(f"{name} = {value}\n" for name, value in values.items())))
    for damage in ("18446744073709551616\n", "-1\n", "1 2\n", "x\n", "1" * 600):
        set_attributes(unit, {f"{directory}/stats/{names[0]}": damage})
        talk(unit, group, (command, zeros))


# ---- schedules and limits ----

WEIGHTS = ("300 -1 x 7 8y 256 255 0", [44, 255, 0, 7, 8, 0, 255, 0])
PRIORITIES = ("1 2 3 4 5 6 7 512", [1, 2, 3, 4, 5, 6, 7, 0])


@pytest.mark.parametrize("group, number, name, directory", [
    ("epon", "7", "llid 7", "pon/epon/llid7"), ("gpon", "31", "tcont 31", "pon/gpon/tcont31"),
    ("port", "4", "port 4", "switch/port4"), ("port", "pon", "port 14", "switch/port14")])
def test_schedules(board, group, number, name, directory):
    unit = board("ux3361")
    before = attributes(unit)
    ones, zeros, get = " 1" * 16, [0] * 8, f"qos {number}"
    for mode, words, prio, weight, code in [
            ("sp", "", range(8), [10] * 8, 0), ("wrr", WEIGHTS[0], zeros, WEIGHTS[1], 1),
            ("spwrr", f"{WEIGHTS[0]} {PRIORITIES[0]}", PRIORITIES[1], WEIGHTS[1], 2)]:
        talk(unit, group, (f"{get} {mode} {words}", ""), (get, f"{name}\n" + schedule(mode, prio, weight)))
        assert changed(unit, before) == {f"{directory}/qos": f"{code} " + " ".join(map(str, [*prio, *weight])) + "\n"}
    talk(unit, group, (f"{get} sp more", Bad("more")), (f"{get} sp 1 2", Bad("1")), (f"{get} SP", Bad("SP")),
         ("qos -1 SP", Bad("-1")), (f"{get} ''", Bad("")), (f"{get} weighted 1", Bad("weighted")),
         *((f"{get} wrr{ones[:2 * count]}", Bad("")) for count in (0, 3, 7, 9, 16)),
         *((f"{get} spwrr{ones[:2 * count]} ", Bad("")) for count in (0, 8, 15)), (f"{get} spwrr{ones} 1", Bad("")),
         (get, f"{name}\n" + schedule("spwrr", PRIORITIES[1], WEIGHTS[1])))
    # What the library does not know, and what it cannot read.
    for text, mode, prio in [("3" + " 1" * 16, "unknown", 1), ("4294967295" + " 1" * 16, "unknown", 1),
                             ("0" + " 256" * 16, "sp", 0), ("0 1", "sp", 0), ("0" + " 1" * 17, "sp", 0)]:
        set_attributes(unit, {f"{directory}/qos": text})
        talk(unit, group, (get, f"{name}\n" + schedule(mode, [prio] * 8, [prio] * 8)))


@pytest.mark.parametrize("group", LINKS)
def test_rate_limits(board, group):
    name, count = LINKS[group]
    unit = board("ux3361")
    before = attributes(unit)
    last = count - 1
    talk(unit, group, ("rate 3", f"{name} 3\n" + limit(0, 0)), ("rate 0 1 1024000", ""), (f"rate {last} 0 5kbps", ""),
         ("rate 1 '' x", ""), ("rate 0", f"{name} 0\n" + limit(1, 1024000)), ("rate 0 0", f"{name} 0\n" + limit(1, 1024000)),
         ("rate 0 0 0 0", f"{name} 0\n" + limit(1, 1024000)), (f"rate {last}", f"{name} {last}\n" + limit(0, 5)),
         ("rate 0 1 1024001", Bad("1024001")), ("rate 0 1 -1", Bad("-1")), ("rate 0 2 -1", Bad("2")), ("rate 0 -1 0", Bad("-1")),
         (f"rate {count} 2 -1", Bad(count)), ("rate -1", Bad("-1")), ("rate -1x", Bad("-1x")))
    talk(unit, group, ("qrate 3 7", f"{name} 3  queue 7\n" + limit(0, 0)), ("qrate 3 7 1 1024000", ""),
         (f"qrate {last} 0 0 1", ""), ("qrate 3 7", f"{name} 3  queue 7\n" + limit(1, 1024000)),
         ("qrate 3 7 0", f"{name} 3  queue 7\n" + limit(1, 1024000)),
         ("qrate 3 7 0 0 0", f"{name} 3  queue 7\n" + limit(1, 1024000)), ("qrate -1 -2 3 -1", Bad("-1")),
         (f"qrate {count} 0", Bad(count)), ("qrate 0 8 3 -1", Bad("8")), ("qrate 0 -8", Bad("-8")),
         ("qrate 0 7 3 -1", Bad("3")), ("qrate 0 7 1 1024001", Bad("1024001")), ("qrate 0 7 1 -1", Bad("-1")))
    place = f"pon/{group}/{name}"
    assert changed(unit, before) == {f"{place}0/rate": "1 1024000\n", f"{place}{last}/rate": "0 5\n", f"{place}1/rate": "0 0\n",
                                     f"{place}3/queue7_rate": "1 1024000\n", f"{place}{last}/queue0_rate": "0 1\n"}
    set_attributes(unit, {f"{place}0/rate": "4294967295 4294967294\n", f"pon/{group}/{name}s": "2\n", "pon/queues": "4\n"})
    talk(unit, group, ("rate 0", f"{name} 0\n" + limit(-1, -2)), ("rate 2", Bad("2")), ("qrate 1 4", Bad("4")),
         ("qrate 1 3 1 1", ""))


def test_single_family_unit_and_power_cycle(board):
    unit = board("sfu-gn25l95")
    before = attributes(unit)
    talk(unit, "gpon", ("rate 15 1 1", ""), ("rate 16", Bad("16")), ("qos 15 sp", ""), ("tx 0", ""))
    talk(unit, "epon", ("qrate 7 7 1 1", ""), ("rate 8", Bad("8")), ("rogue 1", ""))
    talk(unit, "switch", ("addmac 0 1 1:2:3:4:5:6", "add mac address:  port=0 vid =1 01:02:03:04:05:06\n"),
         ("listmac 1", Bad("1")))
    talk(unit, "port", ("admin 0 0", ""), ("proto show 1 1 5", ""), ("protoact pon show drop", ""), ("mode 0 10M half", ""),
         ("showwanport", "port:0     iswan:0\n"))
    assert len(changed(unit, before)) == 8 + 11 + 11  # all protocols
    unit.power_cycle()
    assert changed(unit, before) == {}
