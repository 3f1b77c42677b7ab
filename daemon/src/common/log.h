// The daemon's log lines: "<source file>: <function>(<line>) > <message>" under the
// tag QVX in the platform's main log buffer, and the scope tracer that frames
// nearly every operation. Any thread may log; nothing here keeps state.
#pragma once

#include <dlog.h>

#include <string>
#include <utility>

#include "daemon/src/common/ThreadStore.h"

namespace logging {

/// The part of `path` behind its last "/", or all of it. Evaluated at compile time:
/// finding it for each line would cost more than all else a line does.
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
    /// `name` is the traced function's full signature, `line` where it is traced.
    ApiTracker(std::string name, int line) : m_name(std::move(name)), m_line(line) {
        LOGD("IN >> [%s(%d)]", m_name.c_str(), m_line);
    }
    /// The same, with a string that the thread has had before.
    ApiTracker(const char* name, int line) : m_name(nameOf(name)), m_line(line) {
        LOGD("IN >> [%s(%d)]", m_name.c_str(), m_line);
    }
    ~ApiTracker() {
        LOGD("OUT << [%s(%d)]", m_name.c_str(), m_line);
        if (REUSES_MEMORY) {
            ThreadStore::giveString(std::move(m_name));
        }
    }
    ApiTracker(const ApiTracker&) = delete;
    ApiTracker& operator=(const ApiTracker&) = delete;

private:
    static std::string nameOf(const char* name) {
        return REUSES_MEMORY ? ThreadStore::takeString(name) : std::string(name);
    }

    std::string m_name;
    int m_line;
};
