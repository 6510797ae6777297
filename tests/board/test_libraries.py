"""What the programs and libraries load and export."""

import re

import pytest

from conftest import HARDENED, OBJECTS, ROOT, SANITIZED, execute


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
    ("bin/vxcli", {"libvx.so", "libvxvoip_api.so", "libc.so.6"}, set()),
    ("lib/libvx.so", {"libc.so.6"}, {"libm.so.6"}),
    ("lib/libvxvoip_api.so", set(), {"libc.so.6"}),
    ("lib/libvxclock.so", {"libc.so.6"}, set()),
    ("lib/libvxserdes.so", {"libc.so.6"}, set()),
    *((f"bin/{name}", {"libc.so.6"}, set()) for name in ("vximage", "vxproot", "vxstatus", "vxtrace")),
])
def test_only_these_libraries_are_loaded(file, must, may):
    dynamic = execute("readelf", "-d", OBJECTS / file).out
    needed = set(re.sub(r"^ld-linux-.*", "loader", name) for name in re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic))
    assert must <= needed <= must | may | {"loader"}  # which has the stack protector's value on arm64
    assert "(RPATH)" not in dynamic  # it would win over LD_LIBRARY_PATH
    if file == "bin/vxcli":
        assert "$ORIGIN/../lib" in re.search(r"\(RUNPATH\).*\[(.*)\]", dynamic)[1]


@pytest.mark.skipif(not HARDENED, reason="only a release is hardened")
@pytest.mark.parametrize("file", ["bin/vxcli", "bin/vximage", "bin/vxproot", "bin/vxstatus", "bin/vxtrace", "lib/libvx.so",
                                  "lib/libvxvoip_api.so", "lib/libvxclock.so", "lib/libvxserdes.so"])
def test_a_release_is_hardened(file):
    seen = execute("readelf", "-hldW", OBJECTS / file).out
    assert re.search(r"Type: +DYN", seen) and "GNU_RELRO" in seen and "BIND_NOW" in seen
    assert re.search(r"GNU_STACK .* RW +0x", seen)  # not executable
    assert file.startswith("lib/") or re.search(r"FLAGS_1.* PIE", seen)
    imported = set(re.findall(r" U (\w+)", execute("nm", "-D", OBJECTS / file).out))
    assert "__stack_chk_fail" in imported and any(re.fullmatch(r"__\w+_chk", name) for name in imported)


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
