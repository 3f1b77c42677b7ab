#!/usr/bin/env python3
"""Holds the includes of the tree against the table in docs/architecture.md.

Run it from the top of the tree. It names each include that the table does not allow, each quoted
include that is no path from the top of the tree, headers that share a name, and top folders that
include each other. The exit status is 1 if there is one.
"""
import itertools
import os
import re
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

DOCUMENT = Path("docs/architecture.md")
# A frozen release brings its own headers, and nothing else sees them.
FROZEN = "tests/abi/v"
# What is included by its bare name, as a plugin author does it.
BARE = {path.name: str(path) for path in Path("platform/include").glob("*.h")}
BARE["IRequestBroker.h"] = "daemon/src/broker/IRequestBroker.h"
# The task executor logs with the daemon's header, which itself includes only the platform.
LOG = "daemon/src/common/log.h"


def read_table():
    """Returns {folder: the folders and files it may include}."""
    table = {}
    for line in DOCUMENT.read_text().split("## Who may include whom")[1].splitlines():
        cells = [re.findall("`([^`]+)`", cell) for cell in line.strip("|").split("|")]
        if line.startswith("| `"):
            table[cells[0][0]] = cells[1] or ([""] if "everything" in line else [])
        elif table and not line.startswith("|"):
            break
    return table


def lies_in(path, folder):
    return folder == "" or path == folder or path.startswith(folder + "/")


def row_of(path, table):
    return max((folder for folder in table if lies_in(path, folder)), key=len, default=None)


def includes_of(path):
    for number, line in enumerate(Path(path).read_text().splitlines(), 1):
        match = re.match(r'\s*#\s*include\s*(["<])([^">]+)[">]', line)
        if not match:
            continue
        quoted, name = match[1] == '"', match[2]
        if quoted or name in BARE:
            yield number, name if quoted else BARE[name]
        elif name.startswith("corvane/"):
            yield number, "sdk/testkit/include/" + name


def top_folder(path):
    parts = path.split("/")
    return "/".join(parts[:2]) if parts[0] == "platform" else parts[0]


def cycles(edges):
    reached = {a: set(to) for a, to in edges.items()}
    for via, a in itertools.product(list(reached), list(reached)):
        if via in reached[a]:
            reached[a] |= reached[via]
    return sorted(folder for folder, to in reached.items() if folder in to)


def main():
    listing = subprocess.run(["git", "ls-files", "*.h", "*.c", "*.cpp", "*.def"],
                             capture_output=True, text=True, check=True).stdout
    files = [path for path in listing.split() if not path.startswith(FROZEN)]
    table = read_table()
    complaints = [f"{DOCUMENT}: {folder} is no folder of the tree"
                  for folder in table if not os.path.isdir(folder)]
    edges = defaultdict(set)
    headers = defaultdict(list)
    for path in files:
        if path.endswith(".h"):
            headers[os.path.basename(path)].append(path)
        row = row_of(path, table)
        if row is None:
            complaints.append(f"{path}: its folder is not in the table of {DOCUMENT}")
            continue
        for number, included in includes_of(path):
            if included not in files:
                if not path.startswith("tests/abi/"):
                    complaints.append(f"{path}:{number}: {included} is no path from the top")
                continue
            if row_of(included, table) != row and not any(
                    lies_in(included, allowed) for allowed in table[row]):
                complaints.append(f"{path}:{number}: {row} may not include {included}")
            if top_folder(path) != top_folder(included) and included != LOG:
                edges[top_folder(path)].add(top_folder(included))
    complaints += [f"headers of one name: {', '.join(paths)}"
                   for paths in headers.values() if len(paths) > 1]
    complaints += [f"{folder} includes itself through other top folders"
                   for folder in cycles(edges)]
    print("\n".join(complaints) or f"{len(files)} sources include only what they may")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
