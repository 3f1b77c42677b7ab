// Generates the arguments of an event from its stamp: the sending thread and a sequence number. The
// receiver can check from them that the event is the expected one and is complete. Nothing here
// allocates memory, because stress tests send millions of events.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <tuple>
#include <type_traits>

struct Stamp {
    unsigned thread;  // one digit
    unsigned number;  // less than 2^24
};

namespace stamp {

/// "<thread>-<number>-<place>". It is as long as a Bluetooth address, because one event truncates
/// longer texts.
using Text = std::array<char, 18>;

inline Text textOf(Stamp stamp, unsigned place) {
    Text text{"0-0000000000-0000"};
    text[0] = static_cast<char>('0' + stamp.thread);
    for (std::size_t i = 11; stamp.number > 0; --i, stamp.number /= 10) {
        text[i] = static_cast<char>('0' + stamp.number % 10);
    }
    for (std::size_t i = 16; place > 0; --i, place /= 10) {
        text[i] = static_cast<char>('0' + place % 10);
    }
    return text;
}

/// Returns the part of a stamp that fits into a value: an int holds all of it, a byte the low bits,
/// an output route the thread, other enumerations and booleans one bit.
template <typename T>
T valueOf(Stamp stamp, unsigned place) {
    const unsigned both = stamp.number << 2 | stamp.thread;
    if constexpr (std::is_same_v<T, sound_tv_output_route_e>) {
        return static_cast<T>(stamp.thread);
    } else if constexpr (std::is_enum_v<T> || std::is_same_v<T, bool>) {
        return static_cast<T>((stamp.number ^ place) & 1);
    } else if constexpr (sizeof(T) == sizeof(int)) {
        return static_cast<T>((place % 32) << 26 ^ both);
    } else {
        return static_cast<T>(both);
    }
}

/// Fills the fields of a record. It owns the texts and arrays, and overwrites them when it is
/// destroyed.
class Filler {
public:
    explicit Filler(Stamp stamp, unsigned place) : m_stamp(stamp), m_place(place) {}
    ~Filler() {
        m_texts.fill({"overwritten......"});
        m_array.fill(nullptr);
    }
    Filler(const Filler&) = delete;
    Filler& operator=(const Filler&) = delete;

    void text(char*& field) {
        Text& text = m_texts.at(m_used++);
        text = textOf(m_stamp, m_place++);
        field = text.data();
    }
    void texts(char**& field, int& count) {
        count = static_cast<int>(m_stamp.number % (m_array.size() + 1));
        for (int i = 0; i < count; ++i) {
            text(m_array.at(static_cast<std::size_t>(i)));
        }
        field = m_array.data();
    }
    void bytes(char*& field, int& length) {
        text(field);
        length = static_cast<int>(m_stamp.number % std::tuple_size_v<Text>);
    }
    template <typename T>
    void value(T& field) {
        field = valueOf<T>(m_stamp, m_place++);
    }
    template <typename T>
    void repeated(T& field, const T&) {
        value(field);
    }
    void lost(int& field) { value(field); }

private:
    Stamp m_stamp;
    unsigned m_place;
    std::size_t m_used = 0;
    std::array<Text, 8> m_texts;
    std::array<char*, 3> m_array{};
};

/// Checks that a received record is what Filler made, apart from the known changes of a copy.
/// `holds` is the result.
class Checker {
public:
    Checker(Stamp stamp, unsigned place) : m_stamp(stamp), m_place(place) {}

    void text(const char* field) {
        holds &= field != nullptr && std::strcmp(field, textOf(m_stamp, m_place++).data()) == 0;
    }
    void texts(char** field, int count) {
        holds &= count == static_cast<int>(m_stamp.number % 4);
        for (int i = 0; holds && i < count; ++i) {
            text(field[i]);
        }
    }
    void bytes(const char* field, int length) {
        const Text expected = textOf(m_stamp, m_place++);
        holds &=
            length == static_cast<int>(m_stamp.number % expected.size()) &&
            (length == 0 ? field == nullptr : std::equal(field, field + length, expected.begin()));
    }
    template <typename T>
    void value(T field) {
        holds &= field == valueOf<T>(m_stamp, m_place++);
    }
    template <typename T>
    void repeated(T field, T other) {
        ++m_place;
        holds &= field == other;
    }
    void lost(int field) {
        ++m_place;
        holds &= field == 0;
    }

