// Follows a sound server's default sink. All work between construction and destruction runs on
// the client library's thread and does not block.
#include "platform/host/sound/SoundServer.h"

#include <dlog.h>

#include <new>
#include <utility>

namespace corvane::host {

namespace {

constexpr pa_usec_t RETRY_USEC = 2 * PA_USEC_PER_SEC;

SoundServer& self(void* data) {
    return *static_cast<SoundServer*>(data);
}

// The library keeps the operation until it has called the callback.
void start(pa_operation* operation) {
    if (operation != nullptr) {
        pa_operation_unref(operation);
    }
}

}  // namespace

SoundServer::SoundServer(std::string address, std::function<void(const pa_sink_info&)> onChange)
    : m_address(std::move(address)),
      m_onChange(std::move(onChange)),
      m_loop(pa_threaded_mainloop_new()) {
    if (m_loop == nullptr || !connect() || pa_threaded_mainloop_start(m_loop.get()) != 0) {
        throw std::bad_alloc();
    }
}

SoundServer::~SoundServer() {
    pa_threaded_mainloop_stop(m_loop.get());
    if (m_retry != nullptr) {
        pa_threaded_mainloop_get_api(m_loop.get())->time_free(m_retry);
    }
    if (m_context != nullptr) {
        pa_context_set_state_callback(m_context.get(), nullptr, nullptr);
        pa_context_disconnect(m_context.get());
    }
}

bool SoundServer::connect() {
    m_context.reset(pa_context_new(pa_threaded_mainloop_get_api(m_loop.get()), "corvaned"));
    if (m_context == nullptr) {
        return false;
    }
    pa_context_set_state_callback(
        m_context.get(), [](pa_context*, void* data) { self(data).onState(); }, this);
    // A failure arrives as a state, too.
    pa_context_connect(m_context.get(), m_address.empty() ? nullptr : m_address.c_str(),
                       PA_CONTEXT_NOAUTOSPAWN, nullptr);
    return true;
}

void SoundServer::onState() {
    const auto state = pa_context_get_state(m_context.get());
    if (state == PA_CONTEXT_FAILED || state == PA_CONTEXT_TERMINATED) {
        retryLater();
    } else if (state == PA_CONTEXT_READY) {
        m_connecting = true;
        const auto onEvent = [](pa_context*, pa_subscription_event_type_t, unsigned, void* data) {
            self(data).queryServer();
        };
        pa_context_set_subscribe_callback(m_context.get(), onEvent, this);
        start(pa_context_subscribe(m_context.get(), PA_SUBSCRIPTION_MASK_SERVER, nullptr, nullptr));
        queryServer();
    }
}

void SoundServer::queryServer() {
    const auto onInfo = [](pa_context*, const pa_server_info* server, void* data) {
        if (server != nullptr) {
            self(data).onServer(*server);
        }
    };
    start(pa_context_get_server_info(m_context.get(), onInfo, this));
}

// Servers signal a change for many reasons, and twice. A server without a sink gives no name,
// or that of a placeholder.
void SoundServer::onServer(const pa_server_info& server) {
    const std::string sink = server.default_sink_name == nullptr ? "" : server.default_sink_name;
    if (sink.empty() || sink[0] == '@') {
        return;
    }
    if (std::exchange(m_connecting, false)) {
        dlog_print(DLOG_PRIORITY_INFO, "SOUND", "there is a sound server, its default sink is %s",
                   sink.c_str());
    }
    if (sink != m_sink && !std::exchange(m_sink, sink).empty()) {
        const auto onInfo = [](pa_context*, const pa_sink_info* info, int, void* data) {
            if (info != nullptr) {
                self(data).m_onChange(*info);
            }
        };
        start(pa_context_get_sink_info_by_name(m_context.get(), sink.c_str(), onInfo, this));
    }
}

void SoundServer::retryLater() {
    if (m_retry != nullptr) {
        return;
    }
    const auto onTime = [](pa_mainloop_api* api, pa_time_event* event, const timeval*, void* data) {
        api->time_free(event);
        self(data).m_retry = nullptr;
        self(data).connect();
    };
    m_retry = pa_context_rttime_new(m_context.get(), pa_rtclock_now() + RETRY_USEC, onTime, this);
}

}  // namespace corvane::host
