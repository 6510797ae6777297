"""The unit tests of the pure functions, written in C++: each of their cases is one test here."""

import pytest

from conftest import BUILD, execute

PROGRAM = BUILD / "bin" / "vxcli_unit_tests"


def cases():
    """Suite.Case for each line that --gtest_list_tests indents under its suite; a comment may follow a name."""
    suite = ""
    for line in execute(PROGRAM, "--gtest_list_tests").out.splitlines():
        name = line.split("#")[0].rstrip()
        if not name.startswith(" "):
            suite = name
        else:
            yield suite + name.strip()


@pytest.mark.parametrize("case", cases() if PROGRAM.exists() else [])
def test_unit(case):
    result = execute(PROGRAM, f"--gtest_filter={case}")
    assert result.status == 0 and "[  PASSED  ] 1 test." in result.out, result.out + result.err


def test_unit_tests_are_built():
    assert PROGRAM.exists(), "make build"
    assert list(cases()), "no case in it"
