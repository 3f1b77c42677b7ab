// The matrix of what can be wrong with a plugin: how it gets into the plugin directory, what
// happens then, and how the daemon ends. The complete log of each lies in the folder transcripts.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/process/Sandbox.h"

struct PluginFault {
    std::string name;  // also of the transcript, unless that has a name of its own
    std::function<void(Sandbox&)> install;
    std::function<Outcome(Sandbox&)> run;
    int status = 0;  // as of ChildProcess::wait
    std::string transcript = {};
    // Several threads write, whose lines have no order among each other.
    bool byThread = false;

    friend std::ostream& operator<<(std::ostream& out, const PluginFault& fault) {
        return out << fault.name;
    }
};

const std::vector<PluginFault>& pluginFaults();
