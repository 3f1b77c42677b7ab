// The D-Bus interface org.corvane.Inject1.
#include "InjectInterface.h"

#include "MessageValues.h"
#include "ValueText.h"
#include "Values.h"

#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

namespace corvane::host {

namespace {

int onMethod(sd_bus_message* message, void* client, sd_bus_error* error) {
    return static_cast<InjectClient*>(client)->emit(message, error);
}

// The tools that talk to a bus greet it first; here they find somebody to greet.
int onHello(sd_bus_message* message, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(message, "s", ":1.1");
}

constexpr sd_bus_vtable greeting[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Hello", "", "s", &onHello, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

InjectInterface::Method makeMethod(const Delivery& delivery) {
    const auto* const event = findEvent(delivery.event);
    if (event == nullptr) {
        throw std::logic_error(std::string("there is no event ") + delivery.event);
    }
    InjectInterface::Method method{event, &delivery, methodName(*event), "", ""};
    for (const auto& argument : event->arguments) {
        method.signature += signatureOf(argument.kind);
        method.argumentNames += argument.name;
        method.argumentNames += '\0';
    }
    method.argumentNames += std::string_view("callbacks\0", 10);
    return method;
}

}  // namespace

InjectInterface::InjectInterface(std::span<const Delivery> deliveries) {
    for (const auto& delivery : deliveries) {
        m_methods.push_back(makeMethod(delivery));
    }
    m_vtable.push_back(SD_BUS_VTABLE_START(0));
    for (const auto& method : m_methods) {
        // Only peers of the daemon's own user get as far as this.
        m_vtable.push_back(SD_BUS_METHOD_WITH_NAMES(method.name.c_str(), method.signature.c_str(),
                                                    method.argumentNames.c_str(), "u", , &onMethod,
                                                    SD_BUS_VTABLE_UNPRIVILEGED));
    }
    m_vtable.push_back(SD_BUS_VTABLE_END);
}

const InjectInterface::Method& InjectInterface::method(std::string_view name) const {
    return *std::ranges::find(m_methods, name, &Method::name);
}

InjectClient::InjectClient(BusPtr bus, const InjectInterface& interface,
                           std::function<void()> onLost)
    : m_interface(interface), m_pump(std::move(bus), std::move(onLost)) {
    if (sd_bus_add_object_vtable(m_pump.bus(), nullptr, "/org/corvane/Inject",
                                 "org.corvane.Inject1", interface.vtable(), this) < 0 ||
        sd_bus_add_object_vtable(m_pump.bus(), nullptr, "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", greeting, nullptr) < 0) {
        throw std::runtime_error("the D-Bus interface can't be offered");
    }
    m_pump.rearm();
}

int InjectClient::emit(sd_bus_message* message, sd_bus_error* error) {
    const auto& method = m_interface.method(sd_bus_message_get_member(message));
    try {
        const auto values = readValues(message, *method.event);
        unsigned called = 1;
        m_pump.guard([&] { called = method.delivery->deliver(values); });
        return sd_bus_reply_method_return(message, "u", called);
    } catch (const InvalidValue& invalid) {
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, invalid.what());
    } catch (const std::exception& failure) {
        return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, failure.what());
    }
}

}  // namespace corvane::host
