// Calls to and from the running BlueZ. The main loop delivers the answers.
#include "platform/host/bluez/bus/BluezPeer.h"

#include <utility>

namespace corvane::host {

namespace {

struct Pending {
    BluezPeer& peer;
    BluezPeer::OnAnswer onAnswer;
};

int onReply(sd_bus_message* answer, void* data, sd_bus_error*) {
    auto& pending = *static_cast<Pending*>(data);
    const bool failed = sd_bus_message_is_method_error(answer, nullptr) != 0;
    pending.peer.handle([&] { pending.onAnswer(failed ? nullptr : answer); });
    return 0;
}

}  // namespace

void BluezPeer::attach(BusPump* pump) {
    m_pump = pump;
    m_owner.clear();
}

BluezMessage BluezPeer::makeCall(const std::string& path, std::string_view interface,
                                 const char* method) const {
    sd_bus_message* call = nullptr;
    if (m_pump == nullptr || m_owner.empty() ||
        sd_bus_message_new_method_call(bus(), &call, m_owner.c_str(), path.c_str(),
                                       std::string(interface).c_str(), method) < 0) {
        return nullptr;
    }
    return BluezMessage(call);
}

void BluezPeer::send(const BluezMessage& call, OnAnswer onAnswer) {
    if (!call) {
        return;
    }
    auto pending = std::make_unique<Pending>(Pending{*this, std::move(onAnswer)});
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_async(bus(), &slot, call.get(), &onReply, pending.get(), 0) < 0) {
        return;
    }
    sd_bus_slot_set_destroy_callback(slot, [](void* data) { delete static_cast<Pending*>(data); });
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
    static_cast<void>(pending.release());  // now owned by the slot
    flush();
}

void BluezPeer::get(const std::string& path, std::string_view interface, const char* property,
                    OnAnswer onAnswer) {
    const auto call = makeCall(path, "org.freedesktop.DBus.Properties", "Get");
    if (call &&
        sd_bus_message_append(call.get(), "ss", std::string(interface).c_str(), property) >= 0) {
        send(call, std::move(onAnswer));
    }
}

void BluezPeer::handle(const std::function<void()>& body) {
    m_pump->guard([&] {
        try {
            body();
        } catch (const MalformedMessage&) {
        }
    });
}

int BluezPeer::serve(sd_bus_message* call, sd_bus_error* error, const std::function<void()>& body) {
    if (!isFromOwner(call)) {
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "only BlueZ may call this");
    }
    handle(body);
    return 1;
}

bool BluezPeer::isFromOwner(sd_bus_message* message) const {
    const char* const sender = sd_bus_message_get_sender(message);
    return sender != nullptr && !m_owner.empty() && m_owner == sender;
}

void BluezPeer::flush() {
    if (m_pump != nullptr) {
        m_pump->rearm();
    }
}

}  // namespace corvane::host
