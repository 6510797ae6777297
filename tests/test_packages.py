"""The Debian packages: what is in them, and that they work where they are unpacked."""

import re

import pytest

from conftest import BUILD, GUEST, ROOT, SANITIZED, execute

pytestmark = pytest.mark.skipif(SANITIZED or GUEST.exists(), reason="no packages are made of this tree")

PACKAGES = {"vxcli": "bin/vxcli", "vxcli-board": r"bin/(vx(?!cli)\w+)|lib/libvx\w*\.so|share/vxboard/.+", "vxcli-dev": r"include/libvx\w*\.h"}
EVERYWHERE = r"|share/(doc/PACKAGE/.+|man/man\d/.+|bash-completion/.+|zsh/.+)"


@pytest.fixture(scope="module")
def packages(tmp_path_factory):
    """A directory with the packages, and what is in each: a row for a file."""
    place = tmp_path_factory.mktemp("packages")
    made = execute("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", place)
    assert made.status == 0, made.out + made.err
    return place, {name: execute("dpkg-deb", "-c", next(place.glob(f"{name}_*.deb"))).out for name in PACKAGES}


def test_contents(packages):
    place, listings = packages
    seen = set()
    for name, expected in PACKAGES.items():
        for row in listings[name].splitlines():
            mode, owner, path = re.fullmatch(r"(\S+) (\S+) +\d+ \S+ \S+ \./(.*)", row).groups()
            assert owner == "root/root" and mode in ("drwxr-xr-x", "-rw-r--r--", "-rwxr-xr-x"), row
            if mode[0] == "d":
                continue
            assert re.fullmatch(expected + EVERYWHERE.replace("PACKAGE", name), path.removeprefix("usr/")), row
            assert (mode == "-rwxr-xr-x") == (re.search(r"/(bin|platform)/(?!board\.sh)", path) is not None), row
            assert path not in seen, row
            seen.add(path)
    assert {"usr/bin/vxcli", "usr/bin/vxboard", "usr/lib/libvx.so", "usr/lib/libvxvoip_api.so", "usr/include/libvx.h",
            "usr/include/libvxvoip_api.h", *(f"usr/share/doc/{name}/copyright" for name in PACKAGES)} <= seen
    depends = {name: execute("dpkg-deb", "-f", next(place.glob(f"{name}_*.deb")), "Depends").out for name in ("vxcli", "vxcli-board")}
    assert depends["vxcli"].startswith("libc6 (>= 2.") and "," not in depends["vxcli"]  # nothing else is on a unit
    assert depends["vxcli-board"].startswith("bubblewrap | proot, libc6")


def test_unpacked_packages_work(packages, environment, tmp_path):
    for name in PACKAGES:
        assert execute("dpkg-deb", "-x", next(packages[0].glob(f"{name}_*.deb")), tmp_path / "root").status == 0
    usr = tmp_path / "root/usr"
    assert execute("grep", "-rlF", ROOT, usr) == (1, "", "")  # no path of the build
    assert execute(usr / "bin/vxcli").out.startswith("Valid commands for ")  # its libraries are found
    link = tmp_path / "vxboard"
    link.symlink_to("root/usr/bin/vxboard")
    assert execute(link, "new", "ux3361", tmp_path / "unit") == (0, "", "")
    result = execute(link, "run", "--no-wait", tmp_path / "unit", "vxcli", "sys", "load")
    assert result == (0, "sys load success\n", "")
