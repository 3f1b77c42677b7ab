// Plays the steps of a scenario.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/corvane/events/InjectClient.h"
#include "tools/corvane/play/Scenario.h"

namespace corvane::tool {

/// Owner: the command, on one thread. Errors: those of InjectClient. A failed expectation is
/// reported on the standard error, and the scenario continues.
class Player {
public:
    /// `path` is the daemon's socket. `name` is the name of the scenario in messages.
    Player(const std::string& path, std::string name);

    void play(const std::vector<Step>& steps);

    unsigned expected() const { return m_expected; }
    unsigned failed() const { return m_failed; }

private:
    void play(const EmitStep& step, int line);
    void play(const WaitStep& step, int line);
    void play(const RepeatStep& step, int line);
    void play(const ExpectStep& step, int line);

    void note(const Notice& notice);
    void noteUntil(InjectClient::Limit limit);
    bool holds(const ExpectStep& step);
    bool isDecided(const ExpectStep& step);
    std::string found(const ExpectStep& step);

    const std::string m_name;
    InjectClient m_daemon;
    std::set<std::string> m_isSet;
    std::map<std::string, unsigned> m_called;  // since the last expectation for that event
    unsigned m_expected = 0;
    unsigned m_failed = 0;
};

}  // namespace corvane::tool
