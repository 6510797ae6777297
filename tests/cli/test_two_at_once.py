"""Several vxcli at the same time, on one board and on two; and the time that init takes."""

import os
from concurrent.futures import ThreadPoolExecutor

from bench import CHIPS, SUPPLY, WORKING, answers, events, factory_image, loaded, stored
from conftest import SANITIZED


def test_on_one_board(board):
    """Single transfers of many processes at once: none is lost, none is torn, each answer is its own."""
    unit = board("ux3361")
    unit.unit("var/bob_chip_type").write_text("2\n")
    unit.trace()
    registers = range(0x10, 0x40)
    script = "".join(f"vxcli bob write_reg 0x51 {reg} {reg + 100} & " for reg in registers)
    assert unit.sh(script + "wait").out.count("vxcli bob write_reg OK\n") == len(registers)
    script = "".join(f"vxcli bob read_reg 0x51 {reg} & " for reg in registers)
    out = unit.sh(script + "wait").out
    assert all(f"vxcli bob read_reg 0x51 {reg} {reg + 100}\n" in out for reg in registers)
    lines = unit.trace()
    assert len(lines) == 2 * len(registers) and all(line.fields[5] == "ok" for line in lines)


def test_stores_on_one_board(board):
    """Images that are stored and brought back at the same time come out whole."""
    unit = board("ux3320")
    answers(unit, ["init"])
    image = stored(unit)
    out = unit.sh("for i in 1 2 3 4 5 6 7 8; do vxcli bob read & vxcli_bus_steps save get & done; wait").out
    assert out == "ok\n" * 16 and stored(unit) == image == unit.unit(WORKING[1:]).read_bytes()


def test_on_two_boards(board):
    profiles = ["ux3361", "gn28l95", "ux3361"]
    units = [board(profile) for profile in profiles]
    with ThreadPoolExecutor() as pool:
        results = list(pool.map(lambda unit: unit.run("vxcli", "bob", "init"), units))
    for profile, unit, result in zip(profiles, units, results):
        assert result[:2] == (0, loaded(CHIPS[profile]))
        assert stored(unit) == factory_image(profile, unit) == unit.unit(WORKING[1:]).read_bytes()


def test_init_takes_its_waits_and_little_more(board):
    """In real time, against a program that does nothing but these waits: other tests run meanwhile."""
    chip, unit = CHIPS["ux3361"], board("ux3361")
    waits = [line.split()[1] for line in events(chip, f"{chip.write} {SUPPLY}", factory_image("ux3361", unit))
             if line.startswith("wait")]
    slow = os.environ["VXBOARD_VIEW"] == "proot" or SANITIZED
    script = ("rm -f /var/velmarix_bob.bin; date +%s.%N; vxcli_bus_steps " + " ".join(f"wait:{us}" for us in waits) +
              "; date +%s.%N; vxcli bob init > /tmp/out; date +%s.%N")
    ratios = []
    while len(ratios) < 4 and (not ratios or min(ratios) > 1.05):
        start, middle, end = map(float, unit.sh(script, wait=True).out.split())
        assert end - middle >= sum(map(int, waits)) / 1e6
        ratios.append((end - middle) / (middle - start))
    assert min(ratios) <= (1.5 if slow else 1.05), ratios
