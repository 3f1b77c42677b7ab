// The C functions of the platform log.
#include <dlog.h>

#include <cstdarg>

#include "platform/host/log/PrintLog.h"

PLATFORM_API int __dlog_print(int, int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int result = corvane::host::printLog(prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}

PLATFORM_API int dlog_print(int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int result = corvane::host::printLog(prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}
