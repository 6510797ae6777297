"""port proto and port protoact."""

from links import Bad, attributes, calls, changed, set_attributes, talk

PROTOCOLS = "dhcpbcast arp icmpv4 icmpv6 igmp mld pppoe tcpack mcast tcpsyn ieee1905".split()
LISTED = PROTOCOLS[:-1]  # ieee1905 never


def limits(name, ingress, egress):
    return "".join(f" {name:12}[{side:7}]:en = {en}, fps = {rate} \n"
                   for side, (en, rate) in (("ingress", ingress), ("egress", egress)))


def actions(port, **names):
    return f" Port{port}: \n" + "".join(f"  {protocol:12} action: {action} \n" for protocol, action in names.items())


def test_limits(board):
    unit = board("ux3361")
    before = attributes(unit)
    unit.trace()
    none = (0, 0)
    for number, name in enumerate(PROTOCOLS):
        ingress, egress = (1, 1000000 - number), (0, number)
        talk(unit, "port", (f"proto {name}", limits(name, none, none)), (f"proto {name} 1 1 {ingress[1]}", ""),
             (f"proto {name} 0 0 {egress[1]}", ""), (f"proto {name} 1", limits(name, ingress, egress)))
    set_then_get = [("switchApi_GetProtoQueueLimit", 0)] * 2 + [("switchApi_SetProtoQueueLimit", 0)] * 2
    assert calls(unit) == (set_then_get + set_then_get[:2]) * len(PROTOCOLS)
    assert changed(unit, before) == {f"switch/proto/{name}_{side}": text for i, name in enumerate(PROTOCOLS)
                                     for side, text in (("ingress", f"1 {1000000 - i}\n"), ("egress", f"0 {i}\n"))}
    everything = "".join(limits(name, (1, 1000000 - i), (0, i)) for i, name in enumerate(LISTED))
    talk(unit, "port", ("proto show", everything), ("proto show 1 1 1 1", everything), ("proto show 1 0 100", ""),
         ("proto show", "".join(limits(name, (0, 100), (0, i)) for i, name in enumerate(LISTED))),
         ("proto ieee1905", limits("ieee1905", (0, 100), (0, 10))))


def test_refused_limits(board):
    unit = board("ux3361")
    unit.trace()
    talk(unit, "port",
         # It is the word behind the protocol, and the flag, that are named.
         ("proto bgp", Bad("(null)")), ("proto bgp 1 0 1", Bad("1")), ("proto arp 1 1 1000001", Bad("1")), ("proto arp 2 0 1", Bad("0")),
         ("proto arp 1 z9 -1", Bad("z9")), ("proto arp -1 1x 1", Bad("1x")), ("proto show 2 1 1", Bad("1")))
    assert calls(unit) == []


def test_actions(board):
    unit = board("ux3361")
    before = attributes(unit)
    for number, name in enumerate(PROTOCOLS):
        for action in ("copy", "fwd", "trap", "drop"):
            talk(unit, "port", (f"protoact 0 {name} {action}", ""), (f"protoact 0 {name} fwd x", actions(0, **{name: action})))
        assert changed(unit, before) == {f"switch/port0/proto_{other}": "2\n" for other in PROTOCOLS[:number + 1]}
    everything = actions(14, **{name: "copy" for name in LISTED})
    talk(unit, "port", ("protoact pon show copy", ""), ("protoact pon", everything), ("protoact 14 show", everything),
         ("protoact pon ieee1905", actions(14, ieee1905="copy")))


def test_refused_and_unknown_actions(board):
    unit = board("ux3361")
    before = attributes(unit)
    talk(unit, "port", ("protoact 0 arp dhcpbcast", Bad("dhcpbcast")), ("protoact 0 bgp forward", Bad("bgp")),
         ("protoact 0 Show", Bad("Show")), ("protoact -1 bgp forward", Bad("-1")))
    assert changed(unit, before) == {}
    # One number too many has a name: that of the first protocol.
    for text, name in (("4", "dhcpbcast"), ("5", "unknown"), ("4294967295", "unknown"), ("x", "fwd")):
        set_attributes(unit, {"switch/port0/proto_arp": text + "\n"})
        talk(unit, "port", ("protoact 0 arp", actions(0, arp=name)))
