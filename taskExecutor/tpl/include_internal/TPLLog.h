// The task library's log lines, "<source file> : <function>(<line>)  <message>" under its own tag,
// and its scope tracer. Any thread.
#pragma once

#include <dlog.h>

#include "daemon/src/common/log.h"

namespace TPL {

constexpr const char* TAG = "QVX_TPL_CONTEXT";

/// Logs entry and exit of an operation on `object`. The formats of the two lines differ in the
/// blank before ">".
class CCallTrace {
public:
    CCallTrace(const char* file, const char* function, int line, const void* object)
        : m_file(file), m_function(function), m_line(line), m_object(object) {
        dlog_print(DLOG_PRIORITY_DEBUG, TAG, "%s : %s(%d) [%p] > Entered\n", m_file, m_function,
                   m_line, m_object);
    }
    ~CCallTrace() {
        dlog_print(DLOG_PRIORITY_DEBUG, TAG, "%s : %s(%d) [%p]> Left\n", m_file, m_function, m_line,
                   m_object);
    }
    CCallTrace(const CCallTrace&) = delete;
    CCallTrace& operator=(const CCallTrace&) = delete;

private:
    const char* m_file;
    const char* m_function;
    int m_line;
    const void* m_object;
};

}  // namespace TPL

#define TPLCALLTRACE(function) \
    TPL::CCallTrace tplCallTrace(logging::baseName(__FILE__), function, __LINE__, this)

#define TPL_LOG_AS(function, priority, message, ...)                               \
    static_cast<void>(dlog_print(priority, TPL::TAG, "%s : %s(%d)  " message "\n", \
                                 logging::baseName(__FILE__), function,            \
                                 __LINE__ __VA_OPT__(, ) __VA_ARGS__))
#define TPLLOGD(...) TPL_LOG_AS(__FUNCTION__, DLOG_PRIORITY_DEBUG, __VA_ARGS__)
#define TPLLOGE(...) TPL_LOG_AS(__FUNCTION__, DLOG_PRIORITY_ERROR, __VA_ARGS__)
