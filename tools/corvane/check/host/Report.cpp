// What the host tells the command.
#include "Report.h"

#include <cxxabi.h>
#include <fcntl.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <exception>
#include <mutex>
#include <typeinfo>

namespace corvane::check::report {

namespace {

using Json = nlohmann::json;

int pipeEnd = -1;
std::mutex mutex;

void send(const Json& object) {
    const auto line = object.dump(-1, ' ', true, Json::error_handler_t::replace) + '\n';
    const std::lock_guard lock(mutex);
    std::size_t sent = 0;
    while (sent < line.size()) {
        const auto size = write(pipeEnd, line.data() + sent, line.size() - sent);
        if (size <= 0) {
            _exit(EXIT_FAILURE);  // nobody listens any more
        }
        sent += static_cast<std::size_t>(size);
    }
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
    send({{"step", what}, {"thread", gettid()}});
}

void finding(std::string_view id, const std::string& detail) {
    send({{"finding", id}, {"detail", detail}});
}

void fact(std::string_view name, long long value) {
    send({{"fact", name}, {"value", value}});
}

void fact(std::string_view name, const std::string& value) {
    send({{"fact", name}, {"value", value}});
}

void done() {
    send({{"done", true}});
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
        // cppcheck-suppress rethrowNoCurrentException ; there is one, it has a type
        throw;
    } catch (const std::exception& error) {
        text += std::string(": ") + error.what();
    } catch (...) {
        text += ", which isn't derived from std::exception";
    }
    return text;
}

}  // namespace corvane::check::report
