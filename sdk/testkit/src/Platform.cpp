// Implements the platform's log and system information with the recorder, and the functions that
// the host platform's callbacks need. Only the test delivers events here.
#include <dlog.h>
#include <system_info.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "daemon/src/common/log.h"
#include "platform/host/PlatformApi.h"
#include "platform/host/libraries/Product.h"
#include "platform/host/slots/SlowWatch.h"
#include "platform/host/sound/SpeakerEvents.h"
#include "sdk/testkit/src/Recorder.h"
#include "taskExecutor/tpl/include_internal/TPLLog.h"

namespace corvane::host {

int startProduct() {
    return 0;
}
int stopProduct() {
    return 0;
}
void followSpeakerCallback() noexcept {}
// A test decides itself which duration is too long.
void reportIfSlow(const char*, const char*, std::chrono::steady_clock::duration) {}

}  // namespace corvane::host

namespace {

using corvane::testkit::Recorder;

int print(int priority, const char* tag, const char* format, va_list arguments) noexcept {
    if (format == nullptr) {
        return -EINVAL;
    }
    const std::string_view whose = tag == nullptr ? "" : tag;
    if (whose == logging::TAG || whose == TPL::TAG) {
        return 0;  // a line of the daemon itself, of which each event causes many
    }
    try {
        const int errorBefore = errno;  // logging must not change it
        va_list again;
        va_copy(again, arguments);
        const int size = std::vsnprintf(nullptr, 0, format, arguments);
        std::string text(size < 0 ? 0 : static_cast<std::size_t>(size), '\0');
        errno = errorBefore;
        std::vsnprintf(text.data(), text.size() + 1, format, again);
        va_end(again);
        if (size >= 0) {
            Recorder::instance().add({priority, std::string(whose), std::move(text)});
        }
        errno = errorBefore;
        return size < 0 ? -EINVAL : size;
    } catch (const std::exception&) {
        return -ENOMEM;
    }
}

}  // namespace

PLATFORM_API int __dlog_print(int, int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int result = print(prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}

PLATFORM_API int dlog_print(int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int result = print(prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}

PLATFORM_API int system_info_get_custom_int(const char* key, int* value) {
    if (key == nullptr || value == nullptr) {
        return -EINVAL;
    }
    try {
        const auto found = Recorder::instance().systemInformation(key);
        if (!found) {
            return -ENOENT;
        }
        *value = *found;
        return 0;
    } catch (const std::exception&) {
        return -ENOMEM;
    }
}
