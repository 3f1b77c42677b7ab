// Follows a sound server's default sink, on a thread of the server's client library. The
// server may start, end and restart at any time.
#pragma once

#include <pulse/pulseaudio.h>

#include <functional>
#include <memory>
#include <string>

namespace corvane::host {

struct SoundLoopFree {
    void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
};
struct SoundContextUnref {
    void operator()(pa_context* context) const { pa_context_unref(context); }
};

/// Owner: SpeakerEvents.cpp. Threads: constructed and destroyed on any thread but the library's
/// own; the destructor waits until that thread is idle. Errors: std::bad_alloc. While there is no
/// server, it tries to connect every two seconds and logs nothing.
class SoundServer {
public:
    /// `onChange` is called on the library's thread with each new default sink, except the
    /// first one.
    SoundServer(std::string address, std::function<void(const pa_sink_info&)> onChange);
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

private:
    bool connect();
    void onState();
    void onServer(const pa_server_info& server);
    void queryServer();
    void retryLater();

    std::string m_address;
    std::function<void(const pa_sink_info&)> m_onChange;
    std::string m_sink;         // the last default sink, perhaps of a server that has ended
    bool m_connecting = false;  // this server has not answered yet
    std::unique_ptr<pa_threaded_mainloop, SoundLoopFree> m_loop;
    std::unique_ptr<pa_context, SoundContextUnref> m_context;
    pa_time_event* m_retry = nullptr;
};

}  // namespace corvane::host
