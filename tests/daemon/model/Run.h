// One run of a program: its scheduler, the recorded events, and the intended oddities that it
// reached. An oddity is surprising behaviour that is kept on purpose.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "tests/daemon/model/Scheduler.h"

namespace model {

/// Owner: the test. Only one Run may exist at a time. Threads: record and line are called by the
/// scheduler's running thread.
class Run {
public:
    explicit Run(unsigned seed);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// Returns the run that exists.
    static Run& current();

    Scheduler& scheduler() { return m_scheduler; }

    /// Records an event of the calling actor, without yielding.
    void record(const std::string& event);
    /// Records a log line, then yields unless the actor holds a mutex.
    void line(char priority, const std::string& text);
    void reach(const char* oddity) { ++m_oddities[oddity]; }

    const std::vector<std::string>& events() const { return m_events; }
    const std::map<std::string, int>& oddities() const { return m_oddities; }

    /// Sets the object whose mutexes the scheduler replaces.
    void setContext(const void* context, std::size_t size);
    const void* context() const { return m_context; }
    /// Returns the scheduler's mutex for the mutex at `address`, or null if that is not part of the
    /// context.
    Scheduler::Mutex* mutexAt(const void* address);
    Scheduler::Condition& conditionAt(const void* address) { return m_conditions[address]; }

private:
    unsigned m_seed;
    Scheduler m_scheduler;
    std::vector<std::string> m_events;
    std::map<std::string, int> m_oddities;
    const char* m_context = nullptr;
    const char* m_contextEnd = nullptr;
    std::map<const void*, Scheduler::Mutex> m_mutexes;
    std::map<const void*, Scheduler::Condition> m_conditions;
};

/// Returns "replay: CORVANE_MODEL_SEED=<seed> <this program>".
std::string replayCommand(unsigned seed);

}  // namespace model
