// The plugin directory, with a trailing slash. Fixed at build time.
#pragma once

#include <string>

static const std::string PLUGIN_PATH = CORVANE_PLUGIN_DIR;
