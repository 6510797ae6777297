"""Port mirroring, the firmware image, the console and the signals to dnsmasq."""

import fcntl
import os
import select
import subprocess
import termios
import time

import pytest

from bench import FAIL
from conftest import VXBOARD
from links import HELP, talk


def programs(unit):
    return [" ".join(line.fields) for line in unit.trace() if line.kind == "run"]


def test_mirror(board):
    unit = board("ux3361")
    unit.trace()
    banner = "*** mirror {} ***\nmirrored port is pon0, mirror port is eth0\n"
    talk(unit, "mirror", ("enable", banner.format("enable")), ("enable eth1; true", banner.format("enable")),
         ("disable x", banner.format("disable")))
    assert programs(unit) == ["cmd mirror add pon0 eth3"] * 2 + ["cmd mirror del pon0 eth3"]
    # The banner comes before what the command says; without such a command it is all.
    speaks = "printf '#!/bin/sh\\necho \"$@\"; exit 1\\n' >/tmp/cmd; chmod 755 /tmp/cmd; PATH=/tmp:$PATH vxcli mirror enable | cat"
    assert unit.sh(speaks).out == banner.format("enable") + "mirror add pon0 eth3\n"
    missing = unit.sh("PATH=/usr/bin:/bin /.vxboard/bin/vxcli mirror disable", stderr=None)
    assert missing[:2] == (0, banner.format("disable"))


def test_image(board):
    unit = board("ux3361")
    main, now = unit.path / "sys/main_image", "Current image mtd is: {}\n"
    unit.trace()
    talk(unit, "image", ("check", now.format("image0")), ("switch now", ""), ("check x", now.format("image1")),
         ("switch", ""), ("check", now.format("image0")), ("switch", ""))
    assert programs(unit) == ["vxImageSwitch"] * 3
    unit.power_cycle()
    assert main.read_text() == "image1\n"
    for text, name in [("m" * 31, "m" * 31), ("m" * 32, ""), ("", "")]:
        main.write_text(text + "\n")
        talk(unit, "image", ("check", now.format(name)), ("switch", ""))
    unit.fault("libvx_sys_getMainImageMtd")
    talk(unit, "image", ("check", now.format("")))


# ---- on a terminal ----

def on_terminal(unit, script, timeout=60):
    """Runs a script in a session with a terminal of its own: the terminal's name, the status and the output."""
    ours, theirs = os.openpty()
    name = os.ttyname(theirs)
    process = subprocess.Popen([VXBOARD, "run", unit.path, "sh", "-c", script], stdin=theirs, stdout=theirs, stderr=theirs,
                               start_new_session=True, preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY))
    os.close(theirs)
    out, end = b"", time.monotonic() + timeout
    try:
        while select.select([ours], [], [], max(end - time.monotonic(), 0))[0]:
            out += os.read(ours, 4096)
        pytest.fail(f"no end after {timeout} s: {script}\n{out!r}")
    except OSError:  # the last one has closed it
        pass
    finally:
        os.close(ours)  # hangs up on what still runs
    return name, process.wait(), out.decode()


ON, OFF = "console_redirect successfuly \r\n", "console_redirect to /dev/console successfuly \r\n"
ON_FAILS, OFF_FAILS = "console_redirect fail \r\n" + FAIL, "console_redirect to /dev/console fail \r\n" + FAIL
NO_CONSOLE = "open /dev/console error\n" + ON_FAILS


def test_console_on_a_terminal(board):
    unit = board("ux3361")
    redirect = unit.path / "console/redirect"
    unit.trace()
    script = "vxcli consoleRedir {}; echo $?; "
    name, status, out = on_terminal(unit, script.format("on x") + "cat /.vxboard/board/console/redirect; " +
                                    script.format("on") + script.format("off x"))
    # A second terminal does not get it while the first has it; the terminal adds a carriage return to each line end.
    expected = ON + f"0\n{name}\n" + ON_FAILS + "1\n" + OFF + "0\n"
    assert (status, out) == (0, expected.replace("\n", "\r\n"))
    assert redirect.read_text() == "\n"
    assert [line.fields for line in unit.trace()] == [["console_redirect", result] for result in ("0", "-1", "0")]
    redirect.write_text("/dev/pts/no-such\n")  # a terminal that is gone has lost it
    assert on_terminal(unit, "vxcli consoleRedir on")[1] == 0
    unit.power_cycle()
    assert redirect.read_text() == "\n"


def test_console_elsewhere(board):
    """In a pipe nothing can be redirected, but the console gets back what it had."""
    unit = board("ux3361")
    (unit.path / "console/redirect").write_text("/dev/pts/0\n")
    talk(unit, "consoleRedir", ("on", ON_FAILS), ("off", OFF), ("off <&-", NO_CONSOLE))
    assert (unit.path / "console/redirect").read_text() == "\n"
    unit.fault("console_redirect")
    talk(unit, "consoleRedir", ("off", OFF_FAILS))
    (unit.path / "console/output").unlink()
    talk(unit, "consoleRedir", ("off", NO_CONSOLE))


