// A connection to the daemon's injection socket.
#include "tools/corvane/events/InjectClient.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/host/inject/InjectLimits.h"
#include "tools/corvane/events/EmitMessage.h"

namespace corvane::tool {

using namespace corvane::host;

namespace {

constexpr const char* OBJECT_PATH = "/org/corvane/Inject";
constexpr const char* INTERFACE_NAME = "org.corvane.Inject1";

struct MessageReleaser {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using MessagePtr = std::unique_ptr<sd_bus_message, MessageReleaser>;

std::string textOf(int error) {
    return std::generic_category().message(error);
}

bool isDisconnect(int result) {
    return result == -ECONNRESET || result == -EPIPE || result == -ENOTCONN;
}

void check(int result, const char* what) {
    if (result < 0) {
        throw std::runtime_error(std::string(what) + ": " + textOf(-result));
    }
}

int connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        throw std::runtime_error(path + " is too long for a socket path");
    }
    path.copy(address.sun_path, path.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0 || connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = errno;
        close(fd);
        throw std::runtime_error("no daemon listens on " + path + " (" + textOf(error) +
                                 ")\nStart one with CORVANE_INJECT_SOCKET=" + path + " corvaned");
    }
    return fd;
}

// Another user may have created a socket at this path.
void requireOwnUser(int fd, const std::string& path) {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.uid != geteuid()) {
        throw std::runtime_error(
            path + " belongs to a process of user " + std::to_string(peer.uid) +
            "; corvane connects only to a daemon of user " + std::to_string(geteuid()));
    }
}

MessagePtr newCall(sd_bus* bus, const char* method) {
    sd_bus_message* made = nullptr;
    check(sd_bus_message_new_method_call(bus, &made, nullptr, OBJECT_PATH, INTERFACE_NAME, method),
          "the message can't be created");
    return MessagePtr(made);
}

MessagePtr call(sd_bus* bus, sd_bus_message* message) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* received = nullptr;
    // No time limit: a callback may take long. If the daemon ends, the call fails.
    const int result = sd_bus_call(bus, message, UINT64_MAX, &error, &received);
    if (isDisconnect(result)) {
        sd_bus_error_free(&error);
        throw std::runtime_error(
            "the daemon closed the connection: it has ended, or the message has more than " +
            std::to_string(limits::MOST_MESSAGE_BYTES) + " bytes");
    }
    if (result < 0) {
        const std::string text = error.message == nullptr ? textOf(-result) : error.message;
        sd_bus_error_free(&error);
        throw std::runtime_error(text);
    }
    return MessagePtr(received);
}

// Milliseconds for poll(), rounded up.
int remaining(InjectClient::Limit limit) {
    if (!limit) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*limit - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60000));
}

}  // namespace

std::string deliveredText(unsigned called) {
    if (called == 0) {
        return "no plugin has subscribed";
    }
    return "delivered to " + std::to_string(called) + (called == 1 ? " callback" : " callbacks");
}

std::string socketPath(const std::string& given) {
    if (!given.empty()) {
        return given;
    }
    if (const char* const path = std::getenv("CORVANE_INJECT_SOCKET")) {
        return path;
    }
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    return std::string(runtime == nullptr ? "/run" : runtime) + "/corvane/inject.sock";
}

InjectClient::InjectClient(const std::string& path) {
    constexpr const char* failure = "the connection can't be set up";
    sd_bus* made = nullptr;
    check(sd_bus_new(&made), failure);
    m_bus.reset(made);
    const int fd = connectTo(path);
    check(sd_bus_set_fd(made, fd, fd), failure);
    requireOwnUser(fd, path);
    check(sd_bus_add_filter(made, nullptr, &InjectClient::onMessage, this), failure);
    int result = sd_bus_start(made);
    while (result >= 0 && sd_bus_is_ready(made) == 0) {
        result = sd_bus_process(made, nullptr);
        result = result == 0 ? sd_bus_wait(made, UINT64_MAX) : result;
    }
    if (isDisconnect(result)) {
        throw std::runtime_error("the daemon on " + path +
                                 " refused the connection: it serves at most " +
                                 std::to_string(limits::MOST_PEERS) + " connections at a time");
    }
    check(result, failure);
}

unsigned InjectClient::emit(const Event& event, const Values& values) {
    const auto message = newCall(m_bus.get(), methodName(event).c_str());
    appendArguments(message.get(), event.arguments, values);
    const auto reply = call(m_bus.get(), message.get());
    std::uint32_t called = 0;
    check(sd_bus_message_read(reply.get(), "u", &called), "the daemon's reply can't be read");
    return called;
}

std::vector<std::string> InjectClient::watch() {
    const auto reply = call(m_bus.get(), newCall(m_bus.get(), "Watch").get());
    std::vector<std::string> events;
    check(sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_ARRAY, "s"),
          "the daemon's reply can't be read");
    const char* event = nullptr;
    while (sd_bus_message_read_basic(reply.get(), SD_BUS_TYPE_STRING, &event) > 0) {
        events.emplace_back(event);
    }
    return events;
}

std::optional<Notice> InjectClient::nextNotice(Limit limit, int stop) {
    while (true) {
        int result = 1;
        while (m_notices.empty() && result > 0) {
            result = sd_bus_process(m_bus.get(), nullptr);
        }
        if (!m_notices.empty()) {
            auto notice = std::move(m_notices.front());
            m_notices.pop_front();
            return notice;
        }
        if (result < 0) {
            throw std::runtime_error("the daemon closed the connection");
        }
        std::array<pollfd, 2> fds{pollfd{sd_bus_get_fd(m_bus.get()),
                                         static_cast<short>(sd_bus_get_events(m_bus.get())), 0},
                                  pollfd{stop, POLLIN, 0}};
        const int ready = poll(fds.data(), fds.size(), remaining(limit));
        const bool isLate = limit && std::chrono::steady_clock::now() >= *limit;
        if (fds[1].revents != 0 || (ready == 0 && isLate)) {
            return std::nullopt;
        }
    }
}

int InjectClient::onMessage(sd_bus_message* message, void* data, sd_bus_error*) {
    const auto isSignal = [&](const char* name) {
        return sd_bus_message_is_signal(message, INTERFACE_NAME, name) > 0;
    };
    auto& notices = static_cast<InjectClient*>(data)->m_notices;
    const char* event = nullptr;
    std::uint32_t called = 0;
    if (isSignal("Delivered")) {
        if (sd_bus_message_read(message, "su", &event, &called) >= 0) {
            notices.push_back({Notice::Change::Delivered, event, called});
        }
    } else if (isSignal("Set") || isSignal("Unset")) {
        if (sd_bus_message_read(message, "s", &event) >= 0) {
            const auto change = isSignal("Set") ? Notice::Change::Set : Notice::Change::Unset;
            notices.push_back({change, event});
        }
    }
    return 0;
}

}  // namespace corvane::tool
