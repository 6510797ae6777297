"""Power-save modes: the whole sequence of each mode and option in the trace, and what it leaves behind."""

import pytest

HELP = "<mode:prepare/mode1/mode0/off>"
START = 0xA5A5A5A5  # of every register that a mode touches

# In this notation: a line of the trace; "> LINE" is printed before it is run; "M address low width value" is a
# register field.
USB = """run devmem 0x20100858 32 0x545726
M 0x20100080 4 1 1
M 0x20100060 17 2 3
"""
PCIE = """run devmem 0x22{0}00250 w 0x200000
run devmem 0x22{0}0025C w 0x200000
M 0x{1}000070c 30 1 1
wait 1000000
"""
PCIE0, PCIE1 = PCIE.format(1, 4), PCIE.format(3, 6)
WL6 = """> run vxsUtil -s InternetGatewayDevice.WIFI.Radio.2 Enable boolean 0
wait 6000000
> run vxsUtil -s InternetGatewayDevice.WIFI.Radio.1 Enable boolean 0
wait 6000000
> run rmmod mt7916_ap
run devmem 0x2010083c 32 0
M 0x20100850 8 2 2
M 0x20100850 12 2 2
> run devmem 0x20e00010 32 0x00000000
> run devmem 0x20e00010 32 0x00100000
> run devmem 0x20e00010 32 0x00400000
> run devmem 0x20e00014 32 0x00000000
> run devmem 0x20e00014 32 0x00100000
> run devmem 0x20e00014 32 0x00400000
"""
SER = """run cmd prbs serdes_poweroff
call libvx_led_config_set 0
wait 1000000
"""
LAN = "call libvx_switchApi_ethPortNum2PhyPortNum 0\nrun cmd sushp 1 {} 5 10\n"
OFF = f"""run cmd lpi 0
run cmd lpd 0
run cmd lpu 0
run cmd gphystb 0
run cmd prbs serdes_pll_2
run cmd swfrq 0 3
{USB}M 0x20100080 8 4 15
run devmem 0x20100870 32 0xe000210
run devmem 0x20100898 32 0x3f70f
run devmem 0x207ff8 w 0x0
run devmem 0x207ffc w 0x0
"""
NO_WIFI = f"""{PCIE0}{PCIE1}M 0x20100080 8 4 0
run devmem 0x20100870 32 0xa000210
run devmem 0x20100898 32 0x3f700
"""
MODE0_BEGIN = "run cmd swfrq 1 2\nrun cmd prbs serdes_pll_1\ncall libvx_sys_getWifiNum 0\n"
MODE0_END = """run cmd lpd 1
run cmd lpu 1
run cmd lpi 1
run devmem 0x20100858 32 0x54577e
M 0x20100080 4 1 0
M 0x20100060 17 2 0
run vxsUtil -s InternetGatewayDevice.WIFI.Radio.1 TransmitPower sint7 20
run devmem 0x20100020 w 0x80010050
"""
MODE0 = MODE0_BEGIN + MODE0_END
MODE1 = "run cmd sushp 0 f 5 10\nrun cmd swfrq 1 1\nrun cmd gphystb 1\n"
VOIP = """run voip stop
run devmem 0x20100874 w 0x0
run devmem 0x20100020 w 0x80010050
run devmem 0x20100804 w 0x0
run devmem 0x20100808 w 0x80000000
"""
PREPARE = USB + "run devmem 0x207ff8 w 0x995544aa\nrun devmem 0x207ffc w 800\n"

# Registers at the end of the mode that has every way to write one: a field, 32 bits, a word.
AFTER_OFF = {0x20100858: 0x545726, 0x20100060: 0xA5A7A5A5, 0x20100080: 0xA5A5AFB5, 0x20100870: 0x0E000210,
             0x20100898: 0x3F70F, 0x207FF8: 0, 0x207FFC: 0}


def expected(text, result=0):
    """The trace and the output of a sequence in the notation above."""
    lines = text.splitlines()
    printed = "".join(f"\n{line[len('> run '):]}\n" for line in lines if line[0] == ">")
    trace = []
    for line in lines:
        if line[0] == "M":
            _, address, low, width, value = line.split()
            line = f"mem {address} {low} {width} {int(value):#x} {result}"
        trace.append(line.removeprefix("> "))
    return trace, printed


