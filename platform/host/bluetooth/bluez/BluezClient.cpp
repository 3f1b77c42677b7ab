// Watches BlueZ on the system bus. Nothing here waits for an answer: the daemon
// starts at the same speed with a bus that hangs as with none.
#include "platform/host/bluetooth/bluez/BluezClient.h"

#include <string>
#include <utility>

#include "platform/host/bluetooth/bluez/reporters/Reporters.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

constexpr double retryDelaySec = 2.0;

// Reads the a{sa{sv}} that comes next: the interfaces of one object.
BluezObjects::Interfaces readInterfaces(sd_bus_message* message) {
    BluezObjects::Interfaces interfaces;
    readDictionary(message, "sa{sv}", [&] {
        auto name = readName(message, SD_BUS_TYPE_STRING);
        interfaces.insert_or_assign(std::move(name), readProperties(message));
    });
    return interfaces;
}

}  // namespace

BluezClient::BluezClient()
    : m_agent(settings().bluez, m_objects, m_peer),
      m_sockets(settings().bluez, m_objects, m_peer),
      m_keys(settings().bluez.inputDirectory, m_objects) {
    // The order in which the events of one change are delivered.
    m_objects.addReporter(makeAdapterReporter());
    m_objects.addReporter(makeDiscoveryReporter());
    m_objects.addReporter(makeDeviceReporter(m_objects, m_peer));
    m_objects.addReporter(makeBondReporter(m_peer));
    m_objects.addReporter(makeGattReporter());
    m_objects.addReporter(makeHidReporter());
    m_objects.addReporter(makeRemoteControlReporter());
    m_objects.addReporter(makeAudioReporter());
    m_objects.addReporter(makeVolumeReporter());
    m_objects.addReporter(makeBatteryReporter());
    connect();
}

BluezClient::~BluezClient() {
    if (m_retry != nullptr) {
        ecore_timer_del(m_retry);
    }
}

void BluezClient::connect() {
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) < 0) {
        retryLater();
        return;
    }
    m_pump = std::make_unique<BusPump>(BusPtr(bus), Descriptor::duplicate(sd_bus_get_fd(bus)),
                                       [this] { onLost(); });
    m_peer.attach(m_pump.get());
    if (!watch()) {
        m_peer.attach(nullptr);
        m_pump.reset();
        retryLater();
        return;
    }
    requestObjects();
}

bool BluezClient::watch() {
    const auto add = [this](const std::string& rule, sd_bus_message_handler_t handler) {
        return sd_bus_add_match_async(m_pump->bus(), nullptr, ("type='signal'," + rule).c_str(),
                                      handler, nullptr, this) >= 0;
    };
    const std::string manager = "sender='org.bluez',interface='org.freedesktop.DBus.ObjectManager'";
    return add("sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
               "member='NameOwnerChanged',arg0='org.bluez'",
               &onOwnerChanged) &&
           add(manager + ",member='InterfacesAdded'", &onInterfacesAdded) &&
           add(manager + ",member='InterfacesRemoved'", &onInterfacesRemoved) &&
           add("sender='org.bluez',interface='org.freedesktop.DBus.Properties',"
               "member='PropertiesChanged'",
               &onPropertiesChanged) &&
           m_agent.offer() && m_sockets.offer();
}

void BluezClient::requestObjects() {
    sd_bus_message* request = nullptr;
    sd_bus_slot* slot = nullptr;
    if (sd_bus_message_new_method_call(m_pump->bus(), &request, "org.bluez", "/",
                                       "org.freedesktop.DBus.ObjectManager",
                                       "GetManagedObjects") >= 0) {
        // Whether bluetoothd runs is the system's decision.
        sd_bus_message_set_auto_start(request, 0);
        sd_bus_call_async(m_pump->bus(), &slot, request, &onObjects, this, 0);
        sd_bus_message_unref(request);
    }
    m_request.reset(slot);
    m_peer.flush();
}

void BluezClient::retryLater() {
    const auto onTimer = [](void* data) -> Eina_Bool {
        auto* const client = static_cast<BluezClient*>(data);
        client->m_retry = nullptr;
        client->retry();
        return ECORE_CALLBACK_CANCEL;
    };
    if (m_retry == nullptr) {
        m_retry = ecore_timer_add(retryDelaySec, onTimer, this);
    }
}

void BluezClient::retry() {
    if (!m_pump) {
        connect();
    } else if (m_peer.owner().empty()) {
        requestObjects();
    }
}

void BluezClient::onLost() {
    m_peer.attach(nullptr);
    m_agent.forget();
    m_request.reset();
    m_pump.reset();
    retryLater();
    m_objects.removeAll();
}

int BluezClient::onOwnerChanged(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    self->m_peer.handle([&] {
        readName(message, SD_BUS_TYPE_STRING);
        const auto before = readName(message, SD_BUS_TYPE_STRING);
        const auto now = readName(message, SD_BUS_TYPE_STRING);
        self->m_peer.setOwner("");
        self->m_agent.forget();
        self->m_request.reset();
        if (!now.empty()) {
            self->requestObjects();
        }
        if (!before.empty()) {
            self->m_objects.removeAll();
        }
    });
    return 0;
}

int BluezClient::onObjects(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    // The reply's own slot is kept until the handler has returned.
    self->m_request.reset();
    if (sd_bus_message_is_method_error(message, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0) {
        return 0;  // its start will be told
    }
    if (sd_bus_message_is_method_error(message, nullptr) != 0) {
        self->retryLater();
        return 0;
    }
    self->m_peer.handle([&] { self->learn(message); });
    return 0;
}

void BluezClient::learn(sd_bus_message* objects) {
    const char* const sender = sd_bus_message_get_sender(objects);
    m_peer.setOwner(sender == nullptr ? "" : sender);
    m_agent.enroll();
    m_sockets.enroll();
    readDictionary(objects, "oa{sa{sv}}", [&] {
        const auto path = readName(objects, SD_BUS_TYPE_OBJECT_PATH);
        m_objects.learn(path, readInterfaces(objects));
    });
    m_objects.learnt();
}

// Signals from before the snapshot are in it already: they come before there is an owner.
int BluezClient::onInterfacesAdded(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    if (!self->m_peer.isFromOwner(message)) {
        return 0;
    }
    self->m_peer.handle([&] {
        const auto path = readName(message, SD_BUS_TYPE_OBJECT_PATH);
        self->m_objects.add(path, readInterfaces(message));
    });
    return 0;
}

int BluezClient::onInterfacesRemoved(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    if (!self->m_peer.isFromOwner(message)) {
        return 0;
    }
    self->m_peer.handle([&] {
        const auto path = readName(message, SD_BUS_TYPE_OBJECT_PATH);
        self->m_objects.remove(path, readNames(message));
    });
    return 0;
}

int BluezClient::onPropertiesChanged(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    if (!self->m_peer.isFromOwner(message)) {
        return 0;
    }
    self->m_peer.handle([&] {
        const std::string path = sd_bus_message_get_path(message);
        const auto interface = readName(message, SD_BUS_TYPE_STRING);
        const auto changed = readProperties(message);
        self->m_objects.change(path, interface, changed, readNames(message));
    });
    return 0;
}

}  // namespace corvane::host
