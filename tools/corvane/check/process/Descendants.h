// Ends all descendant processes of a check.
#pragma once

#include <sys/types.h>

#include <set>

namespace corvane::check {

/// Owner: PluginProcess; one object at a time, on one thread. While the object lives, this process
/// is a subreaper: orphaned descendants become its children, also those in another session.
class Descendants {
public:
    Descendants();
    /// Calls end() and ignores its error.
    ~Descendants();
    Descendants(const Descendants&) = delete;
    Descendants& operator=(const Descendants&) = delete;

    /// Kills and reaps all descendants, except the children that this process had before. Throws
    /// CheckError if that fails.
    void end();

private:
    const std::set<pid_t> m_before;
};

}  // namespace corvane::check
