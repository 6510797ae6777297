"""The PRBS and BIST commands over the SerDes driver."""

import pytest

from bench import FAIL, answers
from test_registers import prepared

USAGE = ("Usage: vxcli bob prbs_set [0:close prbs, 1:epon prbs, 2:gpon prbs, 3:xepon prbs, 4:xgpon prbs, "
         "5:xespon prbs, 6:xgspon prbs]\nUsage: vxcli bob prbs_get\n"
         "Usage: vxcli bob -sprbsrxbist [1:epon prbs, 2:gpon prbs, 3:xepon prbs, 4:xgpon prbs, 5:xespon prbs, "
         "6:xgspon prbs] [0:disbale; 1:enable]\nUsage: vxcli bob -gprbscounter [sec]\n")
NAME = "Bob chip_type: UX3361\n"
NO_NODE = "failed to open /dev/vxserdes\n"
NOT_READY = "VXGetPrbsCounters Error: RXBIST is not rx_ready, please check the configuration\n"
MODE, ENABLE = "bob_set_prbs_rx_bist prbs_mode invalid. ex: 1, 2, 3, 4, 5, 6\n", "bob_set_prbs_rx_bist enable invalid. ex: 0, 1\n"
RX, RXTX = "vxcli bob sprbsrxbist input:prbsMode=%d,RxbistEnable=%d\n", "vxcli bob sprbsrxbist input: prbsMode=%d, RxbistEnable=%d\n"
CLOSED, NOT_CLOSED = "Close tm_sample_dev success!\n", "Close tm_sample_dev fail!\n"
SECONDS = "bob_get_prbs_counter sec invalid. ex: 1-30\n"


def attribute(unit, name, value=None):
    file = unit.path / "serdes" / name
    if value is not None:
        file.write_text(f"{value}\n")
    return file.read_text().strip()


def test_words(board):
    unit = prepared(board, "ux3361")
    rows = {**{words: USAGE for words in ("prbs_set", "prbs_set_rxtx 1 2", "-sprbsrxbist 1", "-sprbsrxtxbist 1 1 1",
                                          "-gprbscounter", "-prbscounter_show 1")},
            "prbs_set ''": "prbs_txset prbs_mode invalid. ex: 0, 1, 2, 3, 4, 5, 6\n" + USAGE,
            "prbs_set_rxtx ''": "prbs_RXTXset prbs_mode invalid. ex: 1, 2, 3, 4, 5, 6\n" + USAGE}
    for command in ("-sprbsrxbist", "-sprbsrxtxbist"):
        rows |= {f"{command} 0 1": MODE + USAGE, f"{command} 7 1": MODE + USAGE, f"{command} 1 1x": ENABLE + USAGE}
    rows |= {f"-gprbscounter {seconds}": NAME + SECONDS + USAGE for seconds in ("0", "31", "5s")}
    unit.trace()
    assert answers(unit, list(rows)) == [(1, text + FAIL) for text in rows.values()]
    assert unit.trace() == []


def test_without_a_node(board):
    unit = prepared(board, "ux3361")
    (unit.path / "serdes").rename(unit.path / "no-serdes")
    assert answers(unit, ["prbs_set 1", "-sprbsrxbist 1 1", "-gprbscounter 1", "-prbscounter_show"]) == [
        (1, text + FAIL) for text in (NAME + NO_NODE, RX % (1, 1) + NO_NODE + NOT_CLOSED, NAME + NO_NODE + NOT_READY, NO_NODE)]


@pytest.mark.parametrize("words, request_name, text", [
    ("prbs_set 1", "set_tx_prbs", NAME + "vxcli bob prbs_set fail\n"),
    ("prbs_get", "get_state", NAME + "vxcli bob prbs_get fail\n"),
    ("prbs_set_rxtx 1", "set_rxtx_prbs", "vxcli bob prbs_RXTX_set fail\n"),
    ("-sprbsrxbist 3 0", "set_rx_bist", RX % (3, 0) + "ioctl s_prbs_rx_bist error\n" + NOT_CLOSED),
    ("-sprbsrxtxbist 3 5", "set_rxtx_bist", RXTX % (3, 1) + "ioctl s_prbs_rx_bist error\n" + NOT_CLOSED),
    ("-gprbscounter 1", "get_state", NAME + "ioctl prbs_get error\n" + NOT_READY),
    ("-gprbscounter 1", "start_count", NAME + "ioctl g_prbs_counter error\n" + NOT_READY),
    ("-gprbscounter 1", "read_count", NAME + "ioctl prbs_counter_show before error\n" + NOT_READY),
    ("-prbscounter_show", "read_count", "ioctl prbs_counter_show error\n"),
])
def test_a_driver_that_refuses(board, words, request_name, text):
    unit = prepared(board, "ux3361")
    attribute(unit, "mode", 1)
    unit.fault("serdes_" + request_name)
    assert answers(unit, [words]) == [(1, text + FAIL)]
    assert unit.faults() == []


