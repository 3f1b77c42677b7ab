// Runs a scenario repeatedly, each time in a new child process. In run number n, allocation n
// fails. The series ends with the first run in which no allocation fails. In a second series,
// allocation n and all later ones fail.
#pragma once

#include <functional>
#include <memory>
#include <new>
#include <set>
#include <string>

#include "tests/daemon/allocation/Allocations.h"

/// Created, run, checked and destroyed in the child process. Allocations fail only in run.
class Scenario {
public:
    virtual ~Scenario() = default;
    virtual void run() = 0;
    virtual void check() {}

protected:
    Scenario() = default;
    Scenario(const Scenario&) = delete;
    Scenario& operator=(const Scenario&) = delete;

    /// Records `text` as a problem if `holds` is false. A run reports only its first problem.
    /// Allocates nothing.
    static void require(bool holds, const char* text);
    /// Declares what is left allocated on purpose. `blocks` returns the number of blocks and is
    /// called after everything else has been freed.
    static void leaves(long strings, std::function<long()> blocks = {});

    /// Returns true if `operation` has not thrown. An exception other than std::bad_alloc is
    /// recorded as a problem.
    template <typename Operation>
    static bool attempt(const Operation& operation) {
        try {
            operation();
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        } catch (...) {
            require(false, "an exception other than std::bad_alloc");
            return false;
        }
    }
};

using MakeScenario = std::function<std::unique_ptr<Scenario>()>;

/// Runs both series. Expects that no run crashes or leaks, that every platform callback is unset as
/// often as it is set, that failed allocations terminate the process only in the functions
/// `mayEndProcess`, and that each series makes at least `leastPoints` allocations fail. Returns the
/// number of strings left on purpose in all runs.
///
/// Appends a line for each series to the file named by the environment variable CORVANE_FIGURES:
/// family, series, failing allocations, process ends, strings and blocks left on purpose, separated
/// by tabs.
long expectToSurvive(const std::string& family, const MakeScenario& make, long leastPoints,
                     const std::set<std::string>& mayEndProcess = {});
