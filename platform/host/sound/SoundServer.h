// Watches a sound server's default sink, from a thread of the server's client library,
// for as long as the object lives: servers may come, go and return.
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

/// Owner and threads: constructed and destroyed on any thread but the library's own; the
/// destructor waits for what that thread is doing. Errors: std::bad_alloc. A server that
/// can't be reached is none: it is looked for every other second, in silence.
class SoundServer {
public:
    /// `onChange` is called on the library's thread with each sink that takes over from
    /// another as the default one; not with the first.
    SoundServer(std::string address, std::function<void(const pa_sink_info&)> onChange);
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

private:
    bool connect();
    void onState();
    void onServer(const pa_server_info& server);
    void ask();
    void retryLater();

    std::string m_address;
    std::function<void(const pa_sink_info&)> m_onChange;
    std::string m_sink;         // the last default one, maybe of a server that is gone
    bool m_connecting = false;  // no answer from this server yet
    std::unique_ptr<pa_threaded_mainloop, SoundLoopFree> m_loop;
    std::unique_ptr<pa_context, SoundContextUnref> m_context;
    pa_time_event* m_retry = nullptr;
};

}  // namespace corvane::host
