"""Many vxcli at the same time, on one board and on as many boards; and the time that init takes. `make torture` takes
more of both."""

import os
import signal
import subprocess
import time

from bench import CHIPS, SUPPLY, WORKING, answers, events, factory_image, loaded, stored
from conftest import SANITIZED, TORTURE, VXBOARD

BOARDS, ROUNDS = (200, 20) if TORTURE else (12, 2)


def at_once(jobs, what):
    """Runs a shell script on a board for each of the jobs, all let go when the last one stands ready: what each says.
    Only a deadlock takes longer than the ten minutes."""
    gate, opener = os.pipe()
    running = [subprocess.Popen([VXBOARD, "run", "--no-wait", unit.path, "sh", "-c", f"echo ready; read go; {script}"],
                                stdin=gate, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True)
               for unit, script in jobs]
    try:
        assert {process.stdout.readline() for process in running} == {b"ready\n"}
        start = time.monotonic()
        os.close(opener)
        said = [process.communicate(timeout=max(1, start + 600 - time.monotonic()))[0].decode() for process in running]
        print(f"{what}: {time.monotonic() - start:.1f} s")
        return said
    finally:
        os.close(gate)
        for process in running:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)


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


def test_fifty_processes_on_one_board(board):
    """What each of them sets is there afterwards, and what it sees is what one of them has set. They say what is not."""
    unit, numbers = board("ux3361"), range(1, 51)
    unit.unit("var/bob_chip_type").write_text("2\n")
    unit.sh("vxcli sys load; vxcli voice calltest 1111111111; vxcli port rate 0 1 1 5", stderr=None)
    each = 10 * ROUNDS
    counted = {"libvx_switchApi_addMacEntry": each, "libvx_sys_vxnatFlush": each, "libvx_ponApi_i2cWrite": each,
               "libVoip_callTest": 2 * each, "libvx_sys_saveSysInfo": each}  # these all change the one file of faults
    for operation in counted:
        unit.fault(f"{operation} skip=100000")
    unit.trace()
    kinds = [  # for each process N, in each round R
        "said=$(vxcli bob write_reg 0x51 $((N + 30)) $R | tail -n 1); is 'vxcli bob write_reg OK';"
        "said=$(vxcli bob read_reg 0x51 $((N + 30)) | tail -n 1); is \"vxcli bob read_reg 0x51 $((N + 30)) $R\"",
        "vxcli switch addmac 0 $R 2:0:0:0:0:$N >/dev/null; vxcli sys flushnat >/dev/null",
        "vxcli port rate 0 1 1 2500000; vxcli voice calltest 2222222222; vxcli port rate 0 1 1 5; vxcli voice calltest 1111111111",
        "read said <switch/port0/rate_tx; is '1 5' '1 2500000'; read said <voice/line0/dialled; is 1111111111 2222222222",
        "set -- model vendor area sn province modelid equipmentid username userpw vendorid; shift $((N / 5 - 1));"
        "vxcli sys $1 $N.$R >/dev/null; said=$(vxcli sys $1); is \"${said% *} $N.$R\"; vxcli sys save >/dev/null",
    ]
    script = ("cd $VXBOARD; is() {{ case $said in \"$1\" | \"${{2-$1}}\") ;; *) echo \"$N $R: $said\" ;; esac; }};"
              "N={}; R=0; while [ $R -lt {} ]; do R=$((R + 1)); {}; done").format
    assert "".join(at_once([(unit, script(n, ROUNDS, kinds[(n - 1) % 5])) for n in numbers], "50 processes")) == ""
    lines = unit.trace()
    assert [line.fields[5] for line in lines if line.kind == "i2c"] == ["ok"] * 2 * each
    assert int((unit.path / "sys/nat_flushes").read_text()) == each
    assert unit.faults() == [f"{operation} skip={100000 - calls}" for operation, calls in counted.items()]
    assert sorted((unit.path / "switch/port0/mac_table").read_text().splitlines()) == sorted(
        f"02:00:00:00:00:{int(str(n), 16):02x} {r}" for n in numbers if n % 5 == 2 for r in range(1, ROUNDS + 1))
    assert {f"{n}.{ROUNDS}" for n in numbers if n % 5 == 0} <= set(unit.sh("vxcli sys load; vxcli sys show").out.split())


def test_on_many_boards(board, tmp_path):
    """All are calibrated at the same time."""
    profiles = ["ux3361", "gn28l95", "ux3320"]
    models = [board(profile) for profile in profiles]
    units = [models[number % 3].copy(tmp_path / f"unit{number}") for number in range(BOARDS)]
    said = at_once([(unit, "vxcli bob init") for unit in units], f"{BOARDS} boards")
    for number, unit in enumerate(units):
        profile = profiles[number % 3]
        assert said[number] == loaded(CHIPS[profile])
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