# ---- dnsmasq ----

# A process of this name, which tells the pipe what it is asked by the signal. Python has no name for a signal's value,
# but it stands where the status of a child stands.
PROCESS = """
import ctypes, signal, sys
ctypes.CDLL(None).prctl(15, sys.argv[1].encode(), 0, 0, 0)
signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGUSR1])
def tell(text):
    with open(sys.argv[2], "w") as pipe:
        print(sys.argv[1], text, file=pipe)
tell("ready")
while True:
    got = signal.sigwaitinfo([signal.SIGUSR1])
    tell(f"{'queued' if got.si_code == -1 else 'sent'} {got.si_status}")
"""
PARAMETER = "parameter should be enable/disable\n"


def with_processes(unit, names, script):
    """Runs a script besides processes of these names, p0, p1 ...; `heard` prints what the next one is asked."""
    unit.unit("tmp/process.py").write_text(PROCESS)
    start = "mkfifo /tmp/pipe; exec 3<>/tmp/pipe; heard() { read -r said <&3; echo \"$said\"; }\n"
    for number, name in enumerate(names):
        start += f"python3 /tmp/process.py {name} /tmp/pipe & p{number}=$!; heard\n"
    end = "kill " + " ".join(f"$p{number}" for number in range(len(names))) + "; wait; rm /tmp/pipe"
    ready = "".join(f"{name} ready\n" for name in names)
    out = on_terminal(unit, start + script + end)[2].replace("\r\n", "\n")
    assert out.startswith(ready)
    return out.removeprefix(ready)


# One after another, as each may see the processes of the others in its list.
def test_dnsmasq(board):
    unit = board("ux3361")
    quiet = "vxcli dnsmasq dump; vxcli dnsmasq log enable; vxcli dnsmasq log on; "
    assert on_terminal(unit, quiet + "echo $?")[1:] == (0, "0\r\n")

    asked = {"dump": 0, "log enable": 1, "log disable x": 2, "flush_ipset": 3, "reload_ipset x": 4, "dump_ipset": 5}
    script = "".join(f"vxcli dnsmasq {words}; echo $?; heard\n" for words in asked)
    refused = "".join(f"vxcli dnsmasq log {word}; echo $?\n" for word in ("on", "Enable", "enabled", "''"))
    assert with_processes(unit, ["dnsmasq"], script + refused + "vxcli dnsmasq log\nvxcli dnsmasq dump_ipset; heard\n") == (
        "".join(f"0\ndnsmasq queued {value}\n" for value in asked.values()) + (PARAMETER + "0\n") * 4 +
        f"usage for log: {HELP['dnsmasq']['log']}\ndnsmasq queued 5\n")

    # Any process with this name in its own is taken for the server; if there are several, the first in the list.
    assert with_processes(unit, ["my-dnsmasq2"], "vxcli dnsmasq dump; heard\n") == "my-dnsmasq2 queued 0\n"
    first = "[ $p0 -lt $p1 ] && echo dnsmasq || echo xdnsmasq\nvxcli dnsmasq flush_ipset; heard\n"
    name, heard = with_processes(unit, ["dnsmasq", "xdnsmasq"], first).splitlines()
    assert heard == f"{name} queued 3"
    strangers = ["dnsmas", "DNSMASQ", "vxcli-dnsmasq", "dnsmasq-grep"]
    assert with_processes(unit, strangers, quiet) == ""


def test_dnsmasq_in_other_lists(board):
    """Whatever the list of processes looks like, the first line with the name begins with the process."""
    unit = board("ux3361")
    fake = "printf '#!/bin/sh\\ncat /tmp/list\\n' >/tmp/ps; chmod 755 /tmp/ps; PATH=/tmp:$PATH\n"
    rows = [("   $p0 root  1234 S  /usr/sbin/dnsmasq -C /etc/x\\n1 init\\n", 5), ("1 vxcli dnsmasq\\n7 grep dnsmasq\\n$p0 dnsmasq\\n", 5),
            ("$p0\\tdnsmasq " + "x" * 300 + "\\n999999 dnsmasq\\n", 5), ("1 dnsmasq\\n$p0 dnsmasq\\n", None),
            ("dnsmasq $p0\\n$p0 dnsmasq\\n", None), ("0$p0 Dnsmasq\\n", None), ("", None), ("-1 dnsmasq\\n$p0 dnsmasq\\n", None)]
    # Without a server the word is not looked at.
    script = fake + "".join(f"printf -- \"{text}\" >/tmp/list; vxcli dnsmasq {'dump_ipset; heard' if value else 'log on; echo'}\n"
                            for text, value in rows)
    assert with_processes(unit, ["server"], script) == "".join(f"server queued {value}\n" if value else "\n" for _, value in rows)
