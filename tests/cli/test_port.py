"""The port group, but for its counters and schedules (see test_pon) and what it does with protocols (test_proto)."""

import pytest

from links import Bad, attributes, calls, changed, set_attributes, talk


@pytest.mark.parametrize("command", ["stats", "status", "trafficen", "admin", "pause", "rate", "storm", "qos", "protoact"])
def test_port_numbers(board, command):
    """No number is too large for the tool; the library fails for ports that it does not know, and nothing comes of it."""
    unit = board("ux3361")
    with_pon = command in ("rate", "storm", "qos", "protoact")
    before = attributes(unit)
    unit.trace()
    talk(unit, "port", (f"{command} -1", Bad("-1")), (f"{command} -1x more", Bad("-1x")))
    assert calls(unit) == []
    heading = {"protoact": " Port{}: \n", "stats": "dsDropEvents = 0\n"}.get(command, "port {}\n")
    for words, result in ([("0", 0), ("4x", 4), ("14", 14), ("pon", 14 if with_pon else 0), ("PON", 0)], 0), (
            [("6", 6), ("16", 16), ("255", 255)], 1):
        for word, number in words:
            out = unit.run("vxcli", "port", command, word).out
            assert out == "fail!\n" if command == "status" and result else out.startswith(heading.format(number)), word
        assert {code for _, code in calls(unit)} == {result}
    assert changed(unit, before) == {}


def test_status(board):
    unit = board("ux3361")

    def link(text, up, speed, duplex):
        set_attributes(unit, {"switch/port1/link": text})
        talk(unit, "port", ("status 1 x", f"port 1\nisUp {up}\nspeed {speed}\nduplex {duplex}\n"))

    for value, name in enumerate(["unknown", "10M", "100M", "1000M", "2500M", "unknown"]):
        link(f"1 {value} 2\n", 1, name, "full")
    for value, name in enumerate(["unknown", "half", "full", "unknown"]):
        link(f"1 1 {value}\n", 1, "10M", name)
    link("4294967295 4294967295 5", -1, "unknown", "unknown")
    link("0 3 2\n", 0, "unknown", "unknown")
    set_attributes(unit, {"switch/port1/link": "up\n"})
    talk(unit, "port", ("status 1", "fail!\n"))


@pytest.mark.parametrize("command, label, operation", [("trafficen", "traffic_en", "TrafficEn"), ("admin", "admin", "Admin")])
def test_switches(board, command, label, operation):
    unit = board("ux3361")
    before = attributes(unit)
    on, off = f"port 2\n{label} 1\n", f"port 2\n{label} 0\n"
    talk(unit, "port", (f"{command} 2", on), (f"{command} 2 0", ""), (f"{command} 2", off), (f"{command} 2 1 1", off),
         *((f"{command} 2 {word}", Bad(word)) for word in ("2", "-1")), (f"{command} -2 2", Bad("-2")), (f"{command} 2 1", ""),
         (f"{command} 2 0 0", on), (f"{command} pon", f"port 0\n{label} 1\n"), (f"{command} 2 off", ""))
    assert changed(unit, before) == {f"switch/port2/{label}": "0\n"}
    unit.trace()
    unit.fault(f"libvx_switchApi_portGet{operation}")
    unit.fault(f"libvx_switchApi_portSet{operation}")
    talk(unit, "port", (f"{command} 1", f"port 1\n{label} 0\n"), (f"{command} 1 0", ""), (f"{command} 1", f"port 1\n{label} 1\n"))
    assert [result for _, result in calls(unit)] == [6, 6, 0]


def test_pause(board):
    unit = board("ux3361")
    before = attributes(unit)

    def pause(tx, rx, time):
        return f"port 0\npause tx {tx}\npause rx {rx}\npausetime {time}\n"

    talk(unit, "port", ("pause 0", pause(0, 0, 0)), ("pause 0 1", pause(0, 0, 0)), ("pause 0 1 1", ""), ("pause 0", pause(1, 1, 65535)),
         ("pause 0 0 1", ""), ("pause 0 1", pause(0, 1, 65535)), ("pause 0 1 1 1", pause(0, 1, 65535)), ("pause 0 2 3", Bad("2")),
         ("pause 0 1 -3", Bad("-3")), ("pause -1 2 3", Bad("-1")))
    assert changed(unit, before) == {"switch/port0/pause": "0 1 65535\n"}


