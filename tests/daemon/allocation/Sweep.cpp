#include "tests/daemon/allocation/Sweep.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

#include "taskExecutor/ShortLived.h"
#include "tests/daemon/allocation/ProcessEnd.h"
#include "tests/support/FakePlatform.h"

#ifdef CORVANE_COVERAGE
extern "C" void __gcov_dump();
#endif

namespace {

constexpr unsigned int TIME_LIMIT_SEC = 30;
constexpr int MOST_PROBLEMS = 3;

/// The result of a run, in memory shared by the child process and the test.
struct Report {
    bool isComplete;
    bool hasFailed;
    long made;
    long strings;  // left on purpose
    long blocks;
    char processEnd[128];
    char problem[256];
};

Report* g_report = nullptr;
long g_blocksBefore = 0;
long g_intendedStrings = 0;
std::function<long()>* g_intendedBlocks = nullptr;

void note(const std::string& problem) {
    if (g_report->problem[0] == '\0') {
        std::snprintf(g_report->problem, sizeof g_report->problem, "%s", problem.c_str());
    }
}

[[noreturn]] void leave() {
    g_report->isComplete = true;
#ifdef CORVANE_COVERAGE
    __gcov_dump();
#endif
    _exit(0);
}

[[noreturn]] void onTerminate() {
    g_report->hasFailed = allocations::hasFailed();
    allocations::succeed();
    std::snprintf(g_report->processEnd, sizeof g_report->processEnd, "%s",
                  innermostDestructor().c_str());
    // This may be null in code that g++ has optimised.
    const std::exception_ptr exception = std::current_exception();
    try {
        if (exception != nullptr) {
            std::rethrow_exception(exception);
        }
    } catch (const std::bad_alloc&) {
    } catch (...) {
        note("the process ended by an exception other than std::bad_alloc");
    }
    if (!g_report->hasFailed) {
        note("the process ended although memory never failed");
    }
    leave();
}

// Registered first, so it runs last: after the product's static objects have been destroyed.
void atExit() {
    if (fake_platform::callbacksSet() != 0) {
        note("a platform callback is still set");
    }
#define EVENT(source, type, value, subscribe, unsubscribe, setFunction, unsetFunction, Callback, \
              types)                                                                             \
    {                                                                                            \
        const fake_platform::Slot slot = fake_platform::slot(#setFunction);                      \
        if (slot.sets != slot.unsets) {                                                          \
            note(#setFunction " " + std::to_string(slot.sets) + " times, " #unsetFunction " " +  \
                 std::to_string(slot.unsets) + " times");                                        \
        }                                                                                        \
    }
#include "tests/support/EventTable.def"
#undef EVENT
    g_report->strings = g_intendedStrings;
    g_report->blocks = *g_intendedBlocks ? (*g_intendedBlocks)() : 0;
    const long blocks = allocations::outstandingBlocks() - g_blocksBefore;
    const long strings = allocations::outstandingStrings();
    if (blocks != g_report->blocks || strings != g_report->strings) {
        note("left behind: " + std::to_string(blocks) + " blocks, " + std::to_string(strings) +
             " strings; on purpose " + std::to_string(g_report->blocks) + " and " +
             std::to_string(g_report->strings));
    }
    leave();
}

[[noreturn]] void runInChild(const MakeScenario& make, long number, allocations::Failing failing) {
    std::atexit(atExit);
    std::set_terminate(onTerminate);
    alarm(TIME_LIMIT_SEC);
    std::function<long()> intendedBlocks;
    g_intendedBlocks = &intendedBlocks;
    fake_platform::reset();
    fake_platform::recordNothing();
    ShortLived::stopKeeping();  // a kept block is reused without an allocation
    g_blocksBefore = allocations::outstandingBlocks();
    {
        const std::unique_ptr<Scenario> scenario = make();
        allocations::failAt(number, failing);
        scenario->run();
        allocations::succeed();
        g_report->hasFailed = allocations::hasFailed();
        g_report->made = allocations::made();
        scenario->check();
    }
    std::exit(0);
}

Report runOnce(const MakeScenario& make, long number, allocations::Failing failing) {
    *g_report = Report{};
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        runInChild(make, number, failing);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        note("no process to run in");
    } else if (WIFSIGNALED(status)) {
        note("ended by signal " + std::to_string(WTERMSIG(status)));
    } else if (WEXITSTATUS(status) != 0 || !g_report->isComplete) {
        note("exited with " + std::to_string(WEXITSTATUS(status)));
    }
    return *g_report;
}

long sweep(const std::string& family, const MakeScenario& make, allocations::Failing failing,
           long leastPoints, const std::set<std::string>& mayEndProcess) {
    long number = 0;
    long strings = 0;
    long blocks = 0;
    long processEnds = 0;
    int problems = 0;
    Report report{};
    do {
        report = runOnce(make, ++number, failing);
        const std::string end = report.processEnd;
        if (report.problem[0] != '\0') {
            ++problems;
            ADD_FAILURE() << "allocation " << number << " failing: " << report.problem;
        } else if (!end.empty() && !mayEndProcess.contains(end)) {
            ++problems;
            ADD_FAILURE() << "allocation " << number << " failing ended the process in " << end;
        }
        processEnds += end.empty() ? 0 : 1;
        strings += report.strings;
        blocks += report.blocks;
    } while (report.hasFailed && problems < MOST_PROBLEMS);
    if (problems == 0) {
        EXPECT_EQ(report.made, number - 1) << "the run without a failure";
        EXPECT_GE(number - 1, leastPoints);
    }
    std::ostringstream figures;
    figures << family << '\t' << (failing == allocations::Failing::Once ? "once" : "from then on")
            << '\t' << number - 1 << '\t' << processEnds << '\t' << strings << '\t' << blocks
            << '\n';
    if (const char* const file = std::getenv("CORVANE_FIGURES"); file != nullptr) {
        std::ofstream(file, std::ios::app) << figures.str();
    }
    return strings;
}

}  // namespace

void Scenario::require(bool holds, const char* text) {
    if (!holds && g_report->problem[0] == '\0') {
        std::snprintf(g_report->problem, sizeof g_report->problem, "%s", text);
    }
}

void Scenario::leaves(long strings, std::function<long()> blocks) {
    g_intendedStrings = strings;
    *g_intendedBlocks = std::move(blocks);
}

long expectToSurvive(const std::string& family, const MakeScenario& make, long leastPoints,
                     const std::set<std::string>& mayEndProcess) {
    prepareBacktraces();
    g_report = static_cast<Report*>(
        mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (g_report == MAP_FAILED) {
        ADD_FAILURE() << "no memory for two processes";
        return 0;
    }
    long strings = 0;
    for (const auto failing : {allocations::Failing::Once, allocations::Failing::FromThenOn}) {
        strings += sweep(family, make, failing, leastPoints, mayEndProcess);
    }
    munmap(g_report, sizeof(Report));
    return strings;
}
