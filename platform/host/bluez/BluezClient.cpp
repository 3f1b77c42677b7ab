// Follows BlueZ on the system bus. Nothing here blocks on an answer, so a bus that hangs does
// not delay the daemon's start.
#include "platform/host/bluez/BluezClient.h"

#include <string>
#include <utility>

#include "platform/host/bluez/reporters/Reporters.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

constexpr double RETRY_DELAY_SEC = 2.0;

// Reads an a{sa{sv}}: the interfaces of one object.
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
    if (!addMatches()) {
        m_peer.attach(nullptr);
        m_pump.reset();
        retryLater();
        return;
    }
    requestObjects();
}

bool BluezClient::addMatches() {
    const auto add = [this](const std::string& rule, sd_bus_message_handler_t handler) {
        return sd_bus_add_match_async(m_pump->bus(), nullptr, ("type='signal'," + rule).c_str(),
                                      handler, nullptr, this) >= 0;
    };
    const std::string manager = "sender='org.bluez',interface='org.freedesktop.DBus.ObjectManager'";
    return add("sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
               "member='NameOwnerChanged',arg0='org.bluez'",
               &onOwnerChanged) &&
           add(manager + ",member='InterfacesAdded'", &onSignal<&BluezClient::onInterfacesAdded>) &&
           add(manager + ",member='InterfacesRemoved'",
               &onSignal<&BluezClient::onInterfacesRemoved>) &&
           add("sender='org.bluez',interface='org.freedesktop.DBus.Properties',"
               "member='PropertiesChanged'",
               &onSignal<&BluezClient::onPropertiesChanged>) &&
           m_agent.exportObject() && m_sockets.exportObjects();
}

void BluezClient::requestObjects() {
    sd_bus_message* request = nullptr;
    sd_bus_slot* slot = nullptr;
    if (sd_bus_message_new_method_call(m_pump->bus(), &request, "org.bluez", "/",
                                       "org.freedesktop.DBus.ObjectManager",
                                       "GetManagedObjects") >= 0) {
        // The system decides whether bluetoothd runs.
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
        m_retry = ecore_timer_add(RETRY_DELAY_SEC, onTimer, this);
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
    m_agent.forgetQuestions();
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
        self->m_agent.forgetQuestions();
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
    // sd-bus keeps the reply's slot until the handler has returned.
    self->m_request.reset();
    if (sd_bus_message_is_method_error(message, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0) {
        return 0;  // NameOwnerChanged will follow when BlueZ starts
    }
    if (sd_bus_message_is_method_error(message, nullptr) != 0) {
        self->retryLater();
        return 0;
    }
    self->m_peer.handle([&] { self->readSnapshot(message); });
    return 0;
}

void BluezClient::readSnapshot(sd_bus_message* objects) {
    const char* const sender = sd_bus_message_get_sender(objects);
    m_peer.setOwner(sender == nullptr ? "" : sender);
    m_agent.registerWithBluez();
    m_sockets.registerWithBluez();
    readDictionary(objects, "oa{sa{sv}}", [&] {
        const auto path = readName(objects, SD_BUS_TYPE_OBJECT_PATH);
        m_objects.addToSnapshot(path, readInterfaces(objects));
    });
    m_objects.finishSnapshot();
}

// Signals sent before the snapshot are already part of it. They arrive while no owner is
// known, so isFromOwner() drops them.
template <BluezClient::Handler handler>
int BluezClient::onSignal(sd_bus_message* message, void* data, sd_bus_error*) {
    auto& self = *static_cast<BluezClient*>(data);
    if (self.m_peer.isFromOwner(message)) {
        self.m_peer.handle([&] { (self.*handler)(message); });
    }
    return 0;
}

void BluezClient::onInterfacesAdded(sd_bus_message* message) {
    const auto path = readName(message, SD_BUS_TYPE_OBJECT_PATH);
    m_objects.add(path, readInterfaces(message));
}

void BluezClient::onInterfacesRemoved(sd_bus_message* message) {
    const auto path = readName(message, SD_BUS_TYPE_OBJECT_PATH);
    m_objects.remove(path, readNames(message));
}

void BluezClient::onPropertiesChanged(sd_bus_message* message) {
    const std::string path = sd_bus_message_get_path(message);
    const auto interface = readName(message, SD_BUS_TYPE_STRING);
    const auto changed = readProperties(message);
    m_objects.change(path, interface, changed, readNames(message));
}

}  // namespace corvane::host
