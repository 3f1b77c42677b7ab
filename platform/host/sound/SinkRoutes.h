// Maps a sink of the sound server to one of the platform's output routes.
#pragma once

#include <pulse/introspect.h>

#include <vector>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

/// Returns the route of the first pattern that matches the sink's name, else the route that
/// follows from its properties or its port, else the speaker. Any thread.
sound_tv_output_route_e routeOf(const pa_sink_info& sink, const std::vector<SinkRoute>& table);

}  // namespace corvane::host
