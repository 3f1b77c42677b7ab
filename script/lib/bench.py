#!/usr/bin/env python3
"""What the benchmarks have measured, as ratios: bench.py table|json RESULTS.json...

A ratio is between the fastest of all repetitions of both, in one run; where threads contend,
between the medians. Ends with 0, whatever the ratios are."""
import json
import statistics
import sys
from collections import defaultdict

STRAND = "Signals2 and an Asio strand"
# What, against what, the benchmark, its rival, what the ratio must be, what it should be.
ROWS = [
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
    ("fan-out to 8, every line in a file", STRAND + ", 19 lines by spdlog", "logged/corvane",
     "logged/signals2+strand+spdlog", 0.5, 0.25),
    ("log line to a file", "spdlog basic_file_sink_mt", "line/libdlog", "line/spdlog", 0.55, 0.35),
    ("64 plugins loaded, initialised, unloaded", "the bare loader", "plugins/corvane",
     "plugins/loader", 1.15, 1.06),
]


def read(files):
    times = defaultdict(list)
    boost = ""
    for name in files:
        with open(name, encoding="utf-8") as file:
            found = json.load(file)
        boost = found["context"].get("boost", boost)
        for run in found["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"{run['name']}: {run['error_message']}")
            if run["run_type"] == "iteration":
                times[run["name"]].append(run["real_time"])
    return times, boost


def main():
    times, boost = read(sys.argv[2:])
    rows = []
    for what, against, own, rival, must, aim in ROWS:
        of = statistics.median if own.startswith("contended/") else min
        rows.append({"name": what, "against": against,
                     "ratio": round(of(times[own]) / of(times[rival]), 3), "must": must,
                     "aim": aim})
    if sys.argv[1] == "json":
        print(json.dumps(rows, indent=1))
        return
    print(f"Boost {boost.replace('_', '.')}\n")
    print("| what | against | ratio | must | aim |\n|---|---|---:|---:|---:|")
    for row in rows:
        limits = " | ".join("" if row[key] is None else f"{row[key]:.2f}" for key in ("must", "aim"))
        print(f"| {row['name']} | {row['against']} | {row['ratio']:.2f} | {limits} |")


main()
