// The processes that a check starts, however far down they are.
#pragma once

#include <sys/types.h>

#include <set>

namespace corvane::check {

/// Owner: what starts processes; one object at a time, on one thread. While it lives, processes
/// whose parents have ended become children of this one, also those with a session of their own.
class Descendants {
public:
    Descendants();
    /// As end(), but leaves what can't be ended.
    ~Descendants();
    Descendants(const Descendants&) = delete;
    Descendants& operator=(const Descendants&) = delete;

    /// Kills and collects all children, and their children. Leaves those that this process had
    /// before. Throws CheckError where that fails.
    void end();

private:
    const std::set<pid_t> m_before;
};

}  // namespace corvane::check
