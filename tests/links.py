"""The groups about PON links, switch ports and services: their help texts, and talks with them in a few lines:

    talk(unit, "epon", ("rate 0 1 100", ""),               # says nothing, status 0
                       ("rate 0 2 100", Bad("2")))          # refuses this word
"""

import re
from typing import NamedTuple

from bench import FAIL

_QUEUES = ("[sp|wrr|spwrr] " + " ".join(f"[wrr{i}]" for i in range(8)) + " " + " ".join(f"[pri{i}]" for i in range(8)) +
           ": get/set port qos settings")
_RATE, _ENABLE = "[en:0|1] [0-1024000:rate(kbps)] : get/set", "<0|1> : disable/enable"
_PROTO = "[dhcpbcast|arp|icmpv4|icmpv6|igmp|mld|pppoe|tcpack|mcast|tcpsyn|ieee1905|show]"
_CPU = "cpumac <mac: xx:xx:xx:xx:xx:xx> <ipv4: xxx.xxx.xxx.xxx|ipv6 xxxx:xxxx::xxxx> <iswan: 0|1|2,0-lan 1-wan 2-tr069>"
_PON = {name: (1, f"{name} {_ENABLE} {name}") for name in ("tx", "rx")}


def _numbered(kind, place):
    return {
        "rogue": (1, f"rogue {_ENABLE} rogue onu"),
        "qos": (1, f"qos {place} {_QUEUES}"),
        "rate": (1, f"rate {place} {_RATE} {kind} rate limit"),
        "qrate": (2, f"qrate {place} <queueId:0-7> {_RATE} queue rate limit"),
    }


