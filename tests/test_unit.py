"""The unit tests of the pure functions, written in C++."""

import re

from conftest import BUILD, execute


def test_unit():
    result = execute(BUILD / "bin" / "vxcli_unit_tests")
    assert result.status == 0 and re.search(r"\[  PASSED  \] [1-9]", result.out), result.out + result.err
