// Follows BlueZ on the system bus. While there is no bus or no BlueZ, it waits for them
// without a log line.
#pragma once

#include <Ecore.h>
#include <systemd/sd-bus.h>

#include <memory>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/bus/BluezPeer.h"
#include "platform/host/bluez/exports/BluezAgent.h"
#include "platform/host/bluez/exports/ProfileSockets.h"
#include "platform/host/bluez/keys/KeyReporter.h"
#include "platform/host/main-loop/BusPump.h"

namespace corvane::host {

struct SlotReleaser {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

/// Owner: Product. Threads: main thread, after ecore_init(). Destroying it makes no event.
/// Errors: std::bad_alloc; what a callback throws leaves through the main loop.
class BluezClient {
public:
    BluezClient();
    ~BluezClient();
    BluezClient(const BluezClient&) = delete;
    BluezClient& operator=(const BluezClient&) = delete;

private:
    void connect();
    bool addMatches();
    void requestObjects();
    void retryLater();
    void retry();
    void onLost();
    void readSnapshot(sd_bus_message* objects);

    static int onOwnerChanged(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onObjects(sd_bus_message* message, void* self, sd_bus_error* error);

    using Handler = void (BluezClient::*)(sd_bus_message* signal);
    template <Handler handler>
    static int onSignal(sd_bus_message* message, void* self, sd_bus_error* error);
    void onInterfacesAdded(sd_bus_message* signal);
    void onInterfacesRemoved(sd_bus_message* signal);
    void onPropertiesChanged(sd_bus_message* signal);

    BluezPeer m_peer;
    BluezObjects m_objects;
    BluezAgent m_agent;
    ProfileSockets m_sockets;
    KeyReporter m_keys;
    std::unique_ptr<BusPump> m_pump;
    std::unique_ptr<sd_bus_slot, SlotReleaser> m_request;  // GetManagedObjects; null once answered
    Ecore_Timer* m_retry = nullptr;
};

}  // namespace corvane::host
