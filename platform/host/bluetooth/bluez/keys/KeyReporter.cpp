// The keys of remote controls.
#include "platform/host/bluetooth/bluez/keys/KeyReporter.h"

#include <bluetooth_tv.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/host/bluetooth/bluez/bus/BluezObjects.h"
#include "platform/host/bluetooth/bluez/bus/DeviceRecord.h"
#include "platform/host/bluetooth/bluez/keys/KeyOperations.h"
#include "platform/host/slots/CallbackSlot.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

KeyReporter::KeyReporter(std::string directory, const BluezObjects& objects)
    : m_directory(std::move(directory)), m_objects(objects) {
    watch();
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(m_directory, error)) {
        consider(entry.path().filename());
    }
}

KeyReporter::~KeyReporter() {
    if (m_handler != nullptr) {
        ecore_main_fd_handler_del(m_handler);
    }
    if (m_watch >= 0) {
        close(m_watch);
    }
}

// A device is created first and made readable later.
void KeyReporter::watch() {
    m_watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_watch < 0 ||
        inotify_add_watch(m_watch, m_directory.c_str(), IN_CREATE | IN_MOVED_TO | IN_ATTRIB) < 0) {
        return;
    }
    m_handler = ecore_main_fd_handler_add(
        m_watch, ECORE_FD_READ,
        [](void* self, Ecore_Fd_Handler*) -> Eina_Bool {
            static_cast<KeyReporter*>(self)->readWatch();
            return ECORE_CALLBACK_RENEW;
        },
        this, nullptr, nullptr);
}

void KeyReporter::readWatch() {
    alignas(inotify_event) std::array<char, 4096> buffer;
    const auto size = ::read(m_watch, buffer.data(), buffer.size());
    for (ssize_t at = 0; at < size;) {
        const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + at);
        at += static_cast<ssize_t>(sizeof event + event.len);
        if (event.len > 0) {
            consider(event.name);
        }
    }
}

void KeyReporter::consider(const std::string& name) {
    if (m_devices.contains(name)) {
        return;
    }
    auto device = KeyDevice::open(
        m_directory + '/' + name,
        {[this](KeyDevice& from, int key, bool pressed) { report(from, key, pressed); },
         [this](KeyDevice& ended) { forget(ended); }});
    if (device) {
        m_devices.emplace(name, std::move(device));
    }
}

void KeyReporter::forget(const KeyDevice& device) {
    std::erase_if(m_devices, [&](const auto& entry) { return entry.second.get() == &device; });
}

// Pressing the mute key is all that a remote tells of it: it switches to and fro.
void KeyReporter::report(const KeyDevice& device, int key, bool pressed) {
    const auto operation = operationOfKey(key);
    if (!operation) {
        return;
    }
    const bool isMute = key == KEY_MUTE && pressed;
    const auto address = addressOf(device.remote());
    bool& muted = m_muted[address];
    muted = isMute ? !muted : muted;
    const bool isMuted = muted;
    bt_avrcp_key_event_s event{*operation, pressed ? BT_AVRCP_KEY_PRESSED : BT_AVRCP_KEY_RELEASED};
    slotOf<&bt_avrcp_set_key_event_received_cb>.deliver(&event);
    if (isMute) {
        const LentText lentAddress(address);
        slotOf<&bt_avrcp_set_mute_state_changed_with_address_cb>.deliver(lentAddress.get(),
                                                                         isMuted);
    }
}

// An input device doesn't tell its remote's address: it is found by the name, and of
// several remotes of one name it is the one that is connected. Empty if there is none.
std::string KeyReporter::addressOf(const std::string& remote) const {
    std::string found;
    m_objects.forEach(deviceInterface, [&](const std::string&, const Properties& device) {
        const bool isNamed = propertyOr<std::string>(&device, "Name") == remote ||
                             propertyOr<std::string>(&device, "Alias") == remote;
        if (isNamed && (found.empty() || propertyOr<bool>(&device, "Connected"))) {
            found = propertyOr<std::string>(&device, "Address");
        }
    });
    return found;
}

}  // namespace corvane::host
