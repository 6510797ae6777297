"""What the programs and libraries load and export."""

import re

import pytest

from conftest import OBJECTS, ROOT, SANITIZED, execute


@pytest.mark.parametrize("name", ["libvx", "libvxvoip_api"])
def test_exports_are_what_the_header_declares(name):
    header = re.sub(r"/\*.*?\*/|^#.*?$", "", (ROOT / "include" / f"{name}.h").read_text(), flags=re.S | re.M)
    declared = set(re.findall(r"LIBVX_API\b[^;(]*?\b(\w+)\s*[(;]", header))
    exported = execute("nm", "-D", "--defined-only", "--format=posix", OBJECTS / "lib" / f"{name}.so")
    names = {line.split()[0] for line in exported.out.splitlines()}
    names = {symbol for symbol in names if not symbol.startswith("__odr_asan")}
    assert names == declared and (name != "libvx" or len(declared) >= 8)


@pytest.mark.skipif(SANITIZED, reason="the sanitizers' runtime loads more")
@pytest.mark.parametrize("file, must, may", [
    ("bin/vxcli", {"libvx.so", "libvxvoip_api.so", "libc.so.6"}, {"libm.so.6"}),
    ("lib/libvx.so", {"libc.so.6"}, {"loader", "libm.so.6"}),
    ("lib/libvxvoip_api.so", set(), {"libc.so.6"}),
    ("lib/libvxclock.so", {"libc.so.6"}, {"loader"}),
])
def test_only_these_libraries_are_loaded(file, must, may):
    dynamic = execute("readelf", "-d", OBJECTS / file).out
    needed = set(re.sub(r"^ld-linux-.*", "loader", name) for name in re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic))
    assert must <= needed <= must | may
    assert "(RPATH)" not in dynamic  # it would win over LD_LIBRARY_PATH
    if file == "bin/vxcli":
        assert "$ORIGIN/../lib" in re.search(r"\(RUNPATH\).*\[(.*)\]", dynamic)[1]


def test_another_libvx_can_be_dropped_in(board):
    unit = board("ux3361")
    unit.unit("tmp/libvx.so").write_text("not a library")
    result = unit.run("env", "LD_LIBRARY_PATH=/tmp", "/.vxboard/bin/vxcli", stderr=None)
    assert result.status == 127 and "/tmp/libvx.so" in result.err


def test_all_symbols_have_c_linkage_and_the_header_is_c(tmp_path):
    source = tmp_path / "user.c"
    source.write_text('#include "libvx.h"\n#include "libvxvoip_api.h"\nint main(void) { return libvx_DbgLevel; }\n')
    words = ["cc", "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only", f"-I{ROOT / 'include'}", source]
    assert execute(*words) == (0, "", "")
