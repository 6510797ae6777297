"""vxboard itself: making boards, the view under bubblewrap and under proot, the power cycle."""

import os
import signal
import subprocess
import time

import pytest

from conftest import VXBOARD, execute

bwrap_works = subprocess.run(["bwrap", "--dev-bind", "/", "/", "true"], stderr=subprocess.DEVNULL).returncode == 0


@pytest.fixture(params=["bwrap", "proot"])
def view(request, environment, monkeypatch):
    if request.param == "bwrap" and not bwrap_works:
        pytest.skip("no user namespaces here")
    monkeypatch.setenv("VXBOARD_VIEW", request.param)
    return request.param


@pytest.mark.parametrize("words, says", [
    (["fly"], 'no subcommand "fly"'),
    (["new", "ux9", "B"], 'no profile "ux9"; there are: '),
    (["new", "../profiles/ux3361", "B"], "no profile"),
    (["new", "ux3361", "full"], "full exists and is not an empty directory"),
    (["new", "ux3361", "no/where"], "make it first"),
    (["run", "no\nne", "true"], "no board at no\\x0ane: make one with"),
    (["run", "--fast", "full", "true"], "no option --fast"),
    (["run", "made", "--no-wait", "true"], "--no-wait: options come in front of the board"),
    (["run", "made", "--"], "a command after the board"),
    (["power-cycle", "led_out"], "led in it is a link"),
    (["power-cycle", "table_out"], "/table_out/i2c/1/table is a link"),
    (["power-cycle", "no_reset"], "/no_reset/i2c/1/reset/a2_low.bin is missing"),
    (["power-cycle", "full"], "full is not a board"),
    (["power-cycle", "linked"], "linked is not a board: unit/tmp in it is a link"),
    (["status", "half"], "half is a half-made board: no directory i2c in it"),
    (["run", "no_place", "true"], "half-made board: no directory unit/lib/firmware in it"),
    (["trace", "made", "of"], 'does not know "of"'),
    (["faults", "made", "clear", "all"], "takes no words"),
    (["help", "fly"], 'no subcommand "fly"'),
])
def test_errors_are_one_line_and_change_nothing(environment, tmp_path, monkeypatch, words, says):
    monkeypatch.chdir(tmp_path)
    (tmp_path / "full").mkdir()
    (tmp_path / "half/unit").mkdir(parents=True)
    (tmp_path / "full" / "file").write_text("kept")
    assert execute(VXBOARD, "new", "ux3361", "made").status == 0
    assert execute(VXBOARD, "new", "ux3361", "linked").status == 0
    for name, place in (("led_out", "led"), ("table_out", "i2c/1/table"), ("no_reset", "i2c/1/reset/a2_low.bin"),
                        ("no_place", "unit/lib/firmware")):
        assert execute(VXBOARD, "new", "ux3361", name).status == 0
        (tmp_path / name / place).rename(tmp_path / name / "old")
        if name.endswith("_out"):
            (tmp_path / name / place).symlink_to(tmp_path / "full")
    (tmp_path / "linked/unit/tmp").rmdir()
    (tmp_path / "linked/unit/tmp").symlink_to(tmp_path / "full")
    before = sorted(tmp_path.rglob("*"))
    status, out, err = execute(VXBOARD, *words)
    assert (status, out) == (2, "") and err.startswith("vxboard: ") and says in err and err.count("\n") == 1
    assert sorted(tmp_path.rglob("*")) == before and (tmp_path / "full" / "file").read_text() == "kept"


