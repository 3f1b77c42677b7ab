// Which of the platform's output routes a sink of the sound server is.
#pragma once

#include <pulse/introspect.h>

#include <vector>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

/// The route of the first pattern that the sink's name matches, else what its properties
/// and its port tell, else the speaker. Any thread.
sound_tv_output_route_e routeOf(const pa_sink_info& sink, const std::vector<SinkRoute>& table);

}  // namespace corvane::host
