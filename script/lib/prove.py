#!/usr/bin/env python3
"""Runs rows of docs/reliability.md and records them: see script/prove.

A row holds if the command of each of its steps succeeds, prints the figures that the step reads,
and reports nothing that is FORBIDDEN. The output of all its steps is in build/prove/ROW.log.
"""
import argparse
import datetime
import os
import re
import shlex
import subprocess
import sys
import time
from pathlib import Path

from circumstances import commit, machine
from rows import LOGS, ROWS

PAGE = Path("docs/reliability.md")
# The report of a sanitizer, and a test that could not run.
FORBIDDEN = re.compile(
    r"WARNING: ThreadSanitizer|ERROR: \w+Sanitizer|runtime error|^\[  SKIPPED \].*", re.M)


def shortened(rows):
    """The variables of the rows' steps that the caller has set."""
    return sorted({name for row in rows for step in ROWS[row].steps for name in step.environment
                   if name in os.environ})


def execute(command, log, environment):
    """Runs the command for bash with its output in the log; returns the output."""
    with log.open("a") as file:
        print("$", command, file=file, flush=True)
        start = file.tell()
        subprocess.run(["bash", "-euo", "pipefail", "-c", command], stdout=file,
                       stderr=subprocess.STDOUT, env=environment, check=True)
    return log.read_bytes()[start:].decode(errors="replace")


def run(step, log, only):
    """Builds and runs the step; returns its figures and whether it holds."""
    environment = {name: value for name, value in (step.environment | os.environ).items()
                   if not re.fullmatch("[ATL]SAN_OPTIONS|UBSAN_OPTIONS", name)}
    try:
        if step.preset:
            execute(f"cmake --preset {step.preset} -DCORVANE_KIT_TESTS=ON", log, environment)
            execute(f"cmake --build --preset {step.preset} --target {step.target}", log,
                    environment)
        output = execute(step.command.replace("{only}", shlex.join(only)), log, environment)
        reports = FORBIDDEN.findall(output)
        return step.read(output) + reports, not reports
    except subprocess.CalledProcessError as error:
        print(*log.read_text(errors="replace").splitlines()[-30:], sep="\n", file=sys.stderr)
        return [f"failed: {error.cmd[-1].splitlines()[0]}"], False
    except ValueError as error:
        return [str(error)], False


def prove(name, only):
    """Runs the row; returns its section of the page and whether it holds."""
    start = time.monotonic()
    log = LOGS / f"{name}.log"
    LOGS.mkdir(parents=True, exist_ok=True)
    log.write_text("")
    print(f"== {name} (output in {log})", flush=True)
    several = len({step.preset for step in ROWS[name].steps if step.preset}) > 1
    figures, holds = [], True
    for step in ROWS[name].steps:
        found, held = run(step, log, only)
        holds = holds and held
        prefix = f"{step.preset}: " if several and step.preset else ""
        figures += [prefix + figure for figure in found]
        print(*figures[len(figures) - len(found):], sep="\n", flush=True)
    result = "held" if holds else "failed"
    minutes, seconds = divmod(int(time.monotonic() - start), 60)
    print(f"{name}: {result}", flush=True)
    text = [ROWS[name].shows, "",
            f"**{result}** on {datetime.date.today()}, commit {commit(PAGE)}, in {minutes} min "
            f"{seconds} s ({machine()})", "", *(f"- {figure}" for figure in figures)]
    return "\n".join(text), holds


class Page:
    """The sections of the page between its two marks, by row."""
    MARKED = re.compile(r"(?<=<!-- figures -->\n).*(?=<!-- end -->)", re.S)

    def __init__(self):
        parts = re.split("^### ", self.MARKED.search(PAGE.read_text())[0], flags=re.M)[1:]
        self.sections = {name: text.strip() for name, text in (part.split("\n", 1) for part in parts)}

    def commits(self):
        return {match for text in self.sections.values()
                for match in re.findall(r"^\*\*.* commit (.*?),", text, re.M)}

    def write(self):
        text = "".join(f"\n### {name}\n\n{self.sections[name]}\n"
                       for name in ROWS if name in self.sections)
        PAGE.write_text(self.MARKED.sub(lambda _: text + "\n", PAGE.read_text()))


def main():
    parser = argparse.ArgumentParser(prog="script/prove", description="Runs the rows of "
                                     f"{PAGE}, by default all: {', '.join(ROWS)}.")
    parser.add_argument("rows", nargs="*", metavar="ROW")
    parser.add_argument("--record", action="store_true", help="write the figures into the page; "
                        "all rows together replace those of another commit")
    parser.add_argument("--force", action="store_true", help="record although the page's figures "
                        "are of another commit, or the tree has changes")
    parser.add_argument("--only", action="append", default=[], metavar="TEXT",
                        help="of the mutations, those whose names contain the text")
    options = parser.parse_args()
    rows = options.rows or list(ROWS)
    if unknown := [name for name in rows if name not in ROWS]:
        parser.error(f"no row is called {unknown[0]}; there are {', '.join(ROWS)}")
    if options.record:
        page, checked_out = Page(), commit(PAGE)
        if not options.rows:
            page.sections.clear()
        if changed := shortened(rows) + ["--only"] * len(options.only):
            parser.error(f"the figures are those of the table: leave out {', '.join(changed)}")
        if not options.force and checked_out.endswith("changes"):
            parser.error("commit the changes first: figures are those of a commit")
        if not options.force and page.commits() - {checked_out}:
            parser.error(f"the page's figures are of commit {', '.join(sorted(page.commits()))}; "
                         "record all rows, or use --force")
    all_hold = True
    for name in rows:
        section, holds = prove(name, options.only)
        all_hold = all_hold and holds
        if options.record:
            if commit(PAGE) != checked_out:
                sys.exit(f"not recorded: the tree has changed while {name} ran")
            page.sections[name] = section
            page.write()
    sys.exit(0 if all_hold else 1)


main()
