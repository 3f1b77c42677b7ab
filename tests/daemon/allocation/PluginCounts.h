// Counters through which the plugins of the daemon's scenario report to the test program.
#pragma once

struct PluginCounts {
    int started = 0;
    int jobs = 0;
    int stopped = 0;
};

/// Defined by the test program; the plugins link to it when they are loaded.
extern PluginCounts pluginCounts;
