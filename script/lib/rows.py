"""The table of script/prove: what each row of docs/reliability.md shows, and by which steps."""
import re
from collections import defaultdict
from pathlib import Path
from typing import Callable, NamedTuple

LOGS = Path("build/prove")


class Step(NamedTuple):
    """One command for bash.

    The target of the preset, or all, is built before it. A variable of the environment that is
    already set keeps its value. `read` returns the figures in the output, or throws ValueError.
    """
    command: str
    read: Callable[[str], list[str]]
    preset: str = ""
    target: str = "all"
    environment: dict[str, str] = {}


class Row(NamedTuple):
    shows: str
    steps: list[Step]


def lines(*patterns):
    """Reads what matches a pattern, or a pair of pattern and replacement. Each has to match."""
    def read(output):
        found = []
        for pattern in patterns:
            pattern, figure = (pattern, r"\g<0>") if isinstance(pattern, str) else pattern
            matches = list(re.finditer(pattern, output, re.M))
            if not matches:
                raise ValueError(f"no line matches {pattern}")
            found += [match.expand(figure) for match in matches]
        return found
    return read


def read_allocations(output):
    """Adds up the lines that Sweep.cpp wrote, one for each sweep."""
    sums = defaultdict(lambda: [0, 0, 0])
    sweeps = re.findall(r"^([^\t\n]+)\t([^\t]+)\t(\d+)\t(\d+)\t(\d+)\t(\d+)$", output, re.M)
    for scenario, moment, *counts in sweeps:
        points, ends, left, left_by_end = map(int, counts)
        total = sums[f"{scenario}, failing {moment}"]
        total[:] = total[0] + points, total[1] + ends, total[2] + left + left_by_end
    if len(sums) != 8 or sum(sweep[0] == "42 kinds of events" for sweep in sweeps) != 84:
        raise ValueError("not every scenario has run")
    return TESTS_PASS(output) + [
        f"{name}: {points} points reached, {ends} documented process ends, 0 crashes, 0 leaks "
        f"({left} blocks left on purpose)"
        for name, (points, ends, left) in sorted(sums.items())
    ] + [f"{sum(total[0] for total in sums.values())} points in all"]


def read_soak(output):
    figures = lines(r"^(?!Running|Note|\[).*\d.*$")(output)
    rate = re.search(r"^\d+ events in .*: (\d+) each second$", output, re.M)
    if not rate or int(rate[1]) < 5000:
        raise ValueError("fewer than 5000 events each second")
    return figures


def tests_pass(prefix=""):
    return lines((r"^100% tests passed, 0 tests failed out of (\d+)$",
                  prefix + r"\1 tests, none failed"))


TESTS_PASS = tests_pass()


def tests(preset, names):
    """The tests whose names match, in a build that has all of them."""
    return Step(f"ctest --preset {preset} -R '{names}' --no-tests=error", TESTS_PASS, preset)


def program(preset, name, names, read, **environment):
    """One test program with the tests that the filter names."""
    return Step(f"build/{preset}/bin/{name} --gtest_filter='{names}'", read, preset, name,
                environment)


def allocations(preset):
    figures = LOGS / "allocations.tsv"
    sweep = tests(preset, "AllocationTest")
    return sweep._replace(command=f": >{figures}; {sweep.command}; cat {figures}",
                          read=read_allocations,
                          environment={"CORVANE_FIGURES": str(figures.resolve())})


def storm(preset, events):
    return program(
        preset, "stress",
        "EventStormTest.APluginThatStaysGetsEveryEventOfEveryKindWholeAndInOrder",
        lines(r"^\d.* (?:received|rounds) .*",
              (r"^\[=+\] 1 test from .* ran\. \((\d+) ms total\)$", r"no report, in \1 ms")),
        CORVANE_STORM_EVENTS=events)


def release(arguments):
    """All tests in a clean root of another Debian release or architecture."""
    return Step(f"script/test-in {arguments} script/test dev -DCMAKE_UNITY_BUILD=ON "
                "-DCMAKE_CXX_FLAGS_DEBUG=-g1", tests_pass(f"{arguments}: "))


def device_faults(preset, moments, storms):
    return program(preset, "integration_faults", "*DeviceFault*", lines((r"^figure: (.*)", r"\1")),
                   CORVANE_FAULT_MOMENTS=moments, CORVANE_FAULT_STORMS=storms,
                   CORVANE_FAULT_FILES="10000")


