// The table of plugin faults: how the faulty plugin is installed, what the test does with the
// daemon, and how the daemon ends. The folder transcripts contains the complete log of each case.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/process/Sandbox.h"

struct PluginFault {
    std::string name;  // also names the transcript if `transcript` is empty
    std::function<void(Sandbox&)> install;
    std::function<Outcome(Sandbox&)> run;
    int status = 0;  // as returned by ChildProcess::wait
    std::string transcript = {};
    // Several threads log at the same time, so the transcript is ordered by thread.
    bool byThread = false;

    friend std::ostream& operator<<(std::ostream& out, const PluginFault& fault) {
        return out << fault.name;
    }
};

const std::vector<PluginFault>& pluginFaults();
