"""What vxboard shows of a board: the trace, the armed faults, the status, the profiles."""

import re

from conftest import VXBOARD, execute

TRACE = """\
1763849000.900000 11 i2c 1 read 0x51 0x80 2 ok 55 58
1763849001.000000 11 i2c 1 write 0x51 0x7f 1 ok 87
1763849001.000000 11 wait 10000
1763849001.010000 11 i2c 1 read 0x51 0x70 33 ok {}
1763849001.010500 11 i2c 1 write 0x51 0x7f 1 nak 02
1763849001.010500 11 i2c 1 read 0x51 0x80 7 busy
1763849001.010500 11 i2c 2 read 0x51 0x80 1 missing
1763849001.010500 11 call libvx_sys_getBob 6
1763849001.010500 11 i2c 1 read 0x51 0x80 2 ok 55
1763849001.020000 12 run devmem 0x20100020 w \x1b[2J
1763849001.020000 12 power-cycle
1763849001.020000 12 i2c 1 read 0x51 0xf0 1 ok 04
{}
""".format(" ".join(f"{byte:02x}" for byte in range(0x70, 0x91)).replace("7f", "82"), "x" * 1100)

SHOWN = """\
       time        gap  what   bus  dev  table  reg   bytes
                        process 11
   0.000000             read   1    A2   ?      0x80  55 58
                        pause  100.000 ms
   0.100000   0.100000  write  1    A2          0x7f  87
   0.100000   0.000000  wait   10.000 ms
   0.110000   0.010000  read   1    A2          0x70  70 71 72 73 74 75 76 77 78 79 7a 7b 7c 7d 7e 82
                                         0x87   0x80  80 81 82 83 84 85 86 87 88 89 8a 8b 8c 8d 8e 8f
                                         0x87   0x90  90
   0.110500   0.000500  write  1    A2          0x7f  02
                                                      nak: nothing there acknowledged it
   0.110500   0.000000  read   1    A2   0x82   0x80  7 bytes: busy: the chip was still writing
   0.110500   0.000000  read   2    A2   ?      0x80  1 byte: missing: the bus is not there
   0.110500   0.000000  call   libvx_sys_getBob -> 6
                        ?      line 9: 1763849001.010500 11 i2c 1 read 0x51 0x80 2 ok 55
                        pause  9.500 ms
                        process 12
   0.120000   0.009500  run    devmem 0x20100020 w ?[2J
                        power  off and on
   0.120000   0.000000  read   1    A2   0x00   0xf0  04
                        ?      line 13: {}...

lines          11 in 0.120000 s
writes          1 of 1 bytes
reads           3 of 36 bytes
failed          3: 1 nak, 1 busy, 1 missing
waits           1 of 0.010000 s
pauses          2 of 0.109500 s
bus time 4.650 ms at 100 kHz, 1.163 ms at 400 kHz, 465 bits
""".format("x" * 64)  # 48 + 29 + 327 + 11 + 11 + 0 + 39 bits


def test_trace(board):
    unit = board("ux3361")
    trace = lambda word: execute(VXBOARD, "trace", unit.path, word)
    assert "switch the trace on with" in trace("show").err
    trace("on")
    (unit.path / "trace").write_text(TRACE)
    trace("off")
    status, out, err = trace("show")
    assert status == 2 and out.splitlines() == SHOWN.splitlines()
    assert "2 lines make no sense, the first is line 9;" in err and err.count("\n") == 1
    assert trace("clear") == (0, "", "") and [file.name for file in unit.path.glob("trace*")] == []
    trace("on")
    unit.run("vxcli", "bob", "init")
    shown = trace("show")
    transfers = [line.fields for line in unit.trace() if line.kind == "i2c"]
    assert shown.status == 0 and {fields[5] for fields in transfers} == {"ok"}
    # A byte is nine bits; the device goes first, and once more before what is read, each time after a start.
    bits = sum(9 * (len(fields) - 6) + (20 if fields[1] == "write" else 30) for fields in transfers)
    assert shown.out.endswith(f", {bits} bits\n")
    (unit.path / "trace").write_text("5.000000 7 mem 0x20100080 4 3 0x1 0\n")
    assert "mem    0x20100080[6:4] = 0x1 -> 0\n" in trace("show").out


