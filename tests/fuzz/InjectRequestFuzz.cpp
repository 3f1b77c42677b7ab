// Fuzzes the bytes that a peer sends to the injection socket. The server must answer the requests
// that it can read, each answer must report the event's actual result, and the server must serve
// the next peer.
#include <Ecore.h>
#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <tuple>

#include "platform/host/events/EventTable.h"
#include "tests/fuzz/Input.h"
#include "tests/support/DBusWire.h"
#include "tests/support/SampleArguments.h"

namespace fs = std::filesystem;

namespace {

using corvane::host::allEvents;

/// A callback for each kind of event. It reads all bytes of its arguments.
template <typename Function>
struct Reader;
template <typename... All>
struct Reader<void (*)(All...)> {
    static void read(All... all) {
        const auto arguments = std::tie(all...);
        [&arguments]<std::size_t... Index>(std::index_sequence<Index...>) {
            std::string text;
            ((text += describe(std::get<Index>(arguments))), ...);
            auto* calls = static_cast<unsigned*>(std::get<sizeof...(All) - 1>(arguments));
            *calls += 1;
        }
        (std::make_index_sequence<sizeof...(All) - 1>{});
    }
};

/// The host platform with its injection server. It exists as long as the process.
class Platform {
public:
    unsigned calls = 0;

    Platform() {
        auto path = (fs::temp_directory_path() / "corvane-fuzz-XXXXXX").string();
        REQUIRE(mkdtemp(path.data()) != nullptr);
        m_directory = path;
        setenv("ECORE_NO_SYSTEM_MODULES", "1", 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path + "/no-bus").c_str(), 1);
        setenv("CORVANE_PLATFORM_CONF", "/dev/null", 1);
        setenv("CORVANE_LOG_LEVEL", "error", 1);
        setenv("CORVANE_INJECT_SOCKET", socketPath().c_str(), 1);
        REQUIRE(bt_product_init() == 0);
#define EVENT(source, type, value, subscribe, unsubscribe, set, unset, Callback, types) \
    REQUIRE(set(&Reader<Callback>::read, &calls) == 0);
#include "tests/support/EventTable.def"
#undef EVENT
    }
    ~Platform() {
        bt_product_deinit();  // otherwise the main loop's objects are reported as leaks
        std::error_code ignored;
        fs::remove_all(m_directory, ignored);
    }
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    /// Sends `request` on a new connection and returns everything that the server answers.
    std::string answer(const std::string& request) const {
        const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        socketPath().copy(address.sun_path, sizeof address.sun_path - 1);
        REQUIRE(connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
        std::string received;
        std::size_t sent = 0;
        std::array<char, 4096> buffer;
        while (true) {
            if (sent < request.size()) {
                const ssize_t size =
                    send(fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
                sent = size < 0 && errno != EAGAIN
                           ? request.size()
                           : sent + static_cast<std::size_t>(std::max<ssize_t>(size, 0));
            } else {
                shutdown(fd, SHUT_WR);
            }
            ecore_main_loop_iterate();
            ssize_t size = 0;
            while ((size = recv(fd, buffer.data(), buffer.size(), 0)) > 0) {
                received.append(buffer.data(), static_cast<std::size_t>(size));
            }
            if (size == 0 || errno != EAGAIN) {
                close(fd);
                return received;
            }
        }
    }

private:
    std::string socketPath() const {
        return m_directory / "inject";
    }

    fs::path m_directory;
};

std::string signatureOf(const corvane::host::Event& event) {
    std::string signature;
    for (const auto& argument : event.arguments) {
        signature += corvane::host::signatureOf(argument.kind);
    }
    return signature;
}

/// Reads a call of one of the server's methods, mostly with the correct argument types. Sets
/// `tellsCallbacks` if it is an event's method, whose answer is the number of callbacks called.
std::string readCall(Input& input, std::uint32_t serial, bool& tellsCallbacks) {
    const std::size_t method = input.byte();
    const bool otherTypes = (method & 0x80) != 0;
    const std::size_t index = (method & 0x7f) % (allEvents().size() + 2);
    std::string member = index == allEvents().size() ? "Watch" : "Nothing";
    std::string signature;
    tellsCallbacks = index < allEvents().size();
    if (tellsCallbacks) {
        member = methodName(allEvents()[index]);
        signature = signatureOf(allEvents()[index]);
    }
    if (otherTypes) {
        signature = input.text();
    }
    const auto start = input.bytes();
    return dbusCall(serial, member, signature, start + input.bytes());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Platform platform;
    Input input(data, size);
    // The first call is valid. The server must answer it, whatever earlier peers have sent.
    std::string request = dbusGreeting() + dbusCall(1, "BtAvrcpVolumeNotify", "", "");
    std::set<std::uint32_t> events{1};
    const bool anyBytes = input.upTo(7) == 7;
    if (anyBytes) {
        request += input.rest();
    }
    for (std::uint32_t serial = 2; serial < 12 && !input.isEmpty(); ++serial) {
        bool tellsCallbacks = false;
        request += readCall(input, serial, tellsCallbacks);
        if (tellsCallbacks) {
            events.insert(serial);
        }
    }

    platform.calls = 0;
    const auto messages = dbusMessages(platform.answer(request));
    REQUIRE(messages.has_value() && !messages->empty());
    REQUIRE(messages->front().type == DBusMessage::Return && messages->front().replySerial == 1);
    unsigned called = 0;
    for (const auto& message : *messages) {
        const bool tellsCallbacks = events.contains(message.replySerial);
        if (message.type == DBusMessage::Return && tellsCallbacks && !anyBytes) {
            REQUIRE(message.body == std::string("\1\0\0\0", 4));
            ++called;
        }
        if (message.type == DBusMessage::Error) {
            REQUIRE(message.errorName.starts_with("org.freedesktop.DBus.Error."));
            REQUIRE(message.errorName != "org.freedesktop.DBus.Error.Failed");
        }
    }
    REQUIRE(anyBytes || called == platform.calls);
    return 0;
}
