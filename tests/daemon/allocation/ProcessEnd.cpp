#include "tests/daemon/allocation/ProcessEnd.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>

#include <array>
#include <cstddef>
#include <cstdlib>

namespace {

constexpr int MOST_FRAMES = 100;

// Returns the name of the function that made the call. If the call is the function's last
// instruction, the return address already belongs to the next function, hence the - 1.
std::string functionOf(void* returnAddress) {
    Dl_info info{};
    if (dladdr(static_cast<char*>(returnAddress) - 1, &info) == 0 || info.dli_sname == nullptr) {
        return "";
    }
    int status = 0;
    char* const demangled = abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status);
    const std::string name = demangled == nullptr ? info.dli_sname : demangled;
    std::free(demangled);
    return name;
}

/// Returns "Class" for "Class::<member>", otherwise an empty string.
std::string classOf(const std::string& function, const std::string& member) {
    const std::size_t at = function.find("::" + member);
    return at == std::string::npos || function.starts_with("std::") ? "" : function.substr(0, at);
}

}  // namespace

void prepareBacktraces() {
    void* frame;
    backtrace(&frame, 1);
}

std::string innermostDestructor() {
    std::array<void*, MOST_FRAMES> frames;
    const int count = backtrace(frames.data(), MOST_FRAMES);
    std::string all;
    for (int i = 0; i < count; ++i) {
        const std::string function = functionOf(frames[static_cast<std::size_t>(i)]);
        for (const char* member : {"~", "operator delete("}) {
            if (const std::string name = classOf(function, member); !name.empty()) {
                return "~" + name;
            }
        }
        // Unwinding may have left main already; expectToSurvive is its caller.
        if (function.starts_with("daemonMain(") || function.starts_with("expectToSurvive(")) {
            return "main";
        }
        all += function + "; ";
    }
    return all;
}
