"""Groups, commands, listings, exit statuses of the dispatcher."""

import pytest

from bench import FAIL, answers
from links import HELP, talk

GROUPS = ["epon", "gpon", "sys", "switch", "bob", "wlan", "port", "mirror", "image", "voice", "consoleRedir", "dnsmasq"]  # in listing order
BOB = {
    "read": "read : read bob data from flash",
    "opt": "opt : get optical diagnostic parameters",
    "save": "save : save bob data to flash",
    "get": "get : get register value",
    "set": "set : set register value",
    "init": "init : init bob",
    "restore": "restore : restore bob cfg to default",
    "driver": "show : show bob init result",
    "generate_mod": "generate_mod : generate mod lut",
    "prbs_set": "prbs_set : prbs_mode set ",
    "prbs_get": "prbs_get : prbs_mode get ",
    "-sprbsrxbist": "-sprbsrxbist :  set rx prbs ",
    "-gprbscounter": "-gprbscounter : get prbs counter ",
    "prbs_set_rxtx": "prbs_set : prbs_mode set",
    "-sprbsrxtxbist": "-sprbsrxbist : set rx prbs",
    "-prbscounter_show": "-prbscounter_show : get prbs counter show",
    "add": "add : redir add printk",
    "iic_set": "iic_set : start/stop bob driver",
    "iic_get": "iic_get : get bob driver status",
    "read_reg": "read_reg : read one register value",
    "write_reg": "write_reg : write one register value",
    "read_regs": "read_regs : read more than one register value",
    "write_regs": "write_regs : write more than one register value",
    "table_sel": "table_sel : select A2 table",
    "write_all_datas_to_flash": "save : save bob data to flash",
    "catv": "catv : get catv diagnostic parameters",
    "catvrf": "catvrf : set catv rf diagnostic parameters",
    "catvoa": "catvoa : set catv oa diagnostic parameters",
}


def listing(heading, names, width, per_line):
    cells = [name.ljust(width) + ("\n" if count % per_line == 0 else "") for count, name in enumerate(names, 1)]
    return f"Valid commands for {heading} are:\n" + "".join(cells) + "help\n"


ALL_GROUPS = listing("vxcli", GROUPS, 16, 7)
ALL_BOB = listing("bob", BOB, 25, 4)
BOB_HELP = "Valid commands for help are:\n" + "".join(f"{name:16} : {text}\n" for name, text in BOB.items())


def test_words_and_statuses(board):
    unit = board("ux3361")
    unit.trace()
    for words, status, out in [
        ("", 0, ALL_GROUPS),
        ("help", 0, ALL_GROUPS),
        ("help bob", 0, ALL_GROUPS),
        ("nosuch", 0, "unknow command nosuch\n" + ALL_GROUPS),
        ("BOB init", 0, "unknow command BOB\n" + ALL_GROUPS),
        ("bo", 0, "unknow command bo\n" + ALL_GROUPS),
        ("bob", 0, ALL_BOB),
        ("bob help", 0, BOB_HELP),
        ("bob help init", 0, BOB_HELP),
        ("bob nosuch", 1, "unknow command nosuch\n" + ALL_BOB),
        ("bob Init", 1, "unknow command Init\n" + ALL_BOB),
        ("bob ini", 1, "unknow command ini\n" + ALL_BOB),
        ("bob driver", 0, "bob:bob driver init FAIL.\n"),
        ("bob driver and more words", 0, "bob:bob driver init FAIL.\n"),
        ("bob iic_get", 1, "Check bosa chip type fail!\n" + FAIL),
    ]:
        assert unit.run("vxcli", *words.split())[:2] == (status, out), words
    for word in ("", "%s%n", "bob\n", "x" * 5000):
        assert unit.run("vxcli", word)[:2] == (0, f"unknow command {word}\n" + ALL_GROUPS)
        assert unit.run("vxcli", "bob", word)[:2] == (1, f"unknow command {word}\n" + ALL_BOB)
    assert unit.trace() == []


def test_headings_name_the_program_as_it_was_called(board):
    path = "/.vxboard/bin/vxcli"
    assert board("ux3361").run(path)[:2] == (0, listing(path, GROUPS, 16, 7))


# What every command that needs the chip makes of the chip type file: None: there is none.
UNKNOWN = "bob:BOSA Chip Type: Unknown.\n" + FAIL


@pytest.mark.parametrize("text, answer", [
    (None, "Check bosa chip type fail!\n" + FAIL), ("15\n", UNKNOWN), ("16\n", UNKNOWN), ("99", UNKNOWN), ("-3\n", UNKNOWN),
    ("-1", UNKNOWN), ("9999999999\n", UNKNOWN),
])
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
