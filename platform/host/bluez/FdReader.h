// A file descriptor that the main loop reads.
#pragma once

#include <Ecore.h>

#include <cstddef>
#include <functional>
#include <optional>

#include "platform/host/main-loop/Descriptor.h"

namespace corvane::host {

/// Owner: the user of the descriptor. Threads: main thread. Errors: std::bad_alloc; what
/// `onReadable` throws leaves through the main loop. Destroying it closes the descriptor.
class FdReader {
public:
    /// The main loop calls `onReadable` when there is something to read, or nothing more will
    /// come. It may destroy this object as its last step.
    FdReader(Descriptor fd, std::function<void()> onReadable);
    ~FdReader();
    FdReader(const FdReader&) = delete;
    FdReader& operator=(const FdReader&) = delete;

    int fd() const { return m_fd.get(); }

    /// Returns the number of bytes read, 0 at the end or after an error, or nothing if there
    /// is nothing to read yet. The descriptor does not block.
    std::optional<std::size_t> read(void* buffer, std::size_t size);

private:
    Descriptor m_fd;
    std::function<void()> m_onReadable;
    Ecore_Fd_Handler* m_handler;
};

}  // namespace corvane::host