@pytest.mark.parametrize("script, expected", [
    ("no-such-command 2>/dev/null; echo $?; exec /etc 2>/dev/null", (126, "127\n")),
    ("kill -KILL $$", (128 + signal.SIGKILL, "")),
    ("cat; exit 7", (7, "from the caller")),
    ("pwd; echo $VXBOARD; command -v vxcli", (0, "/\n/.vxboard/board\n/.vxboard/bin/vxcli\n")),  # the view hides the caller's
    # What the view replaces is the board's, also for the newer system calls (statx, faccessat2).
    ("echo data >/var/f; stat -c %s /var/f; test -r /var/f; echo $?; ls -l /var | wc -l", (0, "5\n0\n2\n")),
    ("mv /etc/passwd /tmp/a && cp /tmp/a /userconfig/b && ls /tmp /userconfig/b", (0, "/userconfig/b\n\n/tmp:\na\n")),
    ("echo 1 >/lib/firmware/f; cat /lib/firmware/f; ls /proc/bus/pci", (0, "1\ndevices\n")),
    ("cat /sys/class/leds/pwr_led/trigger /sys/class/mem/null/dev", (0, "none\n1:3\n")),  # the board's beside the host's
    ("exec env -i /usr/bin/printf %s ok", (0, "ok")),
])
def test_run(view, board, tmp_path, monkeypatch, script, expected):
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("TMPDIR", str(tmp_path))
    assert board("ux3361").sh(script, wait=True, stdin="from the caller") == (*expected, "")


def test_nothing_in_a_board_leads_out_of_it(view, board):
    unit = board("ux3361")
    assert unit.sh("cd /etc/alternatives && ls awk && awk 'BEGIN { print 1 }'") == (0, "awk\n1\n", "")
    links = [entry for entry in unit.path.rglob("*") if entry.is_symlink()]
    assert links and not any(link.exists() for link in links)


def test_background_outlives_the_command(view, board):
    unit = board("ux3361")
    script = "(while [ ! -e /tmp/go ]; do sleep 0.01; done; echo late >/var/late; exit 9) >/dev/null 2>&1 & exit 3"
    status = subprocess.run([VXBOARD, "run", unit.path, "sh", "-c", script], stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL, timeout=60).returncode  # a pipe would stay open until all ended
    assert status == 3 and not unit.unit("var/late").exists()
    unit.unit("tmp/go").touch()
    deadline = time.monotonic() + 60
    while not unit.unit("var/late").exists() and time.monotonic() < deadline:
        time.sleep(0.01)
    assert unit.unit("var/late").exists()


def test_interrupt_is_left_to_the_command(view, board):
    unit = board("ux3361")
    script = "trap 'sleep 0.2; exit 33' INT; touch /var/ready; while :; do sleep 0.01; done"
    process = subprocess.Popen([VXBOARD, "run", unit.path, "sh", "-c", script], start_new_session=True)
    while not unit.unit("var/ready").exists():
        time.sleep(0.01)
    os.killpg(process.pid, signal.SIGINT)
    assert process.wait(timeout=60) == 33


def pages(unit):
    return {page.name: page.read_bytes() for page in (unit.path / "i2c/1").glob("*.bin")}


@pytest.mark.parametrize("profile, eeprom", [("ux3361", False), ("ux3361-eeprom", True)])
def test_power_cycle(board, profile, eeprom):
    unit = board(profile)
    bus = unit.path / "i2c/1"
    at_reset = {page.name: page.read_bytes() for page in (bus / "reset").glob("*.bin")}
    unit.sh("echo x >/var/x; mkdir -p /var/d/.e; echo x >/tmp/.x; echo x >/etc/x; echo x >/userconfig/config/x")
    for page in bus.glob("*.bin"):
        page.write_bytes(bytes(byte ^ 0x5A for byte in page.read_bytes()))
    (bus / "table").write_text("4\n")
    (bus / "busy").write_text("99999999999.0\n")
    changed = pages(unit)
    unit.power_cycle()
    low = changed["a2_low.bin"][:0x60] + at_reset["a2_low.bin"][0x60:]
    expected = changed | ({"a2_low.bin": low} if eeprom else at_reset)
    assert pages(unit) == expected
    assert (bus / "table").read_text() == "0\n" and not (bus / "busy").exists()
    assert [list(unit.unit(name).iterdir()) for name in ("var", "tmp")] == [[], []]
    assert unit.unit("etc/x").exists() and unit.unit("userconfig/config/x").exists()
