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


def usage(program, *words):
    """The forms in a usage text."""
    lines = execute(BUILD / "bin" / program, *words, "--help").out.split("\n\n")[0].splitlines()
    return [line.removeprefix("usage:").strip() for line in lines]


def test_the_page_of_vxcli_has_its_groups_and_commands():
    sections = re.split(r"^## (\w+)$", (ROOT / "docs/man/vxcli.1.scd").read_text().split("\n# GROUPS\n")[1], flags=re.M)
    assert sections[1::2] == [group for group in listed() if group != "help"]
    for group, text in zip(sections[1::2], sections[2::2]):
        # A command begins its line; the fields of "sys" are in a table.
        entries = re.findall(r"^(?:\*([\w-]+)\*(?: .*)?(?:\+\+)?|\|  (\*.*\*))$", text.split("\n# ")[0], flags=re.M)
        commands = [name for entry, cell in entries for name in ([entry] if entry else re.findall(r"\*([\w-]+)\*", cell))]
        assert sorted(commands) == sorted(set(listed(group)) - {"help"}), group


@pytest.mark.parametrize("program", ["vxboard", "vximage"])
def test_the_pages_of_the_programs_have_their_forms(program):
    page = (ROOT / f"docs/man/{program}.1.scd").read_text()
    synopsis = re.sub(r"[*_]|\+\+", "", re.search(r"\n# SYNOPSIS\n\n(.*?)\n\n", page, re.S)[1]).splitlines()
    assert [form for form in synopsis if form in usage(program)] == usage(program)
    for name in dict.fromkeys(form.split()[1] for form in synopsis):
        forms = usage(program, name) + usage(program)
        assert all(form in forms for form in synopsis if form.split()[1] == name)
        assert re.search(rf"^\*{name}\*", page, re.M), name
        assert set(re.findall(r"--[a-z-]+", " ".join(forms))) <= set(
            re.findall(r"--[a-z-]+", page.split("# DESCRIPTION")[1])), name


@pytest.mark.skipif(not shutil.which("scdoc") or not shutil.which("groff"), reason="needs scdoc and groff")
@pytest.mark.parametrize("page", ["man1/vxcli.1", "man1/vxboard.1", "man1/vximage.1", "man5/vxboard-directory.5"])
def test_pages_are_clean(page):
    status, out, err = execute("groff", "-man", "-t", "-ww", "-Tascii", "-P-cbou", BUILD / "share/man" / page)
    assert (status, err) == (0, "")
    assert re.findall(r"\b_[A-Z]+_\b|(?<!\w)\*\w+\*|\*\*|`", out) == [] and "SEE ALSO" in out  # no markup came through


def bash(*words):
    """What the completion offers for the last word, in bash."""
    file = "vxcli" if words[0] == "vxcli" else "vxboard"
    script = f"""source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        _{file} "$1" "${{COMP_WORDS[COMP_CWORD]}}"; printf "%s\\n" "${{COMPREPLY[@]}}" """
    status, out, err = execute("env", PATH, "bash", "-c", script, "-", ROOT / "completion/bash" / file, *words)
    assert (status, err) == (0, "")
    return out.split()


def zsh(*words):
    """The same in zsh. What is handed over to the shell is caught; the shell would choose what begins like the word."""
    file = "vxcli" if words[0] == "vxcli" else "vxboard"
    script = """compadd() { shift; print -rl -- "$@" }; _describe() { print -rl -- ${${(P)@[-1]}%%:*} }; _files() { }
        _normal() { print -r -- $words[1] $CURRENT }
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
        (["vxboard", ""], [form.split()[1] for form in usage("vxboard")]), (["vxboard", "faults", "-"], ["--list"]),
        (["vxboard", "trace", "unit", ""], ["show", "on", "off", "clear"]),
        (["vxboard", "faults", "unit", "add", "x", ""], execute(BUILD / "bin/vxboard", "faults", "--list").out.split()),
        (["vxboard", "run", "--no-wait", "unit", "--", "vxcli", "mirror", ""],
         ["enable", "disable", "help"] if shell is bash else ["vxcli", "3"]),
        (["vximage", ""], ["show", "check", "convert", "fix"]), (["vximage", "convert", "a", "--"], ["--chip", "--drop"]),
    ]:
        assert shell(*words) == offered, words
    assert "ux3361-eeprom" in shell("vxboard", "new", "")
    assert {"UX3320", "UX3365"} < set(shell("vximage", "fix", "--chip", ""))
