// The daemon's log lines, "<source file>: <function>(<line>) > <message>" under the tag QVX in the
// platform's main log buffer, and the scope tracer that logs entry and exit of nearly every
// function. Any thread may log; there is no state.
#pragma once

#include <dlog.h>

#include <string>
#include <utility>

namespace logging {

/// Returns the part of `path` after its last "/". Evaluated at compile time, because a search for
/// each line would take longer than the rest of the line.
consteval const char* baseName(const char* path) {
    const char* base = path;
    for (; *path != '\0'; ++path) {
        if (*path == '/') {
            base = path + 1;
        }
    }
    return base;
}

constexpr const char* TAG = "QVX";

}  // namespace logging

#define DAEMON_LOG(tag, priority, format, ...)                                              \
    static_cast<void>(__dlog_print(DLOG_BUFFER_MAIN, priority, tag, "%s: %s(%d) > " format, \
                                   logging::baseName(__FILE__), __FUNCTION__,               \
                                   __LINE__ __VA_OPT__(, ) __VA_ARGS__))

#define LOGD(...) DAEMON_LOG(logging::TAG, DLOG_PRIORITY_DEBUG, __VA_ARGS__)
#define LOGI(...) DAEMON_LOG(logging::TAG, DLOG_PRIORITY_INFO, __VA_ARGS__)
#define LOGE(...) DAEMON_LOG(logging::TAG, DLOG_PRIORITY_ERROR, __VA_ARGS__)

/// Logs entry and exit of the scope it lives in. The first statement of a traced
/// function: `ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);`
class ApiTracker {
public:
    /// `name` is the traced function's full signature, `line` where it is traced. The text is
    /// not copied: it is a literal, or outlives the tracker.
    ApiTracker(const char* name, int line) : m_name(name), m_line(line) {
        LOGD("IN >> [%s(%d)]", m_name, m_line);
    }
    /// The same, with a copy of the name.
    ApiTracker(std::string name, int line)
        : m_copy(std::move(name)), m_name(m_copy.c_str()), m_line(line) {
        LOGD("IN >> [%s(%d)]", m_name, m_line);
    }
    ~ApiTracker() { LOGD("OUT << [%s(%d)]", m_name, m_line); }
    ApiTracker(const ApiTracker&) = delete;
    ApiTracker& operator=(const ApiTracker&) = delete;

private:
    std::string m_copy;
    const char* m_name;
    int m_line;
};
