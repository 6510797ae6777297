"""Manufacturing fields: set, get, show, delete; what is refused; stores and reads that fail."""

from shlex import quote

from bench import FAIL
from links import HELP
from sysinfo import FIELDS, SETTABLE, TEXTS, calls, each, info, line, lines, replies, said, sys, unset

COMMANDS = [name for name in HELP["sys"] if name != "segv"]
SHOWN = [field for field in FIELDS if not field.hidden]
READ = [field for field in FIELDS if field.word != "ponmode"]  # by commands that print the field and nothing else


def words_of(fields):
    return [field.word for field in fields]


def set_all(unit):
    return sys(unit, *(field.set_to_value for field in SETTABLE), stderr=None)  # the network daemon may be missing


def test_every_field_lasts(board):
    unit = board("ux3361")
    for name, word in {"fw": "version", "boot": "bootversion"}.items():
        (unit.path / f"sys/{name}_version").write_text(next(field.value for field in FIELDS if field.word == word) + "\n")
    unit.trace()
    assert set_all(unit) == said(SETTABLE)
    assert calls(unit, "libvx_sys_set") == [field.setter for field in SETTABLE]
    stored = replies(["".join(lines(SHOWN)), *lines(READ)], "{}")
    assert sys(unit, "show me", *words_of(READ)) == stored
    assert sys(unit, "save") == [(0, "sys save success\n")]
    unit.power_cycle()
    info(unit).unlink()
    assert sys(unit, "load", "show", *words_of(READ), "model New", "load", "show") == [
        (0, "sys load success\n"), *stored, (0, "sys model success\n"), (0, "sys load success\n"), stored[0]]


def test_refused_values_change_nothing(board):
    unit = board("ux3361")
    set_all(unit)
    before = info(unit).read_bytes()
    bad = [(field, value) for field in TEXTS
           for value in ("x" * (int(field.room) + 1), "x" * 5000, "a\tb", "a\n", "\x1f", "\x7f")]
    for (field, value), (status, out) in zip(bad, sys(unit, *(f"{field.word} {quote(value)}" for field, value in bad))):
        assert status == 0 and out.endswith(f"sys {field.named} fail\n"), field
    assert info(unit).read_bytes() == before


def test_failed_stores(board):
    unit = board("ux3361")
    sys(unit, "load", "button 0")
    before = info(unit).read_bytes()
    for field in SETTABLE:
        unit.fault(f"libvx_sys_set{field.setter} times=always")
    fail = {"ponmode": (1, "sys ponmode fail\n" + FAIL)}
    assert set_all(unit) == [fail.get(field.word, answer) for field, answer in zip(SETTABLE, said(SETTABLE, "fail"))]
    assert info(unit).read_bytes() == before
    assert (unit.path / "sys/button_test").read_text() == "1\n"  # `mfg` switches it all the same


def test_failed_reads_and_empty_texts(board):
    unit = board("ux3361")
    set_all(unit)
    for name in ("ValueEmpty", "FwVersion", "BootVersion", *(field.setter for field in SETTABLE)):
        unit.fault(f"libvx_sys_get{name} times=always")
    assert sys(unit, "show", *words_of(READ)) == replies(["".join(unset(SHOWN)), *unset(READ)], "{}")
    (unit.path / "faults").unlink()
    sys(unit, *(f"{field.word} ''" for field in TEXTS), "fxsnum 0")
    assert sys(unit, *words_of(TEXTS)) == replies(unset(TEXTS), "{}")


def test_delete(board):
    unit = board("ux3361")
    set_all(unit)
    with open(info(unit), "a") as file:
        file.write("ForceTelnet=1\n")
    unit.fault("libvx_sys_setModel")
    unit.fault("libvx_sys_setValueEmpty")
    assert sys(unit, "delete model", "delete mac") == replies(["model", "mac"], "sys delete {} fail\n")
    cleared, kept = ([field for field in SETTABLE if bool(field.cleared) == wanted] for wanted in (True, False))
    before = info(unit).read_bytes()
    wrong = [*words_of(kept), "version", "MAC", "mac ", "", "m", "y" * 63 + "mac"]
    assert sys(unit, *each("delete", wrong)) == replies([word[:63] for word in wrong],
                                                        "Patameter is invalid: {}\nsys delete {} fail\n")
    assert info(unit).read_bytes() == before
    unit.trace()
    names = [*words_of(cleared), "ForceTelnet"]
    assert sys(unit, *(f"delete {name} more" for name in names)) == replies(names, "sys delete {} success\n")
    assert calls(unit, "libvx_sys_set") == [
        *(field.setter if field.cleared == "setter" else "ValueEmpty" for field in cleared), "ValueEmpty"]
    assert b"ForceTelnet" not in info(unit).read_bytes()
    cleared = [field for field in cleared if field.word != "ponmode"]
    (_, shown), *gets = sys(unit, "show", *words_of(cleared + kept))
    assert shown.count("\n") == 36 and "FIT Id" not in shown and "Production" not in shown
    assert gets == replies([*unset(cleared), *lines(kept)], "{}")


def test_numbers_and_further_words(board):
    unit = board("ux3361")
    for word, number in [("12abc", 12), ("''", 0), ("' 7'", 7), ("-5", -5), ("010", 10), ("2147483648", -2147483648)]:
        assert sys(unit, f"fenum {word} 9", "fenum", f"fxsnum {word}", "fxsnum")[1::2] == [
            (0, line("FE Num:", number)), (0, line("FXS Num:", number))], word
    assert sys(unit, "model a b", "model")[1:] == [(0, line("Model Name:", "a"))]
    assert sys(unit, "macnum 5", "macnum -1", "macnum 100000000", "macnum") == [  # an unbounded list would fill /etc
        (0, "sys macnum success\n"), *[(0, "sys macnum fail\n")] * 2, (0, line("Mac Num:", 5))]
    kinds = {0: "", 1: "SI3219x", 2: "SI3228x", 3: "", -1: ""}
    assert sys(unit, "slictype ''", *(words for ports in kinds for words in (f"fxsnum {ports}", "slictype")))[2::2] == replies(
        kinds.values(), line("Slic Type:", "{}"))


def test_no_word_brings_a_command_down(board):
    """Nothing overruns: the sanitizers would end the process with a status of their own."""
    words = ["x" * 5000, "9" * 400, "''", "'\xff\xfe\x80%n%s%5000d'", "x " * 200]
    commands = [f"{name} {word}" for name in COMMANDS for word in words]
    for command, (status, _) in zip(commands, sys(board("ux3361"), *commands, "show", stderr=None)):
        assert status in (0, 1), command