def registers(unit):
    return {int(file.name, 16): int(file.read_text(), 16) for file in (unit.path / "mem").iterdir()}


def power(unit, words, **how):
    unit.trace()
    result = unit.run("vxcli", "sys", "ps", *words.split(), **how)
    assert result.status == 0
    return [" ".join([line.kind, *line.fields]) for line in unit.trace()], result.out


def loaded(board, profile, *addresses):
    """A unit with its information loaded and START in these registers."""
    unit = board(profile)
    unit.run("vxcli", "sys", "load")
    for address in addresses:
        (unit.path / "mem" / f"{address:#010x}").write_text(f"{START:#x}\n")
    return unit


SEQUENCES = {
    "off": OFF, "prepare": PREPARE, "xoff": "run devmem 0x22e00000 w 0x0\n",
    "p0off": PCIE0 + "M 0x20100080 8 2 0\nM 0x20100898 0 2 0\n", "p1off": PCIE1 + "M 0x20100080 10 2 0\nM 0x20100898 2 2 0\n",
    "mode0 ser WL6 wl6 wl": MODE0 + WL6, "mode0 lan 2 wl6 lan 1": MODE0 + LAN.format(13) + WL6 + LAN.format(14),
    "mode0 lan wl6": MODE0,  # the option's number, whatever it looks like
    "mode1": MODE1 + VOIP, "mode1 lan 2 wl6 ser x": MODE1 + WL6 + SER + VOIP,
}


@pytest.mark.parametrize("words", SEQUENCES)
def test_sequences(board, words):
    text, unit = SEQUENCES[words], loaded(board, "ux3361", *AFTER_OFF)
    (unit.path / "led/pon_led/trigger").write_text("timer\n")
    assert power(unit, words) == expected(text)
    if words == "off":
        assert registers(unit) == AFTER_OFF

    def attributes(names):
        return " ".join((unit.path / name).read_text().strip() for name in names.split())
    shut, lit = WL6 in text, SER in text
    assert attributes("modules/mt7916_ap") == ("0" if shut else "1")
    radio = unit.path / "params/InternetGatewayDevice/WIFI/Radio"
    assert {str(file.relative_to(radio)): file.read_text() for file in radio.rglob("*") if file.is_file()} == {
        **({"1/Enable": "0\n", "2/Enable": "0\n"} if shut else {}), **({"1/TransmitPower": "20\n"} if MODE0 in text else {})}
    assert attributes("led/pon_led/trigger led/pon_led/brightness led/int_led/brightness") == ("none 1 1" if lit else "timer 0 0")
    unit.power_cycle()
    assert registers(unit) == {} and attributes("modules/mt7916_ap") == "1"


def test_mode0_without_wifi(board):
    assert power(loaded(board, "sfu-gn25l95"), "mode0") == expected(MODE0_BEGIN + NO_WIFI + MODE0_END)


@pytest.mark.parametrize("phy_map, masks", [
    ("3,1,0,2", {"1": 7, "4": 11, "0": None, "5": None, "-1": None, "x": None, " +3x": 14}),
    ("4,31,32,35", {"1": 15, "2": 15, "3": 14, "4": 7}),  # 32 and up wrap
])
def test_keeping_one_lan_port(board, phy_map, masks):
    unit = loaded(board, "ux3361")
    unit.run("sed", "-i", f"s/^PhyPortMap=.*/PhyPortMap={phy_map}/", "/etc/vx_sys_info")
    for number, mask in masks.items():
        assert power(unit, f"mode0 lan {number}") == expected(MODE0 + (LAN.format(mask) if mask is not None else "")), number


def test_no_failure_stops_a_sequence(board):
    unit = loaded(board, "ux3361")
    unit.fault("vx_mem_modify times=always")
    for name in ("mem", "modules", "params"):
        (unit.path / name).rename(unit.path / f"no-{name}")
    assert power(unit, "mode0 wl6", stderr=None) == expected(MODE0 + WL6, result=6)


def test_words(board):
    unit = board("ux3361")
    unit.trace()
    assert unit.run("vxcli", "sys", "ps") == (0, f"usage for ps: {HELP}\n", "")
    for word in ("Off", "mode00", ""):
        assert unit.run("vxcli", "sys", "ps", word, "wl6") == (0, f"bad arguments  {word} !!\n\t{HELP}\n", "")
    assert unit.trace() == []
