"""Groups, commands, listings, exit statuses of the dispatcher."""

import re

import pytest

from bench import FAIL, answers
from conftest import native
from links import HELP, LEAST, LISTINGS, talk


def listing(command):
    return re.search(rf"^\$ {command}\n((?:[^$].*\n)*)", LISTINGS, re.M)[1]


ALL_GROUPS, ALL_BOB = listing("vxcli"), listing("vxcli bob")


def test_listings(board):
    unit = board("ux3361")
    unit.trace()
    commands = ["vxcli", *(f"vxcli {words}" for group in HELP for words in (group, f"{group} help"))]
    assert unit.sh("".join(f"echo '$ {command}'; {command}\n" for command in commands)) == (0, LISTINGS, "") and unit.trace() == []


def test_words_and_statuses(board):
    unit = board("ux3361")
    unit.trace()
    for words, status, out in [
        ("", 0, ALL_GROUPS), ("help bob", 0, ALL_GROUPS), ("BOB init", 0, "unknow command BOB\n" + ALL_GROUPS),
        ("bo", 0, "unknow command bo\n" + ALL_GROUPS), ("bob", 0, ALL_BOB),
        ("bob Init", 1, "unknow command Init\n" + ALL_BOB), ("bob ini", 1, "unknow command ini\n" + ALL_BOB),
        ("bob driver and more words", 0, "bob:bob driver init FAIL.\n"),
    ]:
        assert unit.run("vxcli", *words.split())[:2] == (status, out), words
    assert unit.run("vxcli", "bob", "help", "init")[:2] == (0, listing("vxcli bob help"))
    for word in ("", "%s%n", "bob\n", "x" * 5000):
        assert unit.run("vxcli", word)[:2] == (0, f"unknow command {word}\n" + ALL_GROUPS)
        assert unit.run("vxcli", "bob", word)[:2] == (1, f"unknow command {word}\n" + ALL_BOB)
    assert unit.trace() == []


@native  # under qemu by its name only
def test_headings_name_the_program_as_it_was_called(board):
    path = "/.vxboard/bin/vxcli"
    assert board("ux3361").run(path)[:2] == (0, ALL_GROUPS.replace("vxcli", path))


# What every command that needs the chip makes of the chip type file: None: there is none.
UNKNOWN = "bob:BOSA Chip Type: Unknown.\n" + FAIL


@pytest.mark.parametrize("text, answer", [(None, "Check bosa chip type fail!\n" + FAIL), ("15\n", UNKNOWN), ("99", UNKNOWN),
                                          ("-1", UNKNOWN), ("9999999999\n", UNKNOWN)])
def test_commands_without_a_usable_chip(board, text, answer):
    unit = board("ux3361")
    if text is not None:
        unit.unit("var/bob_chip_type").write_text(text)
    unit.trace()
    commands = ["iic_get", "iic_set start", "iic_set", "read_reg 0x51 0", "read_regs 0x51 0 1", "write_reg 0x51 0 1",
                "write_regs 0x51 0 1 1", "table_sel 0", "table_sel", "save", "write_all_datas_to_flash", "restore"]
    assert answers(unit, commands) == [(1, answer)] * len(commands)
    assert unit.trace() == []
    assert {entry.name for entry in unit.unit("var").iterdir()} <= {"bob_chip_type"}


@pytest.mark.parametrize("group", LEAST)
def test_too_few_words(board, group):
    unit, words = board("ux3361"), LEAST[group].split()
    unit.trace()
    talk(unit, group, *((" ".join([name] + ["0"] * (int(least) - 1)), f"usage for {name}: {HELP[group][name]}\n")
                        for name, least in zip(words[0::2], words[1::2])))
    assert unit.trace() == []
