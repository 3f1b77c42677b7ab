// A file descriptor that the main loop reads.
#include "platform/host/bluez/FdReader.h"

#include <unistd.h>

#include <cerrno>
#include <new>
#include <utility>

namespace corvane::host {

FdReader::FdReader(Descriptor fd, std::function<void()> onReadable)
    : m_fd(std::move(fd)),
      m_onReadable(std::move(onReadable)),
      m_handler(ecore_main_fd_handler_add(
          m_fd.get(), ECORE_FD_READ,
          [](void* self, Ecore_Fd_Handler*) -> Eina_Bool {
              static_cast<FdReader*>(self)->m_onReadable();
              return ECORE_CALLBACK_RENEW;
          },
          this, nullptr, nullptr)) {
    if (m_handler == nullptr) {
        throw std::bad_alloc();
    }
}

FdReader::~FdReader() {
    ecore_main_fd_handler_del(m_handler);
}

std::optional<std::size_t> FdReader::read(void* buffer, std::size_t size) {
    const auto count = ::read(m_fd.get(), buffer, size);
    if (count >= 0) {
        return static_cast<std::size_t>(count);
    }
    return errno == EAGAIN || errno == EINTR ? std::nullopt : std::optional<std::size_t>(0);
}

}  // namespace corvane::host
