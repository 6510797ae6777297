"""Building for a unit: with the toolchain file for a maker's SDK. Debian's arm64 compiler plays the SDK's."""

import re
import shutil

import pytest

from conftest import GUEST, ROOT, execute


@pytest.mark.skipif(not GUEST.exists(), reason="needs the arm64 libraries and qemu: make arm64")
def test_vendor_sdk(board, tmp_path):
    library = tmp_path / "sdk/sysroot/usr/lib"
    library.mkdir(parents=True)
    for name in ("libvx.so", "libvxvoip_api.so"):
        shutil.copy(GUEST / "lib" / name, library)
    (tmp_path / "sdk/bin").mkdir()
    for tool in ("gcc", "g++"):
        (tmp_path / f"sdk/bin/aarch64-linux-gnu-{tool}").symlink_to(f"/usr/bin/aarch64-linux-gnu-{tool}")
    build = tmp_path / "build"
    made = execute("cmake", "--preset", "release", "-S", ROOT, "-B", build, f"-DVENDOR_SDK={tmp_path / 'sdk'}",
                   "--toolchain", ROOT / "cmake/toolchain-vendor-sdk.cmake")
    assert made.status == 0 and execute("cmake", "--build", build).status == 0, made
    assert not (build / "bin/vxboard").exists() and not (build / "lib").exists()  # no virtual board
    needed = re.findall(r"NEEDED.*\[(.*)\]", execute("readelf", "-d", build / "bin/vxcli").out)
    assert set(needed) - {"ld-linux-aarch64.so.1"} == {"libvx.so", "libvxvoip_api.so", "libc.so.6"}
    unit = board("ux3361")
    shutil.copy(build / "bin/vxcli", unit.unit("tmp"))
    assert unit.sh("unset LD_PRELOAD; qemu-aarch64 -L /.vxboard/lib/guest /tmp/vxcli sys load") == (0, "sys load success\n", "")
