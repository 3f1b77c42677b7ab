// One input device that BlueZ made of a remote control.
#include "platform/host/bluetooth/bluez/keys/KeyDevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

namespace corvane::host {

namespace {

constexpr std::string_view suffix = " (AVRCP)";

// Opening other kinds of files may have effects of its own.
bool mayBeOpened(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        return false;
    }
    const auto name = std::filesystem::path(file).filename().string();
    return S_ISCHR(status.st_mode) ? name.starts_with("event") : S_ISFIFO(status.st_mode);
}

// A pipe can stand in for a device; it is named by its file.
std::optional<std::string> deviceName(int fd, const std::string& file) {
    std::array<char, 256> name{};
    if (ioctl(fd, EVIOCGNAME(name.size() - 1), name.data()) >= 0) {
        return name.data();
    }
    struct stat status {};
    if (fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode)) {
        return std::filesystem::path(file).filename().string();
    }
    return std::nullopt;
}

}  // namespace

std::unique_ptr<KeyDevice> KeyDevice::open(const std::string& file, Handlers handlers) {
    if (!mayBeOpened(file)) {
        return nullptr;
    }
    const int fd = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        return nullptr;
    }
    auto name = deviceName(fd, file);
    if (!name || !name->ends_with(suffix)) {
        close(fd);
        return nullptr;
    }
    name->erase(name->size() - suffix.size());
    return std::make_unique<KeyDevice>(fd, std::move(*name), std::move(handlers));
}

KeyDevice::KeyDevice(int fd, std::string remote, Handlers handlers)
    : m_fd(fd),
      m_remote(std::move(remote)),
      m_handlers(std::move(handlers)),
      m_handler(ecore_main_fd_handler_add(
          fd, ECORE_FD_READ,
          [](void* self, Ecore_Fd_Handler*) -> Eina_Bool {
              static_cast<KeyDevice*>(self)->read();
              return ECORE_CALLBACK_RENEW;
          },
          this, nullptr, nullptr)) {
    if (m_handler == nullptr) {
        close(m_fd);
        throw std::bad_alloc();
    }
}

KeyDevice::~KeyDevice() {
    ecore_main_fd_handler_del(m_handler);
    close(m_fd);
}

// One event at a time, so that none is lost if its callback throws.
void KeyDevice::read() {
    input_event event{};
    const auto size = ::read(m_fd, &event, sizeof event);
    if (size == static_cast<ssize_t>(sizeof event)) {
        // A key that is held repeats itself with the value 2.
        if (event.type == EV_KEY && (event.value == 0 || event.value == 1)) {
            m_handlers.onKey(*this, event.code, event.value == 1);
        }
    } else if (size >= 0 || (errno != EAGAIN && errno != EINTR)) {
        const auto onEnd = m_handlers.onEnd;
        onEnd(*this);
    }
}

}  // namespace corvane::host
