"""The voice commands: each reaches its operation with its words, and what it leaves on the phone lines."""

import pytest

from links import talk

# command: operation, and what it leaves on the line
LINE_ROWS = {
    "update1": ("update_registerStatus", "refreshed", "register status"),
    "update2": ("update_callStatus", "refreshed", "call status"),
    "update3": ("update_IMSFeature", "refreshed", "ims feature"),
    "update4": ("update_callStatistics", "refreshed", "call statistics"),
    "update5": ("update_poorQuality", "refreshed", "poor quality"),
    "update6": ("Update_Simulation", "refreshed", "simulation"),
    "register": ("Register", "registered", "1"),
    "unregister": ("unRegister", "registered", "0"),
    "omcilinestatus": ("omciLineStatus", "reported", "line status"),
    "omcicallcontrol": ("omciCallControl", "reported", "call control"),
    "omcicallcontrolReset": ("omciCallControlReset", "reported", "call control reset"),
    "omcisipagent": ("omciSIPAgent", "reported", "sip agent"),
    "omcicallinitiation": ("omciCallInitiation", "reported", "call initiation"),
}
LEVEL = "invalid log level {}, value should be 1-4\n"


def state(unit, *names):
    return [(unit.path / "voice" / name).read_text().removesuffix("\n") for name in names]


def calls(unit):
    return [f"{line.fields[0].removeprefix('libVoip_')} {line.fields[1]}" for line in unit.trace()]


@pytest.mark.parametrize("command", LINE_ROWS)
def test_line_commands(board, command):
    unit = board("ux3361")
    operation, attribute, left = LINE_ROWS[command]
    lines = [f"line{number}/{attribute}" for number in (0, 1)]
    before = "0" if left == "1" else "1"
    for word, result, after in [("1", 0, [before, left]), ("' 1x' more", 0, [before, left]), ("x", 0, [left, before]),
                                ("4294967297", 0, [before, left]), ("2", 1, [before] * 2), ("-1", 1, [before] * 2)]:
        for line in lines:
            (unit.path / "voice" / line).write_text(before + "\n")
        unit.trace()
        talk(unit, "voice", (f"{command} {word}", ""))
        assert (calls(unit), state(unit, *lines)) == ([f"{operation} {result}"], after), word


def test_ring_and_test(board):
    """The words for on and off count wherever they stand in a word, and on comes first."""
    unit = board("ux3361")
    unit.trace()
    ringing, testing = ("line0/ringing", "line1/ringing"), ("line0/in_test", "line1/in_test")
    for words, called, after in [
            ("ring bonus 1", ["phoneRingStart 0"], "0100"), ("ring on 0 1", ["phoneRingStart 0"], "1100"),
            ("ring ON 0", [], "1100"), ("ring of 1", [], "1100"), ("ring offon 2", ["phoneRingStart 1"], "1100"),
            ("ring xoffx 1", ["phoneRingStop 0"], "1000"), ("ring off x", ["phoneRingStop 0"], "0000"),
            ("test offon", ["phoneTest 0"], "0011"), ("test Off", [], "0011"), ("test o n", [], "0011"),
            ("test ''", [], "0011"), ("test turnoff", ["phoneTest 0"], "0000"), ("test second 0", ["phoneTest 0"], "0011")]:
        talk(unit, "voice", (words, ""))
        assert (calls(unit), "".join(state(unit, *ringing, *testing))) == (called, after), words


def test_log_level(board):
    unit = board("ux3361")
    unit.trace()
    missing = unit.run("vxcli", "voice", "debug", stderr=None)
    assert missing[:2] == (0, "") and "/userconfig/config/voiceLogLevel" in missing.err
    talk(unit, "voice", ("debug 5", LEVEL.format(5)), ("debug 0 /tmp/log", LEVEL.format(0)), ("debug x", LEVEL.format(0)),
         ("debug -1", LEVEL.format(-1)), ("debug 4294967295", LEVEL.format(-1)))
    assert unit.trace() == []
    for words, level, file in [("3", "3", ""), ("4x /tmp/voice.log 1", "4", "/tmp/voice.log"), (f"1 {'y' * 63}", "1", "y" * 63),
                               (f"2 {'/z' * 100}", "2", ("/z" * 32)[:63]), ("4294967297", "1", "")]:
        talk(unit, "voice", (f"debug {words}", ""), ("debug", f"{level}\n"))
        assert (calls(unit), state(unit, "log_level", "log_file")) == (["debug_level 0"], [level, file])


def test_calls_and_show(board):
    unit = board("ux3361")
    unit.trace()
    talk(unit, "voice", ("calltest 0123456789012345678901234567890 1", ""), ("calltest 12a", ""), ("calltest '*21#'", ""),
         ("ring on 1", ""), ("unregister 0", ""), ("test on", ""), ("update3 1", ""), ("omcisipagent 0", ""), ("debug 2 /tmp/v", ""))
    assert calls(unit)[:3] == ["callTest 0", "callTest 1", "callTest 0"]

    def parameters(log, *lines):
        names = ["VoiceProfile.1.Line.{}.Status", "VoiceProfile.1.Line.{}.RingState", "VoiceProfile.1.Line.{}.LastDialled",
                 "VoiceProfile.1.Line.{}.LastRefreshed", "VoiceProfile.1.Line.{}.LastReported", "PhyInterface.{}.Tests.TestState"]
        rows = list(zip(["LogLevel", "LogFile"], log))
        rows += [(name.format(number), value) for number, line in enumerate(lines, 1) for name, value in zip(names, line)]
        return "".join(f"VoiceService.1.{name} = {value}\n" for name, value in rows)

    talk(unit, "voice", ("show more", parameters(("2", "/tmp/v"), ("Disabled", "Idle", "*21#", "", "sip agent", "Requested"),
                                                 ("Up", "Ringing", "", "ims feature", "", "Requested"))))
    unit.power_cycle()  # the service starts anew
    talk(unit, "voice", ("show", parameters(("2", "/tmp/v"), ("Up", "Idle", "*21#", "", "sip agent", "None"),
                                            ("Up", "Idle", "", "ims feature", "", "None"))))
    single = board("sfu-gn25l95")  # has no telephone
    single.trace()
    talk(single, "voice", ("show", parameters(("1", ""))), ("calltest 1", ""), ("ring on 0", ""))
    assert calls(single) == ["show 0", "callTest 1", "phoneRingStart 1"]
