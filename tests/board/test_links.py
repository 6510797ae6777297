"""What the links' and the switch's operations refuse and the tool never asks for: called directly."""

import ctypes

import pytest

from conftest import BUILD, SANITIZED, native
from links import attributes, changed


@native
@pytest.mark.skipif(SANITIZED, reason="the sanitizers' runtime is in the programs")
def test_refusals(board, monkeypatch):
    unit = board("ux3361")
    monkeypatch.setenv("VXBOARD", str(unit.path))
    library = ctypes.CDLL(str(BUILD / "lib" / "libvx.so"))
    before = attributes(unit)
    number, eight, entry = ctypes.c_uint32(77), b"\1" * 8, b"\0\0\1\0\1\2\3\4\5\6"
    out, other = ctypes.byref(number), ctypes.byref(ctypes.c_uint32())
    calls = []
    for pon, kind, count in (("epon", "Llid", 8), ("gpon", "Tcont", 32)):
        name = f"ponApi_{pon}"
        calls += [(f"{name}Get{kind}RateLimit", 0, out, None), (f"{name}Get{kind}RateLimit", count, out, other),
                  (f"{name}Set{kind}RateLimit", count, 0, 0), (f"{name}Set{kind}RateLimit", 0, 1, 1024001),
                  (f"{name}SetQueueRateLimit", 0, 8, 1, 1), (f"{name}GetQueue", 0, out, None, eight),
                  (f"{name}SetQueue", 0, 3, eight, eight), (f"{name}SetQueue", count, 0, eight, eight), (f"{name}OptTxCtl", 2)]
    calls += [("ponApi_gponSetPonStaus", 5), ("ponApi_gponGetStats", None)]
    calls += [("switchApi_" + name, *words) for name, *words in [
        ("portGetLinkStatus", 0, out, other, None), ("portSetLinkCfg", 0, 3, 0, 0), ("portSetLinkCfg", 0, 0, 5, 0),
        ("portSetLinkCfg", 0, 0, 0, 3), ("portGetAdmin", 6, out), ("portSetPause", 0, 2, 0, 0), ("portSetRateLimit", 0, 2, 1, 1),
        ("portGetStormRateLimit", 0, 3, 0, out, other), ("portSetStormRateLimit", 0, 0, 1, 1, 1), ("portGetWanPort", 15, out),
        ("GetProtoQueueLimit", 11, 0, out, other), ("SetProtoQueueLimit", 0, 2, 0, 0), ("GetProtoAction", 0, 255, out),
        ("SetProtoAction", 0, 0, 4), ("addMacEntry", None), ("addMacEntry", b"\6" + entry[1:]), ("addMacEntry", b"\0\1" + entry[2:]),
        ("addMacEntry", b"\0\0\0\x10" + entry[4:]), ("getMacTable", 256, out, other), ("addCpuMac", 1, eight, 1, None, 0, -1, -1),
        ("addCpuMac", 0, eight, 0, None, 0, -1, -1), ("addCpuMac", 0, eight, 1, eight * 2, 0, -1, -1),
        ("addCpuMac", 0, eight, 1, None, 3, -1, -1), ("addCpuMac", 0, eight, 1, None, 2, -2, -1)]]
    assert [call for call in calls if getattr(library, "libvx_" + call[0])(*call[1:]) == 0] == []
    assert number.value == 77 and changed(unit, before) == {}
    assert library.libvx_switchApi_addMacEntry(entry) == 0 and changed(unit, before) == {
        "switch/port0/mac_table": "01:02:03:04:05:06 1\n"}
    monkeypatch.delenv("VXBOARD")
    assert library.libvx_sys_getLlidNum() == 0 and library.libvx_switchApi_addMacEntry(entry) == 6
