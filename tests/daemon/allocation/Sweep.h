// Runs a scenario again and again, each time in a process of its own: with the first
// allocation failing, with the second, until it runs through; once and from then on.
#pragma once

#include <functional>
#include <memory>
#include <new>
#include <set>
#include <string>

#include "tests/daemon/allocation/Allocations.h"

/// Made, run, checked and destroyed in that process; only in run does memory fail.
class Scenario {
public:
    virtual ~Scenario() = default;
    virtual void run() = 0;
    virtual void check() {}

protected:
    Scenario() = default;
    Scenario(const Scenario&) = delete;
    Scenario& operator=(const Scenario&) = delete;

    /// Notes a problem; the first one counts. Allocates nothing.
    static void require(bool holds, const char* text);
    /// What is left allocated on purpose. `blocks` is asked when all else is gone.
    static void leaves(long strings, std::function<long()> blocks = {});

    /// False if the operation ended for want of memory; any other exception is a problem.
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

/// Expects of every run: no crash, nothing left behind, every platform callback unset as
/// often as set; and that the process ends, if at all, because one of the functions
/// `mayEndProcess` lacked memory. Expects at least `leastPoints` points to fail at.
/// Returns how many strings were left on purpose in all the runs.
/// Appends a line for each way of failing to the file that CORVANE_FIGURES names: family,
/// way, points, process ends, strings and blocks left on purpose, with tabs between.
long expectToSurvive(const std::string& family, const MakeScenario& make, long leastPoints,
                     const std::set<std::string>& mayEndProcess = {});
