// The platform's records as they are lent to a callback, made of the values injected.
// The fields of a record are found by their own names.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>

#include <memory>

#include "platform/host/events/Values.h"
#include "platform/host/inject/LentArguments.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

/// UUIDs with the count a record gives of them, which may be another one. Throws
/// InvalidValue for a count at which the reader would go beyond the end of the array.
class LentUuids {
public:
    enum class Array { MayBeNull, IsRead };

    LentUuids(const Values& values, Array array);
    char** get() { return m_uuids.get(); }
    int count() const { return m_count; }

private:
    LentTexts m_uuids;
    int m_count;
};

/// A record in memory of its own. The argument's name isn't needed.
template <typename Record>
class LentRecord {
public:
    Record* get() const { return m_record.get(); }

protected:
    LentRecord() : m_record(std::make_unique<Record>()) {}
    std::unique_ptr<Record> m_record;
};

template <>
class Lent<bt_adapter_device_discovery_info_s*>
    : public LentRecord<bt_adapter_device_discovery_info_s> {
public:
    Lent(const Values& values, const char*);

private:
    bool m_isFound;
    LentText m_address;
    LentText m_name;
    LentUuids m_uuids;
    LentBytes m_manufacturerData;
};

template <>
class Lent<bt_device_info_s*> : public LentRecord<bt_device_info_s> {
public:
    Lent(const Values& values, const char*);

private:
    Lent<char*> m_address;
    Lent<char*> m_name;
    LentUuids m_uuids;
    LentBytes m_manufacturerData;
};

template <>
class Lent<bt_device_connection_info_s*> : public LentRecord<bt_device_connection_info_s> {
public:
    Lent(const Values& values, const char*);

private:
    Lent<char*> m_address;
};

template <>
class Lent<bt_device_sdp_info_s*> : public LentRecord<bt_device_sdp_info_s> {
public:
    Lent(const Values& values, const char*);

private:
    Lent<char*> m_address;
    LentUuids m_uuids;
};

template <>
class Lent<bt_socket_connection_s*> : public LentRecord<bt_socket_connection_s> {
public:
    Lent(const Values& values, const char*);

private:
    Lent<char*> m_address;
    Lent<char*> m_uuid;
};

template <>
class Lent<bt_socket_received_data_s*> : public LentRecord<bt_socket_received_data_s> {
public:
    Lent(const Values& values, const char*);

private:
    LentBytes m_data;
};

template <>
class Lent<bt_avrcp_key_event_s*> : public LentRecord<bt_avrcp_key_event_s> {
public:
    Lent(const Values& values, const char*);
};

template <>
class Lent<bt_avrcp_remote_features_s*> : public LentRecord<bt_avrcp_remote_features_s> {
public:
    Lent(const Values& values, const char*);

private:
    Lent<char*> m_address;
    Lent<char*> m_service;
    Lent<char*> m_provider;
};

template <>
class Lent<bt_hid_battery_status_info_s*> : public LentRecord<bt_hid_battery_status_info_s> {
public:
    Lent(const Values& values, const char*);

private:
    LentText m_address;
};

/// By value, so its fields are arguments.
template <>
class Lent<bt_audio_stream_type_s> {
public:
    Lent(const Values& values, const char*);
    bt_audio_stream_type_s get() const { return m_record; }

private:
    bt_audio_stream_type_s m_record;
};

}  // namespace corvane::host