ROWS = {
    "allocation-failures": Row(
        "Every allocation of the daemon fails in turn, once and from then on: starting and "
        "stopping with three plugins, each kind of event subscribed twice, delivered and "
        "unsubscribed, tasks.",
        [allocations(preset) for preset in ("dev", "asan", "tsan")]),
    "plugin-faults": Row(
        "Faulty plugins of every kind in the real daemon: exit status and complete log.",
        [tests(preset, r"^Plugins/PluginFaultTest\.") for preset in ("release", "asan", "tsan")] +
        [Step("git ls-files '*/faults/transcripts/*.txt' | xargs wc -l",
              lines((r"^ *(\d+) total$", r"complete logs compared: \1 lines")))]),
    "event-storm": Row(
        "A million events of all kinds under ThreadSanitizer, ten million under AddressSanitizer, "
        "while plugins are loaded and unloaded.",
        [storm("tsan", "1000000"), storm("asan", "10000000"),
         Step("""if git ls-files | grep -iE 'supp[^/]*$' | grep -vi support ||
                     git grep -lE '_default_suppressions|suppressions=' -- ':!script/lib'; then
                     exit 1
                 fi
                 echo no suppression file""", lines("^no suppression file"))]),
    "task-context-model": Row(
        "The task context behaves like its reference model under 20,000 seeds.",
        [program("dev", "model_task_context", "*", lines(r"^\d+ seeds, .*", "^reached .*"),
                 CORVANE_MODEL_SEEDS="20000")]),
    "soak": Row(
        "The daemon with three plugins for ten minutes, at 5000 events each second or more, "
        "without growing.",
        [program("release", "soak", "*", read_soak, CORVANE_SOAK_SECONDS="600")]),
    "fuzz": Row(
        "Ten minutes of each fuzz target built by clang, then all committed inputs built by g++.",
        [Step("script/check/fuzz $CORVANE_FUZZ_SECONDS", lines(".* 0 findings$"),
              environment={"CORVANE_FUZZ_SECONDS": "600"}),
         Step("echo $(git ls-files '*/fuzz/corpus/*' | wc -l) inputs replayed under g++",
              lines(r"^[1-9]\d* inputs .*")),
         tests("asan", "^fuzz_replay_")]),
    "coverage": Row(
        "The lines and branches of the daemon and the task library that the unit and allocation "
        "tests reach, compared with the lines listed as not reached. Branches that the compiler "
        "makes for exceptions don't count.",
        [Step("""find build/coverage -name '*.gcda' -delete
                 ctest --preset coverage -L '^(unit|faults)$' -E _NOT_BUILT --no-tests=error
                 gcovr --root . --filter daemon/src/ --filter taskExecutor/ \
                     --exclude-throw-branches --exclude-unreachable-branches \
                     --json build/coverage/coverage.json \
                     build/coverage/daemon build/coverage/taskExecutor build/coverage/tests
                 script/lib/coverage.py build/coverage/coverage.json docs/reliability.md""",
              lines("^(?:daemon/src|taskExecutor|together|record copies): lines .*",
                    "^lines not reached: .*"),
              "coverage", "unit unit_stranded_job faults_allocations faults_in_process")]),
    "mutations": Row(
        "Small deliberate faults in the product, its platform and tools, applied one at a time, "
        "are each noticed by the tests (built with AddressSanitizer), or listed with the reason "
        "why no test can notice them.",
        [Step("tests/mutation/run.py {only}", lines(r"^(?:\d+ faults, .*|survived: .*)"))]),
    "sanitizers": Row(
        "All tests under each preset, clang's warnings, and the static checkers.",
        [tests(preset, ".") for preset in ("dev", "release", "asan", "tsan")] +
        [Step("""echo "clang $(clang -dumpversion) -Werror:" \
                     "$(grep -c '"file":' build/fuzz/compile_commands.json) sources, no warning" """,
              lines("^clang .*"), "fuzz"),
         Step("script/check/lint", lines("^(?:clang-tidy|cppcheck): .*"))]),
    # In other tests an exception skips the shutdown, or a library stays open.
    "memcheck": Row(
        "Daemon runs with an orderly shutdown, under valgrind's memcheck: no error, no leak, no "
        "suppression file.",
        [Step("""rm -rf build/memcheck
                 mkdir build/memcheck
                 CORVANE_DAEMON_WRAPPER="valgrind --quiet --log-file=$PWD/build/memcheck/%p
                     --error-exitcode=99 --leak-check=full --show-leak-kinds=definite,indirect
                     --errors-for-leak-kinds=definite,indirect" \
                     build/dev/bin/integration_daemon --gtest_filter="$TESTS"
                 if grep -r . build/memcheck; then exit 1; fi
                 echo "$(find build/memcheck -type f | wc -l) runs of the daemon," \
                     "0 errors, nothing lost" """,
              lines(r"^[1-9]\d* runs of .*"), "dev", "integration_daemon",
              {"TESTS": "DaemonEventTest.*:PluginContractTest.*:DaemonDiscoveryTest.*:"
                        "DaemonPriorityTest.*:DaemonTranscriptTest.ALife*:"
                        "DaemonTranscriptTest.One*"})]),
    "device-faults": Row(
        "Signals at any moment, and unreadable, full or crowded file systems, with the real daemon.",
        [device_faults("release", "100000", "100"), device_faults("asan", "40", "10"),
         device_faults("tsan", "40", "10")]),
    "releases": Row(
        "All tests on Debian 13 and on a 32-bit processor; the unit, ABI, model and stress tests, "
        "the daemon and a device's build under emulated ARM processors.",
        [release("trixie amd64"), release("bookworm i386")] +
        [Step(f"script/cross {architecture}", tests_pass(f"{architecture}: "))
         for architecture in ("armhf", "arm64")]),
}