def test_faults(board):
    unit = board("ux3361")
    faults = lambda *words: execute(VXBOARD, "faults", unit.path, *words)
    for words, says in [
        ("libvx_sys_savBob", "did you mean libvx_sys_saveBob?"),
        ("elephant", 'see "vxboard faults --list"'),
        ("libvx_sys_saveBob dev=0x51", "libvx_ponApi_i2cRead and libvx_ponApi_i2cWrite only"),
        ("libvx_ponApi_i2cRead dev=0xa2", "devices are 0 to 0x7f"),
        ("libvx_sys_saveBob times=0", "never strikes"),
        ("libvx_sys_saveBob count=2", 'no word "count=2"'),
        ("libvx_sys_saveBob libvx_sys_getBob result=2147483648", "from 0 to 2147483647"),  # neither is armed
        ("times=1", "begins with the name of an operation"),
    ]:
        status, out, err = faults("add", *words.split())
        assert (status, out, err.count("\n")) == (2, "", 1) and says in err, words
    assert faults().out == "no faults\n" and not (unit.path / "faults").exists()
    unit.fault("libvx_sys_saveBob time=2")
    faults("add", "libvx_ponApi_i2cWrite", "reg=0x7f", "skip=1", "libvx_sys_saveBob", "times=always")
    assert re.fullmatch('libvx_sys_saveBob time=2   <- never strikes: no word "time=2" .*\n'
                        "libvx_ponApi_i2cWrite reg=0x7f skip=1\nlibvx_sys_saveBob times=always\n", faults().out)
    unit.run("vxcli", "bob", "init", stderr=None)
    assert unit.faults() == ["libvx_sys_saveBob time=2", "libvx_sys_saveBob times=always"]
    assert faults("clear").status == 0 and faults().out == "no faults\n"


def test_status(board):
    unit = board("ux3361-mt7915")

    def status():
        result = execute(VXBOARD, "status", unit.path)
        assert (result.status, result.err) == (0, "") and result.out.count("\n") <= 40
        return dict(re.findall(r"^(\S+) +(.*(?:\n +.*)*)", result.out, re.MULTILINE))

    shown = status()
    assert shown["profile"] == "ux3361-mt7915" and "02:56:58:10:20:30" in shown["unit"] and shown["trace"] == "off"
    assert shown["i2c/1"] == "UX3361, no EEPROM, table 0x00 selected, ready" and shown["Wi-Fi"] == "mt7915 (14c3:7915)"
    unit.trace()
    unit.fault("libvx_sys_getBob skip=9")
    assert unit.sh("vxcli bob init; vxcli sys led 1").status == 0
    shown = status()
    assert "chip type 2, driver running" in shown["bob"] and "bob 16 KiB holds 1792 bytes" in shown["flash"]
    assert "getBob skip=8" in shown["faults"] and re.match(r"on, \d\d+ lines", shown["trace"])
    assert "pwr_led lit" in shown["LEDs"] and "--no-wait" in shown["clock"]
    (unit.path / "i2c/1/table").write_text("\x1b[2J\n")
    (unit.path / "clock").write_text("x")
    execute("rm", "-r", unit.path / "flash", unit.path / "switch/port1/link")
    shown = status()
    assert "table damaged" in shown["i2c/1"] and "1 ?" in shown["ports"] and shown["clock"] == "damaged"
    assert "bob ?" in shown["flash"]


def test_profiles(environment):
    lines = [" ".join(line.split()) for line in execute(VXBOARD, "profiles").out.splitlines()]
    full = execute("sh", "-c", 'exec "$0" profiles >/dev/full', VXBOARD)
    assert full == (2, "", "vxboard: cannot write to standard output\n")
    assert {"gn25l95-eeprom GN25L95 yes - home gateway", "sfu-gn25l95 GN25L95 no - single-family unit",
            "ux3361-mt7615-mt7603 UX3361 no mt7615 mt7603 home gateway"} < set(lines)
