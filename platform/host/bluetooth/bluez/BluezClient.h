// Watches BlueZ on the system bus and reports what happens there to the callbacks.
// Where there is no bus or no BlueZ it waits in silence for either.
#pragma once

#include "BluezObjects.h"
#include "BusPump.h"

#include <Ecore.h>
#include <systemd/sd-bus.h>

#include <memory>

namespace corvane::host {

/// Owner: Product. Threads: main thread, after ecore_init(). Destroying it is silent.
/// Errors: std::bad_alloc; what a callback throws leaves through the main loop.
class BluezClient {
public:
    BluezClient();
    ~BluezClient();
    BluezClient(const BluezClient&) = delete;
    BluezClient& operator=(const BluezClient&) = delete;

private:
    void connect();
    bool watch();
    void requestObjects();
    void connectLater();
    void onLost();

    template <typename Body>
    void handle(Body&& body);

    static int onOwnerChanged(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onObjects(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onInterfacesAdded(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onInterfacesRemoved(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onPropertiesChanged(sd_bus_message* message, void* self, sd_bus_error* error);

    BluezObjects m_objects;
    std::unique_ptr<BusPump> m_pump;
    Ecore_Timer* m_retry = nullptr;
};

}  // namespace corvane::host
