// Drives one D-Bus connection from the main loop: input, output and time limits. Each
// wake-up processes a bounded number of messages.
#pragma once

#include <Ecore.h>
#include <systemd/sd-bus.h>

#include <exception>
#include <functional>
#include <memory>

#include "platform/host/main-loop/Descriptor.h"

namespace corvane::host {

struct BusCloser {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using BusPtr = std::unique_ptr<sd_bus, BusCloser>;

/// Owner: the user of the connection. Threads: main thread.
/// Errors: std::bad_alloc. What guard() kept is rethrown into the main loop.
class BusPump {
public:
    /// `bus` has been started; `fd` is a duplicate of its own. `onLost` is called by the main
    /// loop when the connection has ended, and may destroy the pump. `feed`, if it isn't empty,
    /// makes more input for a connection that has processed all it had, or returns false.
    BusPump(BusPtr bus, Descriptor fd, std::function<void()> onLost,
            std::function<bool()> feed = {});
    ~BusPump();
    BusPump(const BusPump&) = delete;
    BusPump& operator=(const BusPump&) = delete;

    sd_bus* bus() const { return m_bus.get(); }
    int fd() const { return m_fd.get(); }

    /// Makes the main loop process what was queued; call it after sd-bus calls made outside a
    /// handler. No handler runs before the main loop does, so no event is lost before its
    /// callback is set.
    void rearm();

    /// Runs the body of a message handler. An exception of the body (a plugin's) must not
    /// unwind sd-bus, which would leave a message half processed: it is kept and rethrown into
    /// the main loop.
    template <typename Body>
    void guard(Body&& body) {
        try {
            body();
        } catch (...) {
            m_kept = std::current_exception();
        }
    }

private:
    void pump();
    void process();
    static Eina_Bool onReady(void* self, Ecore_Fd_Handler* handler);
    static Eina_Bool onTimeout(void* self);

    BusPtr m_bus;
    std::function<void()> m_onLost;
    std::function<bool()> m_feed;
    Descriptor m_fd;  // a duplicate: a connection that ends closes its own at once
    Ecore_Fd_Handler* m_handler = nullptr;
    Ecore_Timer* m_timer = nullptr;
    std::exception_ptr m_kept;
    bool m_processing = false;
    bool m_lost = false;
    bool m_hasMore = false;  // the last wake-up left something to process
};

}  // namespace corvane::host
