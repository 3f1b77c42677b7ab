#!/usr/bin/env python3
"""Evaluates the output of gcovr: coverage.py GCOVR_JSON PAGE.

Prints the figures of each folder and of the record copies, and compares the lines that were not
reached with the table in PAGE (file, text of the line, reason). Exits with 1 if a limit is not
reached, if a line has no reason, or if a listed line is reached or does not exist."""
import json
import pathlib
import re
import sys

FOLDERS = ("daemon/src", "taskExecutor")
LEAST_LINES = 95.0
LEAST_BRANCHES = 85.0
CALLBACKS = "daemon/src/Callback/"
COPY_FILES = (CALLBACKS + "DeviceInfoCopy.cpp", CALLBACKS + "RecordBuffers.h")
# Branches in other lines are those that the compiler makes for exceptions; gcovr excludes only some.
DECISION = re.compile(r"\b(if|while|for|switch|case)\b|\?|&&|\|\|")
COPY_MEMBERS = CALLBACKS + "BluetoothCallback.h"


def copy_members(text):
    """The line numbers of the functions named copy."""
    numbers = set()
    inside = False
    for number, line in enumerate(text, 1):
        inside = inside or re.match(r" {4}static std::shared_ptr<\w+> copy\(", line) is not None
        if inside:
            numbers.add(number)
        if line == "    }":
            inside = False
    return numbers


class Figures:
    """Lines and branches, all and reached."""

    def __init__(self):
        self.lines = [0, 0]
        self.branches = [0, 0]

    def add(self, line, branches):
        self.lines[0] += 1
        self.lines[1] += line["count"] > 0
        self.branches[0] += len(branches)
        self.branches[1] += sum(branch["count"] > 0 for branch in branches)

    @staticmethod
    def percent(pair):
        return 100.0 * pair[1] / pair[0] if pair[0] else 0.0

    def text(self):
        return "; ".join(
            f"{name} {pair[1]} of {pair[0]} ({self.percent(pair):.1f} %)"
            for name, pair in (("lines", self.lines), ("branches", self.branches)))

    def reach(self, lines, branches):
        return self.percent(self.lines) >= lines and self.percent(self.branches) >= branches


def read_reasons(page):
    """{(file, text): reason} of the rows `file` | `text` | reason."""
    reasons = {}
    for row in page.read_text().splitlines():
        match = re.fullmatch(r"\| `([^`]+)` \| `(.+)` \| (.+) \|", row)
        if match:
            reasons[match[1], match[2]] = match[3]
    return reasons


def main():
    found = json.loads(pathlib.Path(sys.argv[1]).read_text())
    reasons = read_reasons(pathlib.Path(sys.argv[2]))
    folders = {folder: Figures() for folder in FOLDERS}
    together = Figures()
    copies = Figures()
    missed = {}
    for file in sorted(found["files"], key=lambda file: file["file"]):
        name = file["file"]
        text = pathlib.Path(name).read_text().splitlines()
        members = copy_members(text) if name == COPY_MEMBERS else set()
        folder = next(folder for folder in FOLDERS if name.startswith(folder + "/"))
        for line in file["lines"]:
            if line["gcovr/noncode"]:
                continue
            number = line["line_number"]
            branches = line["branches"] if DECISION.search(text[number - 1]) else []
            for figures in (folders[folder], together):
                figures.add(line, branches)
            if name in COPY_FILES or number in members:
                copies.add(line, branches)
                if any(branch["count"] == 0 for branch in branches):
                    print(f"{name}:{number}: a branch of a record copy was not taken",
                          file=sys.stderr)
            if line["count"] == 0:
                missed.setdefault((name, text[number - 1].strip()), []).append(number)

    for folder, figures in folders.items():
        print(f"{folder}: {figures.text()}")
    print(f"together: {together.text()}")
    print(f"record copies: {copies.text()}")
    without = [key for key in missed if key not in reasons]
    stale = [key for key in reasons if key not in missed]
    for name, text in without:
        print(f"{name}:{missed[name, text][0]}: not reached, without a reason: {text}",
              file=sys.stderr)
    for name, text in stale:
        print(f"{name}: has a reason, but is reached or gone: {text}", file=sys.stderr)
    count = sum(map(len, missed.values()))
    print(f"lines not reached: {count}, of them without a reason: "
          f"{sum(len(missed[key]) for key in without)}; reasons without a line: {len(stale)}")
    enough = (all(figures.reach(LEAST_LINES, LEAST_BRANCHES) for figures in folders.values())
              and copies.lines[0] > 0 and copies.reach(100.0, 100.0))
    return 0 if enough and not without and not stale else 1


sys.exit(main())