def test_rate_limits(board):
    unit = board("ux3361")
    before = attributes(unit)

    def limits(port, rx, tx):
        return (f"port {port}\nrx rate limit en = {rx[0]}, rate = {rx[1]}kbps\n"
                f"tx rate limit en = {tx[0]}, rate = {tx[1]}kbps\n")

    now = limits(0, (0, 7), (1, 2500000))
    talk(unit, "port", ("rate pon", limits(14, (0, 0), (0, 0))), ("rate 0 1 1 2500000", ""), ("rate 0 0 0 7", ""), ("rate 0", now),
         *((f"rate 0{' 1' * words}", now) for words in (1, 2, 4)), ("rate pon 1 1 1", ""), ("rate 14", limits(14, (0, 0), (1, 1))),
         ("rate 0 1 1 2500001", Bad("2500001")), ("rate 0 1 1 -1", Bad("-1")), ("rate 0 1 2 -1", Bad("2")),
         ("rate 0 2 3 -1", Bad("2")), ("rate 0 -1 3 -1", Bad("-1")), ("rate -7 2 3 -1", Bad("-7")), ("rate 0", now))
    assert changed(unit, before) == {"switch/port0/rate_rx": "0 7\n", "switch/port0/rate_tx": "1 2500000\n",
                                     "switch/port14/rate_tx": "1 1\n"}
    unit.fault("libvx_switchApi_portGetRateLimit skip=1")  # what cannot be read prints as what was read before
    talk(unit, "port", ("rate 0", limits(0, (0, 7), (0, 7))))


def test_storm_limits(board):
    unit = board("ux3361")
    before = attributes(unit)

    def limits(port, *pairs):
        return f"port {port}\n" + "".join(f"rx {kind} rate limit en = {en}, rate = {rate}pps\n"
                                          for kind, (en, rate) in zip(("broadcast", "multicast", "unicast"), pairs))

    now = limits(2, (1, 1024000), (0, 5), (1, 9))
    talk(unit, "port", ("storm pon", limits(14, (0, 0), (0, 0), (0, 0))), ("storm 2 broadcast 1 1024000", ""),
         ("storm 2 multicast 0 5", ""), ("storm 2 unicast 1 9", ""), ("storm 2", now), ("storm 2 any", now),
         ("storm 2 any 1 1 1", now), ("storm 2 any 2 -1", Bad("any")), ("storm 2 Unicast 1 1", Bad("Unicast")),
         ("storm 2 unicast 2 -1", Bad("2")), ("storm 2 unicast 1 1024001", Bad("1024001")), ("storm -2 any 2 -1", Bad("-2")))
    assert changed(unit, before) == {"switch/port2/storm_broadcast": "1 1024000\n", "switch/port2/storm_multicast": "0 5\n",
                                     "switch/port2/storm_unicast": "1 9\n"}
    unit.fault("libvx_switchApi_portGetStormRateLimit skip=2")
    talk(unit, "port", ("storm 2", limits(2, (1, 1024000), (0, 5), (0, 5))))


def test_mode_and_reset(board):
    unit = board("ux3361")
    before = attributes(unit)

    def leaves(words, port, config):
        talk(unit, "port", (words, ""))
        assert changed(unit, before) == {f"switch/port{port}/link_config": config + "\n"}
        (unit.path / f"switch/port{port}/link_config").unlink()

    for speed, word in enumerate(("auto", "10M", "100M", "1000M", "2500M")):
        for duplex, other in enumerate(("auto", "half", "full")):
            leaves(f"mode 3 {word} {other}", 3, f"{int(speed == 0 or duplex == 0)} {speed} {duplex}")
    for words, port in (("reset", 5), ("reset 4", 4), ("reset 4 4", 5), ("reset -1 4", 5), ("reset pon", 0)):
        leaves(words, port, "2 4 2")
    wrong_count = "arguments num error!\n"
    talk(unit, "port", ("mode 3 x y z", wrong_count), ("mode -3 x y z", Bad("-3")), ("mode 3 1g Full", Bad("1g")),
         ("mode 3 auto Full", Bad("Full")), ("mode -3 1g Full", Bad("-3")), ("reset -1", Bad("-1")), ("reset 9", ""))
    assert changed(unit, before) == {}


def test_wan_ports(board):
    unit = board("ux3361")
    before = attributes(unit)

    def shown(*wan):
        return "".join(f"port:{port}     iswan:{int(port in wan)}\n" for port in range(6))

    # Numbers wrap at 16 and at 8 bits; the library refuses other flags than 0 and 1, and ports that cannot be one.
    talk(unit, "port", ("showwanport", shown()), ("setwanport 1 1", ""), ("setwanport 65539 257", ""), ("showwanport x", shown(1, 3)),
         ("setwanport 0 2", ""), ("setwanport 6 1", ""), ("setwanport -1 1", ""), ("setwanport 14 1", ""), ("setwanport 1 off", ""),
         ("showwanport", shown(3)))
    assert changed(unit, before) == {"switch/port1/wan": "0\n", "switch/port3/wan": "1\n"}
    unit.fault("libvx_switchApi_portGetWanPort skip=2")
    talk(unit, "port", ("showwanport", shown(3).replace("port:2     iswan:0\n", "")))
