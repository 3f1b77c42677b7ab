// Maps a sink of the sound server to one of the platform's output routes.
#include "platform/host/sound/SinkRoutes.h"

#include <fnmatch.h>
#include <pulse/proplist.h>

#include <string_view>

namespace corvane::host {

namespace {

std::string_view property(const pa_sink_info& sink, const char* name) {
    const char* const value = pa_proplist_gets(sink.proplist, name);
    return value == nullptr ? "" : value;
}

bool isBluetooth(const pa_sink_info& sink) {
    return property(sink, PA_PROP_DEVICE_BUS) == "bluetooth" ||
           property(sink, PA_PROP_DEVICE_API).starts_with("bluez");
}

sound_tv_output_route_e routeOfPort(const pa_sink_port_info& port) {
    switch (port.type) {
        case PA_DEVICE_PORT_TYPE_BLUETOOTH:
            return SOUND_TV_OUTPUT_ROUTE_BLUETOOTH;
        case PA_DEVICE_PORT_TYPE_HDMI:
            return SOUND_TV_OUTPUT_ROUTE_HDMI;
        case PA_DEVICE_PORT_TYPE_SPDIF:
            return SOUND_TV_OUTPUT_ROUTE_OPTICAL;
        case PA_DEVICE_PORT_TYPE_LINE:
            return SOUND_TV_OUTPUT_ROUTE_LINE_OUT;
        default:
            return std::string_view(port.name).starts_with("hdmi") ? SOUND_TV_OUTPUT_ROUTE_HDMI
                                                                   : SOUND_TV_OUTPUT_ROUTE_SPEAKER;
    }
}

}  // namespace

sound_tv_output_route_e routeOf(const pa_sink_info& sink, const std::vector<SinkRoute>& table) {
    for (const auto& row : table) {
        if (fnmatch(row.pattern.c_str(), sink.name, 0) == 0) {
            return row.route;
        }
    }
    if (isBluetooth(sink)) {
        return SOUND_TV_OUTPUT_ROUTE_BLUETOOTH;
    }
    if (property(sink, PA_PROP_DEVICE_FORM_FACTOR) == "hdmi") {
        return SOUND_TV_OUTPUT_ROUTE_HDMI;
    }
    return sink.active_port == nullptr ? SOUND_TV_OUTPUT_ROUTE_SPEAKER
                                       : routeOfPort(*sink.active_port);
}

}  // namespace corvane::host
