"""The groups about PON links, switch ports and services: their help texts, and talks with them in a few lines:

    talk(unit, "epon", ("rate 0 1 100", ""),               # says nothing, status 0
                       ("rate 0 2 100", Bad("2")))          # refuses this word
"""

import re
from pathlib import Path
from typing import NamedTuple

from bench import FAIL, answers

LISTINGS = (Path(__file__).parent / "cli/listings.txt").read_text()  # of every group, as a shell shows them
HELP = {  # group: command: help text
    group: dict(re.findall(r"^(\S+) *: (.*(?:\n\t.*)*)$", rows, re.M))
    for group, rows in re.findall(r"^\$ vxcli (\S+) help\n((?:[^$].*\n)*)", LISTINGS, re.M)}
LEAST = {  # how many words a command needs at least, those that need any
    "epon": "tx 1 rx 1 rogue 1 qos 1 rate 1 qrate 2",
    "gpon": "tx 1 rx 1 rogue 1 qos 1 rate 1 qrate 2",
    "switch": "addcpumac 3 delcpumac 3 addmac 3 delmac 3 listmac 1 clrmac 1",
    "port": "stats 1 status 1 trafficen 1 admin 1 pause 1 rate 1 storm 1 qos 1 proto 1 protoact 1 mode 3 setwanport 2",
    "voice": ("update1 1 update2 1 update3 1 update4 1 update5 1 calltest 1 update6 1 register 1 unregister 1"
              " omcilinestatus 1 omcicallcontrol 1 omcicallcontrolReset 1 omcisipagent 1 omcicallinitiation 1 ring 2 test 1"),
    "dnsmasq": "log 1", "sys": "led 1 led_event 3 button 1 delete 1 rogue 3",
}


class Bad(NamedTuple):
    word: str  # the one that is named


def talk(unit, group, *exchanges):
    """Runs commands, each a process of its own: (words, what it says)."""
    def expected(words, reply):
        if isinstance(reply, Bad):
            return (1, f"bad arguments  {reply.word} !!\n\t{HELP[group][words.split()[0]]}\n" + FAIL)
        return (1, reply) if reply.endswith(FAIL) else (0, reply)

    said = [(words, *answer) for (words, _), answer in zip(exchanges, answers(unit, [words for words, _ in exchanges], group))]
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