    bool holds = true;

private:
    Stamp m_stamp;
    unsigned m_place;
};

/// Visits the fields of each record. The copy of a discovery record repeats another field instead
/// of the `repeated` one, and sets the `lost` one to zero.
template <typename Visitor>
void visit(bt_class_s& value, Visitor& visitor) {
    visitor.value(value.major_device_class);
    visitor.value(value.minor_device_class);
    visitor.value(value.major_service_class_mask);
}
template <typename Visitor>
void visit(bt_adapter_device_discovery_info_s& info, Visitor& visitor) {
    visitor.text(info.remote_address);
    visitor.text(info.remote_name);
    visitor.value(info.bt_class.major_device_class);
    visitor.value(info.bt_class.minor_device_class);
    visitor.repeated(info.bt_class.major_service_class_mask, info.bt_class.major_device_class);
    visitor.value(info.rssi);
    visitor.value(info.is_bonded);
    visitor.texts(info.service_uuid, info.service_count);
    visitor.lost(info.appearance);
    visitor.bytes(info.manufacturer_data, info.manufacturer_data_len);
}
template <typename Visitor>
void visit(bt_device_info_s& info, Visitor& visitor) {
    visitor.text(info.remote_address);
    visitor.text(info.remote_name);
    visit(info.bt_class, visitor);
    visitor.texts(info.service_uuid, info.service_count);
    visitor.value(info.is_bonded);
    visitor.value(info.is_connected);
    visitor.value(info.is_authorized);
    visitor.bytes(info.manufacturer_data, info.manufacturer_data_len);
}
template <typename Visitor>
void visit(bt_device_connection_info_s& info, Visitor& visitor) {
    visitor.text(info.remote_address);
    visitor.value(info.link);
    visitor.value(info.disconn_reason);
}
template <typename Visitor>
void visit(bt_device_sdp_info_s& info, Visitor& visitor) {
    visitor.text(info.remote_address);
    visitor.texts(info.service_uuid, info.service_count);
}
template <typename Visitor>
void visit(bt_avrcp_key_event_s& event, Visitor& visitor) {
    visitor.value(event.key);
    visitor.value(event.state);
}
template <typename Visitor>
void visit(bt_avrcp_remote_features_s& features, Visitor& visitor) {
    visitor.text(features.remote_address);
    visitor.value(features.feature);
    visitor.text(features.service_name);
    visitor.text(features.provider_name);
}
template <typename Visitor>
void visit(bt_hid_battery_status_info_s& status, Visitor& visitor) {
    visitor.text(status.address);
    visitor.value(status.status);
}
template <typename Visitor>
void visit(bt_socket_connection_s& connection, Visitor& visitor) {
    visitor.value(connection.socket_fd);
    visitor.value(connection.server_fd);
    visitor.value(connection.local_role);
    visitor.text(connection.remote_address);
    visitor.text(connection.service_uuid);
}
template <typename Visitor>
void visit(bt_socket_received_data_s& data, Visitor& visitor) {
    visitor.value(data.socket_fd);
    visitor.bytes(data.data, data.data_size);
}
template <typename Visitor>
void visit(bt_audio_stream_type_s& type, Visitor& visitor) {
    visitor.value(type.codec);
    visitor.value(type.sample_rate);
    visitor.value(type.channels);
}
template <typename Visitor>
void visit(char*& text, Visitor& visitor) {
    visitor.text(text);
}
template <typename T, typename Visitor>
requires std::is_arithmetic_v<T> || std::is_enum_v<T>
void visit(T& value, Visitor& visitor) {
    visitor.value(value);
}

/// Reads the thread and the number of a stamp from the first fields that can hold them.
class Reader {
public:
    void text(const char* field) {
        if (!m_done && field != nullptr) {
            thread = static_cast<unsigned>(field[0] - '0');
            number = static_cast<unsigned>(std::strtoul(field + 2, nullptr, 10));
            m_done = true;
        }
    }
    template <typename T>
    void value(T field) {
        if constexpr (std::is_same_v<T, sound_tv_output_route_e>) {
            thread = thread.value_or(static_cast<unsigned>(field));
        } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
            thread = thread.value_or(static_cast<unsigned>(field) & 3);
            if constexpr (sizeof(T) == sizeof(int)) {
                if (!m_done) {
                    number = (static_cast<unsigned>(field) & 0x3ffffff) >> 2;
                    m_done = true;
                }
            }
        }
    }
    void texts(char**, int) {}
    void bytes(const char*, int) {}
    template <typename T>
    void repeated(T, T) {}
    void lost(int) {}

    std::optional<unsigned> thread;
    std::optional<unsigned> number;

private:
    bool m_done = false;
};

template <typename T>
constexpr bool isText = std::is_same_v<T, const char*> || std::is_same_v<T, char*>;

/// An argument of type `T`. It is valid as long as this object, which overwrites it at the end.
template <typename T>
class Lent {
public:
    Lent(Stamp stamp, unsigned place) : m_filler(stamp, place) { visit(m_value, m_filler); }

    T get() {
        if constexpr (std::is_pointer_v<T> && !isText<T>) {
            return &m_value;
        } else {
            return m_value;
        }
    }

private:
    using Held = std::conditional_t<isText<T>, char*, std::remove_pointer_t<T>>;

    Held m_value{};
    Filler m_filler;
};

/// Calls visit on a received argument.
template <typename T, typename Visitor>
void look(T argument, Visitor& visitor) {
    if constexpr (isText<T>) {
        visitor.text(argument);
    } else if constexpr (std::is_pointer_v<T>) {
        visit(*argument, visitor);
    } else {
        visit(argument, visitor);
    }
}

}  // namespace stamp
