#!/usr/bin/env python3
"""Shows the benchmarks' results: bench.py [--short] table|json|page COUNTS SIZES RESULTS...

A ratio compares the fastest repetition of both sides in one run; where threads contend, it compares
the medians. Exits with 1 and names the rows if a figure exceeds what it must be, but not with
--short: a short run measures nothing."""
import argparse
import datetime
import json
import re
import statistics
import sys
from collections import defaultdict
from pathlib import Path

from circumstances import commit, machine

PAGE = Path("docs/performance.md")
STRAND = "Signals2 and an Asio strand"
# What, against what, the benchmark, its rival, must (the largest permitted ratio), aim.
RATIOS = [
    ("fan-out of (int, enum) to 8", STRAND, "fan-out/corvane/8", "fan-out/signals2+strand/8", 1.75,
     1.60),
    ("fan-out of (int, enum) to 1", STRAND, "fan-out/corvane/1", "fan-out/signals2+strand/1", 1.40,
     1.27),
    ("fan-out of (int, enum) to 32", STRAND, "fan-out/corvane/32", "fan-out/signals2+strand/32",
     1.80, 1.62),
    ("fan-out of (int, enum) to 8", "sigc++ and a queue", "fan-out/corvane/8",
     "fan-out/sigc+queue/8", None, None),
    ("fan-out of (int, enum) to 8", "a vector and a queue", "fan-out/corvane/8",
     "fan-out/vector+queue/8", None, None),
    ("fan-out of (int, enum) to 8", "the budget alone", "fan-out/corvane/8", "fan-out/budget/8",
     None, None),
    ("record with strings to 8", STRAND, "record/corvane/8", "record/signals2+strand/8", 1.30, 1.20),
    ("hand-off, idle", "Asio strand dispatch", "hand-off/corvane", "hand-off/strand", 1.75, 1.60),
    ("hand-off, 2 producers", "strand on the system executor",
     "contended/corvane/real_time/threads:2", "contended/strand/real_time/threads:2", 2.0, 1.6),
    ("64 plugins loaded, initialised, unloaded", "the bare loader", "plugins/corvane",
     "plugins/loader", 1.20, 1.06),
]
# What, the count, must (the largest permitted count), aim.
COUNTS = [
    ("operator new for a delivered (int, enum) event", "allocations of a delivery", 2, 0),
    ("operator new for a hand-off of a two-word task", "allocations of a hand-off", 1, 0),
    ("instructions for a delivered (int, enum) event", "instructions of a delivery", None, None),
    ("heap bytes of an idle plugin: object, broker, context", "bytes of an idle plugin", None, None),
    ("bytes of the device's daemon, stripped", "bytes of the daemon", 400000, 300000),
    ("resident KiB of the device's daemon without plugins", "resident KiB of the daemon", None,
     None),
    ("resident KiB of a C++ process that only runs the main loop",
     "resident KiB of an idle main loop", None, None),
    ("the former divided by the latter", "resident ratio", 1.25, 1.1),
]
# A delivery's cost in one dimension: the benchmark, in how many parts, and which clock tells.
SCALES = [
    ("subscribers", [(f"scale/subscribers/{n}", n) for n in (1, 8, 64, 512)], "real_time"),
    ("threads, each with a plugin of its own",
     [(f"scale/threads/real_time/threads:{n}", n) for n in (1, 2, 4)], "cpu_time"),
]


def read(files):
    runs = defaultdict(list)
    boost = ""
    for name in files:
        found = json.loads(Path(name).read_text())
        boost = found["context"].get("boost", boost)
        for run in found["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"{run['name']}: {run['error_message']}")
            if run["run_type"] == "iteration":
                runs[run["name"]].append(run)
    return runs, boost.replace("_", ".")


def ratios(runs):
    for what, against, own, rival, must, aim in RATIOS:
        of = statistics.median if own.startswith("contended/") else min
        own_time, rival_time = (of(run["real_time"] for run in runs[name]) for name in (own, rival))
        yield {"name": what, "against": against, "ratio": round(own_time / rival_time, 3),
               "must": must, "aim": aim}


def scale(runs, benchmarks, clock):
    """Nanoseconds for each delivery, by the number of subscribers or threads."""
    for name, number in benchmarks:
        each = number if clock == "real_time" else 1
        yield number, min(run[clock] for run in runs[name]) / each


def cells(row):
    return " | ".join("" if row[key] is None else f"{row[key]:.6g}" for key in ("must", "aim"))


def tables(rows, runs):
    lines = ["| what | against | ratio | must | aim |", "|---|---|---:|---:|---:|"]
    lines += [f"| {row['name']} | {row['against']} | {row['ratio']:.2f} | {cells(row)} |"
              for row in rows if "ratio" in row]
    lines += ["", "| what | figure | must | aim |", "|---|---:|---:|---:|"]
    lines += [f"| {row['name']} | {row['value']:.6g} | {cells(row)} |"
              for row in rows if "value" in row]
    for what, benchmarks, clock in SCALES:
        found = list(scale(runs, benchmarks, clock))
        title = "time" if clock == "real_time" else "processor time"
        lines += ["", f"| {what} | {title} for each delivery | to the first |", "|---:|---:|---:|"]
        lines += [f"| {number} | {time:.0f} ns | {time / found[0][1]:.2f} |"
                  for number, time in found]
    return lines


def exceeded(rows):
    """The rows whose figure is larger than it must be, as lines."""
    for row in rows:
        figure = row["ratio"] if "ratio" in row else row["value"]
        if row["must"] is not None and figure > row["must"]:
            against = f" against {row['against']}" if row["against"] else ""
            yield f"missed: {row['name']}{against}: {figure:g}, must be {row['must']:g} or less"


def show(form, rows, runs, boost):
    if form == "json":
        print(json.dumps(rows, indent=1))
        return
    heading = f"On {datetime.date.today()}, commit {commit(PAGE)}, {machine()}, Boost {boost}."
    text = "\n".join([heading, "", *tables(rows, runs)])
    if form == "table":
        print(text)
        return
    page = PAGE.read_text()
    marked = re.compile(r"(?<=<!-- figures -->\n).*?(?=<!-- end -->)", re.S)
    if not marked.search(page):
        sys.exit(f"{PAGE} has no place for the figures")
    PAGE.write_text(marked.sub(lambda _: text + "\n", page))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--short", action="store_true")
    parser.add_argument("form", choices=["table", "json", "page"])
    parser.add_argument("counts", type=Path)
    parser.add_argument("sizes", type=Path)
    parser.add_argument("results", nargs="+")
    options = parser.parse_args()
    runs, boost = read(options.results)
    values = json.loads(options.counts.read_text()) | json.loads(options.sizes.read_text())
    values["resident ratio"] = round(values["resident KiB of the daemon"] /
                                     values["resident KiB of an idle main loop"], 2)
    rows = list(ratios(runs))
    rows += [{"name": what, "against": None, "value": values[key], "must": must, "aim": aim}
             for what, key, must, aim in COUNTS]
    show(options.form, rows, runs, boost)
    if not options.short and (missed := list(exceeded(rows))):
        sys.exit("\n".join(missed))


main()
