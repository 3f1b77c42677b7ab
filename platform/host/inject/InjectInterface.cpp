// The D-Bus interface org.corvane.Inject1.
#include "platform/host/inject/InjectInterface.h"

#include <algorithm>

namespace corvane::host {

namespace {

InjectInterface::Method makeMethod(const Event& event) {
    InjectInterface::Method method{&event, methodName(event), "", ""};
    for (const auto& argument : event.arguments) {
        method.signature += signatureOf(argument.kind);
        method.argumentNames += argument.name;
        method.argumentNames += '\0';
    }
    method.argumentNames += std::string_view("callbacks\0", 10);
    return method;
}

}  // namespace

InjectInterface::InjectInterface(sd_bus_message_handler_t onEvent,
                                 sd_bus_message_handler_t onWatch) {
    for (const auto& event : allEvents()) {
        m_methods.push_back(makeMethod(event));
    }
    m_vtable.push_back(SD_BUS_VTABLE_START(0));
    for (const auto& method : m_methods) {
        // Peers of other users are refused before.
        m_vtable.push_back(SD_BUS_METHOD_WITH_NAMES(method.name.c_str(), method.signature.c_str(),
                                                    method.argumentNames.c_str(), "u", , onEvent,
                                                    SD_BUS_VTABLE_UNPRIVILEGED));
    }
    m_vtable.push_back(SD_BUS_METHOD_WITH_NAMES("Watch", "", , "as", SD_BUS_PARAM(events), onWatch,
                                                SD_BUS_VTABLE_UNPRIVILEGED));
    m_vtable.push_back(SD_BUS_SIGNAL_WITH_NAMES("Set", "s", SD_BUS_PARAM(event), 0));
    m_vtable.push_back(SD_BUS_SIGNAL_WITH_NAMES("Unset", "s", SD_BUS_PARAM(event), 0));
    m_vtable.push_back(SD_BUS_SIGNAL_WITH_NAMES("Delivered", "su",
                                                SD_BUS_PARAM(event) SD_BUS_PARAM(callbacks), 0));
    m_vtable.push_back(SD_BUS_VTABLE_END);
}

const InjectInterface::Method& InjectInterface::method(std::string_view name) const {
    return *std::ranges::find(m_methods, name, &Method::name);
}

}  // namespace corvane::host
