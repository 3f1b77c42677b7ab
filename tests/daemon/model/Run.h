// One run of a program: its scheduler, what happened in it, and which of the kept
// oddities it reached.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "tests/daemon/model/Scheduler.h"

namespace model {

/// Owner: the test. Threads: the scheduler's; record and line are for the one that is
/// going on.
class Run {
public:
    explicit Run(unsigned seed);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// The run under way.
    static Run& current();

    Scheduler& scheduler() { return m_scheduler; }

    /// Notes an event of the calling actor, without giving way.
    void record(const std::string& event);
    /// Notes a log line, and gives way unless the actor holds a mutex.
    void line(char priority, const std::string& text);
    void reach(const char* oddity) { ++m_oddities[oddity]; }

    const std::vector<std::string>& events() const { return m_events; }
    const std::map<std::string, int>& oddities() const { return m_oddities; }

    /// The object whose mutexes the scheduler takes over; none until it is set.
    void setContext(const void* context, std::size_t size);
    const void* context() const { return m_context; }
    /// Null for a mutex that is none of the context's.
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

/// "CORVANE_MODEL_SEED=<seed> <this program>"
std::string replayCommand(unsigned seed);

}  // namespace model
