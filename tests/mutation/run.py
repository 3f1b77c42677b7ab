#!/usr/bin/env python3
"""Mutation testing: applies the faults of faults.toml, one at a time, to copies of the source tree
and runs the tests there.

run.py [--check] [TEXT...]: tries the faults whose names contain one of the texts, by default all.
Prints how many faults each level of tests caught, and which faults survived. Exits with 1 if fewer
than 95 % are caught, if a fault survives without a reason (its `survives`), or if a fault with such
a reason is caught.
With --check it only checks that each fault's old text occurs exactly once in its file. Run it from
the top of the tree.
"""
import argparse
import filecmp
import os
import shutil
import subprocess
import sys
import threading
import time
import tomllib
from collections import Counter
from pathlib import Path

PLACE = Path("build/mutations")
MUST = 0.95
# The test programs of each level, the fastest level first. A time-out counts as caught. For a fault
# with `by`, only the program and the tests named there are run.
LEVELS = {
    "unit": ["unit"],
    "model": ["model_task_context"],
    "faults": ["faults_allocations", "faults_in_process"],
    "integration": ["integration_daemon", "integration_faults"],
    "stress": ["stress"],
}
TIME_LIMIT_SEC = 300
ENVIRONMENT = os.environ | {"ECORE_NO_SYSTEM_MODULES": "1"}


class Worker:
    """A copy of the source tree with its own build directory. Used by one thread."""

    def __init__(self, number):
        self.tree = PLACE / str(number) / "tree"
        self.build = PLACE / str(number) / "build"
        self.log = open(PLACE / f"{number}.log", "w")

    def say(self, *command, cwd=None):
        print("$", *command, file=self.log, flush=True)
        try:
            return subprocess.run(command, cwd=cwd, stdout=self.log, stderr=subprocess.STDOUT,
                                  env=ENVIRONMENT, timeout=TIME_LIMIT_SEC).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def prepare(self, levels):
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"], check=True, capture_output=True, text=True)
        wanted = {Path(name) for name in listed.stdout.split("\0") if name and Path(name).exists()}
        for path in self.tree.rglob("*"):
            if path.is_file() and path.relative_to(self.tree) not in wanted:
                path.unlink()
        for name in wanted:
            copy = self.tree / name
            if not copy.exists() or not filecmp.cmp(name, copy, shallow=False):
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(name, copy)
        if not self.say("cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja",
                        "-DCMAKE_CXX_COMPILER=g++", "-DCMAKE_C_COMPILER=gcc",
                        "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
                        "-DCORVANE_TESTS=ON", "-DCORVANE_SANITIZE=address"):
            raise RuntimeError("can't configure")
        for level in levels:
            if not self.holds(LEVELS[level]):
                raise RuntimeError(f"{level} fails without any fault, see {self.log.name}")

    def holds(self, targets, tests="*"):
        """Returns True if the tests of these programs pass, None if the build fails."""
        for target in targets:
            if subprocess.run(["cmake", "--build", str(self.build), "-j1", "--target", target],
                              stdout=self.log, stderr=subprocess.STDOUT).returncode != 0:
                return None
        return all(self.say(str((self.build / "bin" / target).resolve()), "--gtest_fail_fast",
                            "--gtest_brief=1", f"--gtest_filter={tests}", cwd=self.build)
                   for target in targets)

    def catch(self, fault):
        """Returns the level, or the program of `by`, that catches the fault, or None."""
        levels, tests = LEVELS, "*"
        if "by" in fault:
            program, tests = fault["by"]
            levels = {program: [program]}
            if not self.holds([program], tests):
                raise RuntimeError(f"{fault['name']}: {program} fails without it, "
                                   f"see {self.log.name}")
        file = self.tree / fault["file"]
        text = file.read_text()
        print("##", fault["name"], file=self.log, flush=True)
        file.write_text(text.replace(fault["old"], fault["new"]))
        try:
            for level, targets in levels.items():
                held = self.holds(targets, tests)
                if held is None:
                    raise RuntimeError(f"{fault['name']}: doesn't compile, see {self.log.name}")
                if not held:
                    return level
            return None
        finally:
            file.write_text(text)


def misplaced(fault):
    """Returns why the fault can't be applied, or an empty string."""
    if not Path(fault["file"]).is_file():
        return f"{fault['name']}: there is no file {fault['file']}"
    if (count := Path(fault["file"]).read_text().count(fault["old"])) != 1:
        return f"{fault['name']}: {fault['file']} contains the old text {count} times"
    return ""


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("texts", nargs="*", metavar="TEXT")
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    faults = tomllib.loads(Path("tests/mutation/faults.toml").read_text())["fault"]
    if options.texts:
        faults = [fault for fault in faults if any(text in fault["name"] for text in options.texts)]
    if not faults:
        sys.exit(f"no fault's name contains {' or '.join(options.texts)}")
    if errors := list(filter(None, map(misplaced, faults))):
        sys.exit("\n".join(errors))
    if options.check:
        print(f"{len(faults)} faults, each old text occurs once")
        return
    total = len(faults)
    levels = [] if all("by" in fault for fault in faults) else list(LEVELS)
    PLACE.mkdir(parents=True, exist_ok=True)
    lock = threading.Lock()
    caught, survivors, errors = Counter(), [], []

    # Neighbouring faults change the same file, so the two workers start at opposite ends of the
    # list: then each rebuilds fewer files.
    def work(number):
        try:
            worker = Worker(number)
            worker.prepare(levels)
            while True:
                with lock:
                    if not faults:
                        return
                    fault = faults.pop(-number)
                start = time.monotonic()
                try:
                    level = worker.catch(fault)
                except RuntimeError as error:
                    with lock:
                        print(error, file=sys.stderr, flush=True)
                        errors.append(str(error))
                    continue
                with lock:
                    seconds = time.monotonic() - start
                    print(f"{level or 'SURVIVED':12}{seconds:4.0f} s  {fault['name']}",
                          file=sys.stderr, flush=True)
                    if level:
                        caught[level] += 1
                    else:
                        survivors.append(fault)
                    if level and "survives" in fault:
                        errors.append(f"caught in spite of its reason: {fault['name']}")
        except RuntimeError as error:
            with lock:
                errors.append(str(error))

    threads = [threading.Thread(target=work, args=[number]) for number in (0, 1)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()

    count = sum(caught.values())
    print(f"{total} faults, {count} caught ({100 * count / total:.1f} %): " +
          ", ".join(f"{times} by {level}" for level, times in caught.items()))
    for fault in survivors:
        print(f"survived: {fault['name']} ({fault.get('survives', 'NO REASON')})")
    errors += [f"survives without a reason: {fault['name']}" for fault in survivors
               if "survives" not in fault]
    for error in errors:
        print(error, file=sys.stderr)
    sys.exit(1 if errors or count < MUST * total else 0)


if __name__ == "__main__":
    main()
