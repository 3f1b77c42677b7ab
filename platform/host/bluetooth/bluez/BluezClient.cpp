// Watches BlueZ on the system bus. Nothing here waits for an answer: the daemon
// starts at the same speed with a bus that hangs as with none.
#include "BluezClient.h"

#include "Properties.h"

#include <string>
#include <utility>

namespace corvane::host {

namespace {

constexpr double retryDelaySec = 2.0;

// Reads the a{sa{sv}} that comes next: the interfaces of one object.
template <typename Use>
void readInterfaces(sd_bus_message* message, Use use) {
    readDictionary(message, "sa{sv}", [&] {
        const auto interface = readName(message, SD_BUS_TYPE_STRING);
        use(interface, readProperties(message));
    });
}

}  // namespace

BluezClient::BluezClient() {
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
        connectLater();
        return;
    }
    m_pump = std::make_unique<BusPump>(BusPtr(bus), [this] { onLost(); });
    if (!watch()) {
        m_pump.reset();
        connectLater();
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
               &onPropertiesChanged);
}

void BluezClient::requestObjects() {
    sd_bus_message* request = nullptr;
    if (sd_bus_message_new_method_call(m_pump->bus(), &request, "org.bluez", "/",
                                       "org.freedesktop.DBus.ObjectManager",
                                       "GetManagedObjects") >= 0) {
        // Whether bluetoothd runs is the system's decision.
        sd_bus_message_set_auto_start(request, 0);
        sd_bus_call_async(m_pump->bus(), nullptr, request, &onObjects, this, 0);
        sd_bus_message_unref(request);
    }
    m_pump->rearm();
}

void BluezClient::connectLater() {
    const auto retry = [](void* data) -> Eina_Bool {
        auto* const client = static_cast<BluezClient*>(data);
        client->m_retry = nullptr;
        client->connect();
        return ECORE_CALLBACK_CANCEL;
    };
    m_retry = ecore_timer_add(retryDelaySec, retry, this);
}

void BluezClient::onLost() {
    m_pump.reset();
    connectLater();
    m_objects.removeAll();
}

// A message that isn't what it should be is dropped.
template <typename Body>
void BluezClient::handle(Body&& body) {
    m_pump->guard([&] {
        try {
            body();
        } catch (const MalformedMessage&) {
        }
    });
}

int BluezClient::onOwnerChanged(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    self->handle([&] {
        readName(message, SD_BUS_TYPE_STRING);
        const auto before = readName(message, SD_BUS_TYPE_STRING);
        const auto now = readName(message, SD_BUS_TYPE_STRING);
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
    if (sd_bus_message_is_method_error(message, nullptr) != 0) {
        return 0;
    }
    self->handle([&] {
        readDictionary(message, "oa{sa{sv}}", [&] {
            const auto path = readName(message, SD_BUS_TYPE_OBJECT_PATH);
            readInterfaces(message, [&](const std::string& interface, Properties properties) {
                self->m_objects.learn(path, interface, std::move(properties));
            });
        });
        self->m_objects.reportAdapterState();
    });
    return 0;
}

int BluezClient::onInterfacesAdded(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    self->handle([&] {
        const auto path = readName(message, SD_BUS_TYPE_OBJECT_PATH);
        readInterfaces(message, [&](const std::string& interface, Properties properties) {
            self->m_objects.add(path, interface, std::move(properties));
        });
    });
    return 0;
}

int BluezClient::onInterfacesRemoved(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    self->handle([&] {
        const auto path = readName(message, SD_BUS_TYPE_OBJECT_PATH);
        for (const auto& interface : readNames(message)) {
            self->m_objects.remove(path, interface);
        }
    });
    return 0;
}

int BluezClient::onPropertiesChanged(sd_bus_message* message, void* data, sd_bus_error*) {
    auto* const self = static_cast<BluezClient*>(data);
    self->handle([&] {
        const std::string path = sd_bus_message_get_path(message);
        const auto interface = readName(message, SD_BUS_TYPE_STRING);
        const auto changed = readProperties(message);
        self->m_objects.change(path, interface, changed, readNames(message));
    });
    return 0;
}

}  // namespace corvane::host
