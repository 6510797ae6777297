"""Groups, commands, listings, exit statuses of the dispatcher."""

import pytest

from bench import FAIL, answers
from links import HELP, talk

GROUPS = [  # in listing order
    "epon", "gpon", "sys", "switch", "bob", "wlan", "port", "mirror", "image", "voice", "consoleRedir", "dnsmasq"]
BOB = """read opt save get set init restore driver generate_mod prbs_set prbs_get -sprbsrxbist -gprbscounter prbs_set_rxtx
-sprbsrxtxbist -prbscounter_show add iic_set iic_get read_reg write_reg read_regs write_regs table_sel
write_all_datas_to_flash catv catvrf catvoa""".split()
BOB_HELP = {  # texts that are not what they seem
    "driver": "show : show bob init result", "prbs_set": "prbs_set : prbs_mode set ", "prbs_set_rxtx": "prbs_set : prbs_mode set",
    "-sprbsrxbist": "-sprbsrxbist :  set rx prbs ", "-sprbsrxtxbist": "-sprbsrxbist : set rx prbs",
    "write_all_datas_to_flash": "save : save bob data to flash",
}


def listing(heading, names, width, per_line):
    cells = [name.ljust(width) + ("\n" if count % per_line == 0 else "") for count, name in enumerate(names, 1)]
    return f"Valid commands for {heading} are:\n" + "".join(cells) + "help\n"


ALL_GROUPS = listing("vxcli", GROUPS, 16, 7)
ALL_BOB = listing("bob", BOB, 25, 4)

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
    status, out, _ = unit.run("vxcli", "bob", "help", "init")
    assert status == 0 and [text[:16].rstrip() for text in out.splitlines()[1:]] == [name[:16] for name in BOB]
    assert all(f"\n{name:16} : {text}\n" in out for name, text in BOB_HELP.items())
    for word in ("", "%s%n", "bob\n", "x" * 5000):
        assert unit.run("vxcli", word)[:2] == (0, f"unknow command {word}\n" + ALL_GROUPS)
        assert unit.run("vxcli", "bob", word)[:2] == (1, f"unknow command {word}\n" + ALL_BOB)
    assert unit.trace() == []


def test_headings_name_the_program_as_it_was_called(board):
    path = "/.vxboard/bin/vxcli"
    assert board("ux3361").run(path)[:2] == (0, listing(path, GROUPS, 16, 7))


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


COLUMNS = {"voice": (21, 5)}  # width, names to a line; others have no long name


@pytest.mark.parametrize("group", HELP)
def test_groups_of_the_links(board, group):
    unit, rows = board("ux3361"), HELP[group]
    assert unit.run("vxcli", group)[:2] == (0, listing(group, rows, *COLUMNS.get(group, (16, 7))))
    assert unit.run("vxcli", group, "help")[:2] == (
        0, "Valid commands for help are:\n" + "".join(f"{name:16} : {text}\n" for name, (_, text) in rows.items()))
    unit.trace()
    talk(unit, group, *((" ".join([name] + ["0"] * (least - 1)), f"usage for {name}: {text}\n")
                        for name, (least, text) in rows.items() if least > 0))
    assert unit.trace() == []