def test_settings(board):
    unit = prepared(board, "ux3361")
    for words, text, name, left in [
        ("prbs_set 3", NAME + "vxcli bob prbs_set OK\n", "mode", "3"), ("prbs_get", NAME + "vxcli bob prbs_get 3\n", "mode", "3"),
        ("prbs_set_rxtx 6", "vxcli bob prbs_RXTX_set OK\n", "mode", "6"),
        ("-sprbsrxbist 3 5", RX % (3, 1) + CLOSED, "bist", "3"), ("-sprbsrxbist 0x3 0", RX % (3, 0) + CLOSED, "bist", "0"),
        ("-sprbsrxtxbist 06 -1", RXTX % (6, 1) + CLOSED, "bist", "6"),
    ]:
        assert answers(unit, [words]) == [(0, text)]
        assert attribute(unit, name) == left
    # The driver judges the mode's text, not the tool.
    assert answers(unit, ["prbs_set 7", "prbs_set 1x"]) == [(1, NAME + "vxcli bob prbs_set fail\n" + FAIL)] * 2
    assert attribute(unit, "mode") == "6"


def test_unknown_chip(board):
    """The chip's type only earns a line, in three spellings; without its file nothing goes on."""
    unit = prepared(board, "ux3361", 15)
    unknown, name = "bob:BOSA Chip Type: Unknown.\n", "Bob chip_type: Unknown\n"
    assert answers(unit, ["prbs_set 1", "prbs_get", "prbs_set_rxtx 1", "-sprbsrxbist 1 1", "-sprbsrxtxbist 1 1"]) == [
        (0, unknown + name + "vxcli bob prbs_set OK\n"), (0, unknown + name + "vxcli bob prbs_get 1\n"),
        (0, "bob: BOSA Chip Type: Unknonw.\nvxcli bob prbs_RXTX_set OK\n"), (0, unknown + RX % (1, 1) + CLOSED),
        (0, "bob: BOSA Chip Type: Unknown.\n" + RXTX % (1, 1) + CLOSED)]
    unit.unit("var/bob_chip_type").unlink()
    assert answers(unit, ["prbs_set 1", "prbs_get", "prbs_set_rxtx 1", "-sprbsrxbist 1 1", "-sprbsrxtxbist 2 0",
                          "-gprbscounter 1"]) == [(1, "Check bosa chip type fail!\n" + FAIL)] * 6


def test_counting(board):
    """The count spans two processes: the second one, in the background, finds the same driver."""
    unit = prepared(board, "ux3361")
    attribute(unit, "ber", "1e-9")
    script = "vxcli bob prbs_set 3 && vxcli bob -sprbsrxbist 3 1 && vxcli bob -gprbscounter 10 | cat"  # cat: until both ended
    out = unit.sh(script).out
    assert out.split(CLOSED, 1)[1] == (NAME + "VXGetPrbsCounters counter before timer = 0\n" + CLOSED +
                                       "PrbsCounterGetHandler counter after timer = 103\nVXGetPrbsCounters counter: 103.\n")
    attribute(unit, "ready", 0)
    assert answers(unit, ["-gprbscounter 30"]) == [(0, NAME + NOT_READY)]


def test_counter_overflow(board):
    unit = board("ux3361")  # no chip type is needed
    for count, text in [(2**31 - 2, "PrbsCounterGetHandler counter after timer = 2147483646\n"
                                     "VXGetPrbsCounters counter: 2147483646.\n"),
                        (2**31 - 1, "VXGetPrbsCounters Error: Overflow detected\n")]:
        attribute(unit, "counter", count)
        assert answers(unit, ["-prbscounter_show"]) == [(0, text)]
