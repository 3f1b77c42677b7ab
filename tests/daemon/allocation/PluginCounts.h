// What the plugins of the daemon's scenario tell the program that loads them.
#pragma once

struct PluginCounts {
    int started = 0;
    int jobs = 0;
    int stopped = 0;
};

/// The program's; the plugins bind to it.
extern PluginCounts pluginCounts;
