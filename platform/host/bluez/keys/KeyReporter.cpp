// The keys of remote controls (AVRCP), read from the input devices that BlueZ makes.
#include "platform/host/bluez/keys/KeyReporter.h"

#include <bluetooth_tv.h>
#include <fcntl.h>
#include <linux/input.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/host/bluez/bus/BluezObjects.h"
#include "platform/host/bluez/keys/KeyOperations.h"
#include "platform/host/slots/CallbackSlot.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

namespace {

constexpr std::string_view DEVICE_SUFFIX = " (AVRCP)";

// Other kinds of files are not opened: opening them may have side effects. A named pipe can
// replace a device.
bool mayBeOpened(const std::string& path, const std::string& file) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 &&
           (S_ISCHR(status.st_mode) ? file.starts_with("event") : S_ISFIFO(status.st_mode));
}

// A pipe has the name of its file.
std::string deviceName(int fd, const std::string& file) {
    std::array<char, 256> name{};
    if (ioctl(fd, EVIOCGNAME(name.size() - 1), name.data()) >= 0) {
        return name.data();
    }
    struct stat status {};
    return fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode) ? file : "";
}

}  // namespace

KeyReporter::KeyReporter(std::string directory, const BluezObjects& objects)
    : m_directory(std::move(directory)), m_objects(objects) {
    watchDirectory();
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(m_directory, error)) {
        openDevice(entry.path().filename());
    }
}

// IN_ATTRIB: a device is created first and made readable later.
void KeyReporter::watchDirectory() {
    Descriptor fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (fd.get() >= 0 && inotify_add_watch(fd.get(), m_directory.c_str(),
                                           IN_CREATE | IN_MOVED_TO | IN_ATTRIB) >= 0) {
        m_watch.emplace(std::move(fd), [this] { readWatch(); });
    }
}

void KeyReporter::readWatch() {
    alignas(inotify_event) std::array<char, 4096> buffer;
    const auto size = m_watch->read(buffer.data(), buffer.size()).value_or(0);
    for (std::size_t at = 0; at < size;) {
        const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + at);
        at += sizeof event + event.len;
        if (event.len > 0) {
            openDevice(event.name);
        }
    }
}

void KeyReporter::openDevice(const std::string& file) {
    const auto path = m_directory + '/' + file;
    if (m_devices.contains(file) || !mayBeOpened(path, file)) {
        return;
    }
    Descriptor fd(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    auto name = fd.get() < 0 ? "" : deviceName(fd.get(), file);
    if (name.ends_with(DEVICE_SUFFIX)) {
        name.erase(name.size() - DEVICE_SUFFIX.size());
        m_devices.try_emplace(file, std::move(name), std::move(fd),
                              [this, file] { readDevice(file); });
    }
}

// Reads one event at a time, so that none is lost if its callback throws.
void KeyReporter::readDevice(const std::string& file) {
    auto& device = m_devices.at(file);
    input_event event{};
    const auto size = device.reader.read(&event, sizeof event);
    if (size == sizeof event) {
        // A key that is held down repeats with the value 2.
        if (event.type == EV_KEY && (event.value == 0 || event.value == 1)) {
            report(device.remote, event.code, event.value == 1);
        }
    } else if (size.has_value()) {
        // `file` belongs to the device: it has to outlive the search for it.
        const auto ended = m_devices.extract(file);
    }
}

// A remote control sends only the press of its mute key, so each press toggles the state.
void KeyReporter::report(const std::string& remote, int key, bool pressed) {
    const auto operation = operationOfKey(key);
    if (!operation) {
        return;
    }
    const bool isMute = key == KEY_MUTE && pressed;
    const auto address = addressOf(remote);
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

// An input device has only the name of its remote control. If several devices have that name,
// the address is that of a connected one; if none has it, the address is empty.
std::string KeyReporter::addressOf(const std::string& remote) const {
    std::string found;
    m_objects.forEach(DEVICE_INTERFACE, [&](const std::string&, const Properties& device) {
        const bool isNamed = propertyOr<std::string>(&device, "Name") == remote ||
                             propertyOr<std::string>(&device, "Alias") == remote;
        if (isNamed && (found.empty() || propertyOr<bool>(&device, "Connected"))) {
            found = propertyOr<std::string>(&device, "Address");
        }
    });
    return found;
}

}  // namespace corvane::host
