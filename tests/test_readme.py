"""The README's tour: its commands, run one after another, print what it shows."""

import re

from conftest import BUILD, ROOT, execute


def blocks():
    """The commands of the tour, each with what it prints."""
    for block in re.findall(r"^```console\n(.*?)^```$", (ROOT / "README.md").read_text(), re.S | re.M):
        yield from re.findall(r"^\$ (.*)\n((?:[^$].*\n|\n)*)", block, re.M)


def alike(text):
    """Without what differs from run to run."""
    text = re.sub(r"^board      .*", "board      DIR", text, flags=re.M)
    return re.sub(r"process \d+|\d{4}-\d\d-\d\d \d\d:\d\d:\d\d", "X", text)


def test_tour(environment, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("PATH", f"{BUILD}/bin", prepend=":")
    tour = list(blocks())
    said = [execute("bash", "-c", command + " 2>&1").out for command, _ in tour]
    assert len(tour) > 20
    assert [(command, alike(text)) for (command, _), text in zip(tour, said)] == [(command, alike(text)) for command, text in tour]
