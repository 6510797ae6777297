"""`sys load` and `sys save`: the check of the file, the files that are derived from it, and a store that lasts."""

import pytest

from bench import FAIL
from sysinfo import SETTABLE, calls, info, line, lines, replies, said, sys

LOADED, SAVED, NOT_SAVED = (0, "sys load success\n"), (0, "sys save success\n"), (0, "sys save fail\n")
DERIVED = ["macAddrBase", "macAddr", "MfgMode"]
ORDER = ["getSysInfo", "getFwInfo", "getBaseMac", "getMacNum", "getMfgMode", "button"]


def derived(unit):
    return [unit.unit(f"etc/{name}").read_text() for name in DERIVED]


@pytest.mark.parametrize("mac, mode, listed", [
    ("00:11:22:ff:ff:fe", 1, ["00:11:22:FF:FF:FE", "00:11:22:FF:FF:FF", "00:11:22:00:00:00"]),
    ("02:00:00:00:FE:FF", -3, ["02:00:00:00:FE:FF", *(f"02:00:00:00:FF:{low:02X}" for low in range(256)), "02:00:00:01:00:00"]),
    ("aa:bb:cc:dd:ee:0f", 0, []),
])
def test_derived_files(board, mac, mode, listed):
    unit = board("ux3361")
    sys(unit, f"mac {mac}", f"macnum {len(listed)}", f"mfg {mode}", "save", f"button {int(mode == 0)}")
    unit.unit("etc/macAddr").write_text("an older and longer list\n" * 1000)
    assert sys(unit, "load and more") == [LOADED]
    assert derived(unit) == [mac.upper() + "\n", "".join(f"{text}\n" for text in [len(listed), *listed]), str(mode)]
    assert (unit.path / "sys/button_test").read_text() == f"{int(mode != 0)}\n"


def test_load_in_order_and_each_piece_failing(board):
    unit = board("ux3361")
    unit.trace()
    assert sys(unit, "load") == [LOADED] and calls(unit, "libvx_sys_") == ORDER
    base, listed, mode = derived(unit)
    assert base == "02:56:58:10:20:30\n" and listed.startswith("8\n02:56:58:10:20:30\n") and mode == "0"
    zero = [f"00:00:00:00:00:0{last}\n" for last in range(8)]
    failed = {"getBaseMac": [zero[0], "8\n" + "".join(zero), mode], "getMacNum": [base, "0\n", mode]}
    for name in ORDER:
        unit.fault(f"libvx_sys_{name} result=3")
        assert sys(unit, "load") == ([LOADED] if name != "getFwInfo" else [(1, "sys load fail\n" + FAIL)])
        assert derived(unit) == failed.get(name, [base, listed, mode]) and calls(unit, "libvx_sys_") == ORDER, name


def test_blank_files_give_way_to_the_default(board):
    """What flash holds stays out of it here."""
    unit = board("ux3361")
    default = unit.unit("etc/default_sys_info").read_bytes()
    unit.fault("libvx_sys_getSysInfo times=always")
    for contents, good in [(None, False), (b"\xff\0" * 2048, False), (b"\0" * 4095 + b"\xfe", True), (b"\n", True)]:
        info(unit).write_bytes(contents) if contents is not None else info(unit).unlink(missing_ok=True)
        assert sys(unit, "load") == [LOADED]
        assert info(unit).read_bytes() == (contents if good else default), contents
    info(unit).unlink()
    unit.unit("etc/default_sys_info").unlink()
    assert sys(unit, "load", stderr=None) == [LOADED] and not info(unit).exists()


def test_flash_without_whole_information(board):
    unit = board("ux3361")
    default, flash = unit.unit("etc/default_sys_info").read_bytes(), unit.path / "flash/sysinfo"
    factory = flash.read_bytes()
    start = factory.index(b"MAC=")
    for damaged in (b"\xff" * 65536, factory[:start + 5] + b"~" + factory[start + 6:], b"\xff" + factory[1:]):
        flash.write_bytes(damaged)
        assert sys(unit, "model Other", "load", "mac")[1:] == [LOADED, (0, line("Mac Address:", "02:56:58:00:00:00"))]
        assert info(unit).read_bytes() == default
    sys(unit, "model Saved", "save")
    before = flash.read_bytes()
    unit.fault("libvx_sys_saveSysInfo")
    assert sys(unit, "model New", "save")[1] == NOT_SAVED and flash.read_bytes() == before
    info(unit).write_bytes(b"x" * 40000)  # more than a bank
    assert sys(unit, "save") == [NOT_SAVED] and flash.read_bytes() == before
    assert sys(unit, "load", "model") == [LOADED, (0, line("Model Name:", "Saved"))]
    flash.unlink()
    assert sys(unit, "save", "model X", "load", "model")[0::3] == [NOT_SAVED, (0, line("Model Name:", "X"))]


def test_a_file_edited_by_hand(board):
    unit = board("ux3361")
    rest = b"no field\nModelNameX=1\nMAC=" + b"1" * 500 + b"\nMAC_NUM=many\nMfgMode= 5\nFxsNum=2x\nTYPE=no newline"
    info(unit).write_bytes(b"# model\n\n  ModelName = Typed in \r\nModelName=second\n" + rest)
    shown = [("Model Name:", "Typed in "), ("Mac Address:", "1" * 24), ("Mac Num:", "many"), ("Mfg Mode:", " 5"),
             ("FXS Num:", "0"), ("Sys Pon Type:", "no newline")]
    assert sys(unit, "model", "mac", "macnum", "mfg", "fxsnum", "onutype") == [(0, line(*texts)) for texts in shown]
    sys(unit, "model New", "area 7")
    assert info(unit).read_bytes() == b"# model\n\nModelName=New\n" + rest + b"\nArea=7\n"


def test_many_writers_at_once(board):
    """Setters, savers and readers: nothing is lost, and what is saved at the end is all there."""
    unit = board("ux3361")
    sys(unit, "load")
    fields = [field for field in SETTABLE if field.word not in ("onutype", "ponmode")]
    for fields in (fields, [field._replace(value=field.value[::-1]) if field.room == "31" else field for field in fields]):
        script = "".join(f"vxcli sys {words} & " for field in fields for words in (field.set_to_value, "show >/dev/null"))
        out = unit.run("sh", stdin=script + "vxcli sys save & vxcli sys save & wait\n").out
        assert sorted(out.splitlines(True)) == sorted(text for _, text in [*said(fields), SAVED, SAVED])
        sys(unit, "save")
        info(unit).unlink()
        assert sys(unit, "load", *(field.word for field in fields)) == [LOADED, *replies(lines(fields), "{}")]
