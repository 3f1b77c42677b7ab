#!/usr/bin/env python3
"""Puts a row's result into docs/proof.md: proof.py ROW held|failed SECONDS <FIGURES.

What the row proves is the comment at the top of its program. Other rows' sections stay.
"""
import datetime
import re
import sys
from pathlib import Path

from circumstances import commit, machine, output_of

PAGE = Path("docs/proof.md")
HEAD = """# Proof

What has been shown, by which program, and when. `script/prove` writes this page; every section is
the last run of one row, `script/prove ROW`. What surprises and stays is in
[known.md](design/known.md).
"""


def purpose(row):
    lines = Path("script/proof", row).read_text().splitlines()[1:]
    end = next(i for i, line in enumerate(lines) if not line.startswith("#"))
    return "\n".join(line[1:].strip() for line in lines[:end])


def section(row, result, seconds, figures):
    minutes, rest = divmod(int(seconds), 60)
    lines = [f"## {row}", "", purpose(row), "",
             f"**{result}** on {datetime.date.today()}, commit {commit(PAGE)}, in {minutes} min {rest} s "
             f"({machine()})", ""]
    lines += [f"- {figure}" for figure in figures]
    return "\n".join(lines) + "\n"


def main():
    row, result, seconds = sys.argv[1:]
    page = PAGE.read_text() if PAGE.exists() else ""
    sections = {part.split("\n", 1)[0]: "## " + part.rstrip() + "\n"
                for part in re.split(r"^## ", page, flags=re.M)[1:]}
    figures = [line for line in sys.stdin.read().splitlines() if line]
    sections[row] = section(row, result, seconds, figures)
    rows = output_of("bash", "-c", ". script/lib/proof.sh; echo ${ROWS[@]}").split()
    PAGE.write_text("\n".join([HEAD] + [sections[name] for name in rows if name in sections]))


main()
