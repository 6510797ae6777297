"""Manual pages and completion say what the programs have: all of it, and nothing else."""

import os
import re
import shutil

import pytest

from conftest import BUILD, ROOT, execute

PATH = f"PATH={BUILD}/bin:{os.environ['PATH']}"


def listed(*words):
    """The names in a listing of vxcli."""
    heading, *lines = execute(BUILD / "bin" / "vxcli", *words).out.splitlines()
    assert heading.startswith("Valid commands for")
    return " ".join(lines).split()


def test_the_page_of_vxcli_has_its_groups_and_commands():
    sections = re.split(r"^## (\w+)$", (ROOT / "docs/man/vxcli.1.scd").read_text().split("\n# GROUPS\n")[1], flags=re.M)
    assert sections[1::2] == [group for group in listed() if group != "help"]
    for group, text in zip(sections[1::2], sections[2::2]):
        # A command begins its line; the fields of "sys" are in a table.
        entries = re.findall(r"^(?:\*([\w-]+)\*(?: .*)?(?:\+\+)?|\|  (\*.*\*))$", text.split("\n# ")[0], flags=re.M)
        commands = [name for entry, cell in entries for name in ([entry] if entry else re.findall(r"\*([\w-]+)\*", cell))]
        assert sorted(commands) == sorted(set(listed(group)) - {"help"}), group


@pytest.mark.skipif(not shutil.which("scdoc") or not shutil.which("groff"), reason="needs scdoc and groff")
@pytest.mark.parametrize("page", ["man1/vxcli.1", "man5/vxboard-directory.5"])
def test_pages_are_clean(page):
    status, out, err = execute("groff", "-man", "-t", "-ww", "-Tascii", "-P-cbou", BUILD / "share/man" / page)
    assert (status, err) == (0, "")
    assert re.findall(r"\b_[A-Z]+_\b|(?<!\w)\*\w+\*|\*\*|`", out) == [] and "SEE ALSO" in out  # no markup came through


def bash(*words):
    """What the completion offers for the last word, in bash."""
    file = words[0]
    script = f"""source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        _{file} "$1" "${{COMP_WORDS[COMP_CWORD]}}"; printf "%s\\n" "${{COMPREPLY[@]}}" """
    status, out, err = execute("env", PATH, "bash", "-c", script, "-", ROOT / "completion/bash" / file, *words)
    assert (status, err) == (0, "")
    return out.split()


def zsh(*words):
    """The same in zsh. What is handed over to the shell is caught; the shell would choose what begins like the word."""
    file = words[0]
    script = """compadd() { shift; print -rl -- "$@" }; _describe() { print -rl -- ${${(P)@[-1]}%%:*} }; _files() { }
        file=$1; shift; words=("$@"); CURRENT=$#; source $file"""
    out, err = execute("env", PATH, "zsh", "-fc", script, "-", ROOT / "completion/zsh" / f"_{file}", *words)[1:]
    assert err == ""
    return out.split()


@pytest.mark.parametrize("shell", [bash, zsh])
def test_completion(shell):
    if not shutil.which(shell.__name__):
        pytest.skip(f"needs {shell.__name__}")
    for words, offered in [
        (["vxcli", ""], listed()), *((["vxcli", group, ""], listed(group)) for group in ("bob", "sys", "voice")),
        (["vxcli", "nosuch", ""], []), (["vxcli", "port", "mode", "1", "auto", ""], ["auto", "half", "full"]),
        (["vxcli", "port", "rate", "1", ""], []),  # its choices have a remark
    ]:
        assert shell(*words) == offered, words
