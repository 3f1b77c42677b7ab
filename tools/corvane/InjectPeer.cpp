// The daemon's end of injection, as the command sees it.
#include "InjectPeer.h"

#include "ValueText.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <stdexcept>
#include <system_error>

namespace corvane::tool {

using namespace corvane::host;

namespace {

struct BusDeleter {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using BusPtr = std::unique_ptr<sd_bus, BusDeleter>;

struct MessageDeleter {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using MessagePtr = std::unique_ptr<sd_bus_message, MessageDeleter>;

std::string textOf(int error) {
    return std::generic_category().message(error);
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
        throw std::runtime_error(path + " is too long for the path of a socket");
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

BusPtr openBus(const std::string& path) {
    sd_bus* made = nullptr;
    check(sd_bus_new(&made), "no connection can be made");
    BusPtr bus(made);
    const int fd = connectTo(path);
    check(sd_bus_set_fd(made, fd, fd), "no connection can be made");
    check(sd_bus_start(made), "no connection can be made");
    return bus;
}

int appendValue(sd_bus_message* message, const Field& field, const Values& values) {
    switch (field.kind) {
        case Kind::Integer:
            return sd_bus_message_append(message, "i", values.get<int>(field.name));
        case Kind::Boolean:
            return sd_bus_message_append(message, "b", values.get<bool>(field.name) ? 1 : 0);
        case Kind::Text:
            return sd_bus_message_append(message, "s", values.get<std::string>(field.name).c_str());
        case Kind::Enumeration:
            return sd_bus_message_append(message, "s",
                                         std::to_string(values.get<int>(field.name)).c_str());
        case Kind::Bytes: {
            const auto& bytes = values.get<Bytes>(field.name);
            return sd_bus_message_append_array(message, 'y', bytes.data(), bytes.size());
        }
        case Kind::Uuids:
        case Kind::Record:
            break;
    }
    int result = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "s");
    for (const auto& uuid : values.get<Uuids>(field.name)) {
        result = result < 0 ? result : sd_bus_message_append(message, "s", uuid.c_str());
    }
    return result < 0 ? result : sd_bus_message_close_container(message);
}

void append(sd_bus_message* message, std::span<const Field> fields, const Values& values);

void appendRecord(sd_bus_message* message, const Field& record, const Values& values) {
    check(sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "{sv}"), record.name);
    for (const auto& field : record.fields) {
        check(sd_bus_message_open_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv"), field.name);
        check(sd_bus_message_append(message, "s", field.name), field.name);
        check(sd_bus_message_open_container(message, SD_BUS_TYPE_VARIANT, signatureOf(field.kind)),
              field.name);
        append(message, {&field, 1}, values);
        check(sd_bus_message_close_container(message), field.name);
        check(sd_bus_message_close_container(message), field.name);
    }
    check(sd_bus_message_close_container(message), record.name);
}

void append(sd_bus_message* message, std::span<const Field> fields, const Values& values) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            appendRecord(message, field, values);
        } else {
            if (appendValue(message, field, values) < 0) {
                throw std::runtime_error(std::string(field.name) + " must be " +
                                         allowedText(field));
            }
        }
    }
}

unsigned call(sd_bus* bus, sd_bus_message* message) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* received = nullptr;
    const int result = sd_bus_call(bus, message, 0, &error, &received);
    const MessagePtr reply(received);
    if (result < 0) {
        const std::string text = error.message == nullptr ? textOf(-result) : error.message;
        sd_bus_error_free(&error);
        throw std::runtime_error(text);
    }
    std::uint32_t called = 0;
    check(sd_bus_message_read(received, "u", &called), "the daemon's answer can't be read");
    return called;
}

}  // namespace

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

unsigned emitEvent(const std::string& path, const Event& event, const Values& values) {
    const auto bus = openBus(path);
    sd_bus_message* made = nullptr;
    check(sd_bus_message_new_method_call(bus.get(), &made, nullptr, "/org/corvane/Inject",
                                         "org.corvane.Inject1", methodName(event).c_str()),
          "no message can be made");
    const MessagePtr message(made);
    append(made, event.arguments, values);
    return call(bus.get(), made);
}

}  // namespace corvane::tool
