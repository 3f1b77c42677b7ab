// Sends messages to the command.
#include "tools/corvane/check/runner/Report.h"

#include <cxxabi.h>
#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <typeinfo>
#include <utility>

namespace corvane::check::report {

namespace {

using Json = nlohmann::json;

int pipeEnd = -1;
std::mutex mutex;

std::string lineOf(const Json& object) {
    return object.dump(-1, ' ', true, Json::error_handler_t::replace) + '\n';
}

// Writes of up to PIPE_BUF bytes to a pipe are atomic.
void send(const std::string& line) {
    if (write(pipeEnd, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        _exit(EXIT_FAILURE);  // the command has ended
    }
}

// `text` is shortened until the line fits.
void send(Json object, const char* name, std::string text) {
    std::string line;
    do {
        object[name] = text;
        line = lineOf(object);
        text.resize(text.size() / 2);
    } while (line.size() > PIPE_BUF);
    send(line);
}

}  // namespace

void open(int fd) {
    pipeEnd = fd;
    fcntl(fd, F_SETFD, FD_CLOEXEC);
}

int fd() {
    return pipeEnd;
}

void step(const std::string& what) {
    send({{"thread", gettid()}}, "step", what);
}

void finding(std::string_view id, const std::string& detail) {
    constexpr std::size_t maxFindings = 1000;
    // Never destroyed: std::terminate may be called after static objects were destroyed.
    static auto& sent = *new std::set<std::pair<std::string, std::string>>;
    {
        const std::lock_guard lock(mutex);
        if (sent.size() == maxFindings || !sent.emplace(id, detail).second) {
            return;
        }
    }
    send({{"finding", id}}, "detail", detail);
}

void fact(std::string_view name, long long value) {
    send(lineOf({{"fact", name}, {"value", value}}));
}

void fact(std::string_view name, const std::string& value) {
    send({{"fact", name}}, "value", value);
}

void done() {
    send(lineOf({{"done", true}}));
}

std::string currentException() {
    const auto* const type = abi::__cxa_current_exception_type();
    if (type == nullptr) {
        return "no exception";
    }
    int status = 0;
    char* const demangled = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
    std::string text = demangled == nullptr ? type->name() : demangled;
    std::free(demangled);
    try {
        // cppcheck-suppress rethrowNoCurrentException ; its type was found above
        throw;
    } catch (const std::exception& error) {
        text += std::string(": ") + error.what();
    } catch (...) {
        text += ", which isn't derived from std::exception";
    }
    return text;
}

}  // namespace corvane::check::report
