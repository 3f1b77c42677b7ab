// Where plugins are loaded from, with a trailing slash. Fixed when the daemon is built.
#pragma once

#include <string>

static const std::string PLUGIN_PATH = CORVANE_PLUGIN_DIR;