HELP = {  # command: least words behind it, help text; in listing order
    "epon": {
        **_PON,
        "status": (0, "status : get current status"),
        "stats": (0, "stats : get statistics"),
        **_numbered("llid", "<llid:0-7>"),
    },
    "gpon": {
        **_PON,
        "state": (0, "state [1|7] : get/set gpon state"),
        "status": (0, "status  : get gpon status"),
        "stats": (0, "stats  : get gpon statistics"),
        **_numbered("tcont", "<tcont>"),
    },
    "switch": {
        "addcpumac": (3, f"add{_CPU} <sport:-1 ingore> <dport:-1 ingore>: add cpu mac"),
        "delcpumac": (3, f"del{_CPU}: del cpu mac"),
        "addmac": (3, "addmac <index> <vid> <xx:xx:xx:xx:xx:xx>: add mac address entry"),
        "delmac": (3, "delmac <index> <vid> <xx:xx:xx:xx:xx:xx>: delete mac address entry"),
        "listmac": (1, "listmac <index> : list mac table"),
        "clrmac": (1, "clrmac <index> : clear mac table"),
    },
    "port": {
        "stats": (1, "stats <index> : get port statistics"),
        "status": (1, "status <index> : get port status"),
        "trafficen": (1, "trafficen <index> [0|1] : get/set port traffic en state"),
        "admin": (1, "admin <index> [0|1] : get/set port admin state"),
        "pause": (1, "pause <index> [txval] [rxval] : get/set port pause state, val=0/1"),
        "rate": (1, "rate <port index 0-5 or pon> [0|1(rx/tx)] [en:0|1] [0-2500000:rate(kbps)] : get/set port rate limit"),
        "storm": (1, "storm <port index 0-4 or pon> [broadcast|multicast|unicast] [en:0|1] [0-1024000:rate(pps)] : "
                     "get/set port ingress storm rate limit"),
        "qos": (1, f"qos <port index or pon> {_QUEUES}"),
        "proto": (1, f"proto {_PROTO} [up:0|1] [en:0|1] [0-2500000:rate(fps)] : get/set port protocol packet queue rate limit"),
        "protoact": (1, f"protoact <port index or pon> {_PROTO} [fwd|trap|drop|copy] : get/set port protocol packet action"),
        "mode": (3, "mode <port index 0-4> <speed auto|10M|100M|1000M|2500M> <duplex auto|half|full>: set port mode"),
        "setwanport": (2, "setwanport <portId: 0-3> <iswan: 0|1,0-disable 1-enable>: set wan port"),
        "showwanport": (0, "getwanport: get wan port status for ethwan"),
        "reset": (0, "reset <xfi port index,default is 5>: reset xfi port"),
    },
    "mirror": {name: (0, f"mirror {name}: mirrored port is pon0, mirror port is eth0") for name in ("enable", "disable")},
    "image": {
        "check": (0, "check the dev name of current active image mtd"),
        "switch": (0, "switch to another image mtd(Main or Slave image mtd)"),
    },
    "voice": {
        "debug": (0, "debug <level 1|2|3|4> <filename:/userconfig/config/voicelog>: change voice log level"),
        "show": (0, "show : show voice tr104 parameters"),
        "update1": (1, "update : update register status"),
        "update2": (1, "update : update call status"),
        "update3": (1, "update : update ims feature"),
        "update4": (1, "update : update call statistics"),
        "update5": (1, "update : update poor quality"),
        "calltest": (1, "calltest number : do calltest"),
        "update6": (1, "update : update simulation"),
        "register": (1, "register : send register"),
        "unregister": (1, "unregister : send de-register"),
        "omcilinestatus": (1, "linestatus : G.988 9.9.11"),
        "omcicallcontrol": (1, "call control : G.988 9.9.12"),
        "omcicallcontrolReset": (1, "call control Reset: G.988 9.9.12"),
        "omcisipagent": (1, "sip agent :  G.988 9.9.14"),
        "omcicallinitiation": (1, "call initiation :  G.988 9.9.15"),
        "ring": (2, "ring [on|off] [0|1|2]"),
        "test": (1, "test [on|off]"),
    },
    "consoleRedir": {name: (0, f"{verb} console redirect to current telnet") for name, verb in (("on", "enable"), ("off", "disable"))},
    "dnsmasq": {
        "log": (1, "enable/disable dnsmasq log output to console"),
        "dump": (0, "dump dnsmasq cache info"),
        "dump_ipset": (0, "dump vx ipset list"),
        "flush_ipset": (0, "flush vx ipset list"),
        "reload_ipset": (0, "reload vx ipset list"),
    },
}


class Bad(NamedTuple):
    word: str  # the one that is named


def talk(unit, group, *exchanges):
    """Runs commands, each a process of its own: (words, what it says)."""
    def expected(words, reply):
        if isinstance(reply, Bad):
            return (1, f"bad arguments  {reply.word} !!\n\t{HELP[group][words.split()[0]][1]}\n" + FAIL)
        return (1, reply) if reply.endswith(FAIL) else (0, reply)

    script = "".join(f"vxcli {group} {words}; echo \"#$?\"\n" for words, _ in exchanges)
    parts = re.split(r"#(\d+)\n", unit.sh(script).out)
    said = [(words, int(status), out) for (words, _), out, status in zip(exchanges, parts[0::2], parts[1::2])]
    assert said == [(words, *expected(words, reply)) for words, reply in exchanges]


def attributes(unit):
    """All attributes of the links and the switch."""
    return {str(file.relative_to(unit.path)): file.read_text()
            for top in ("pon", "switch") for file in (unit.path / top).rglob("*") if file.is_file()}


def changed(unit, before):
    """Those that are new or have changed, and "" for those that are gone."""
    now = attributes(unit)
    return {name: now.get(name, "") for name in now.keys() | before.keys() if now.get(name) != before.get(name)}


def calls(unit):
    """The library operations that the trace shows, each with its result."""
    return [(line.fields[0].split("_", 1)[1], int(line.fields[1])) for line in unit.trace() if line.kind == "call"]


def set_attributes(unit, texts):
    for name, text in texts.items():
        path = unit.path / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
