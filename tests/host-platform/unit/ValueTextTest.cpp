// Tests the parsing of event values that are given as text.
#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sound_manager_tv.h>

#include <string>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/ValueText.h"

namespace {

using namespace corvane::host;

constexpr EnumerationName COLOURS[] = {{"red", 0}, {"green", 1}, {"blue", 5}};
constexpr Field NUMBER{"number", Kind::Integer};
constexpr Field BYTE{"byte", Kind::Byte};
constexpr Field SHORT_NUMBER{"short", Kind::Short};
constexpr Field COUNT{"count", Kind::Count};
constexpr Field FLAG{"flag", Kind::Boolean};
constexpr Field TEXT{"text", Kind::Text};
constexpr Field COLOUR{"colour", Kind::Enumeration, "red", COLOURS};
constexpr Field BYTES{"bytes", Kind::Bytes};
constexpr Field UUIDS{"uuids", Kind::Uuids};
constexpr Field RECORD{"record", Kind::Record, "", {}, {&NUMBER, 1}};

std::string complaint(const Field& field, std::string_view given) {
    try {
        parseValue(field, given);
        return "";
    } catch (const InvalidValue& invalid) {
        return invalid.what();
    }
}

TEST(ValueTextTest, ReadsIntegers) {
    EXPECT_EQ(parseValue(NUMBER, "-2147483648"), Value(-2147483647 - 1));
    EXPECT_EQ(parseValue(NUMBER, "0x1F"), Value(31));
    for (const auto* bad : {"", "x", "1x", "2147483648", "0x", "0x-1", " 1", "+1"}) {
        EXPECT_EQ(complaint(NUMBER, bad),
                  "number can't be \"" + std::string(bad) + "\"; it must be an integer of 32 bits");
    }
}

TEST(ValueTextTest, ReadsSmallNumbers) {
    EXPECT_EQ(parseValue(BYTE, "255"), Value(255));
    EXPECT_EQ(parseValue(SHORT_NUMBER, "0xffff"), Value(65535));
    EXPECT_EQ(complaint(BYTE, "256"), "byte can't be \"256\"; it must be an integer from 0 to 255");
    EXPECT_EQ(complaint(BYTE, "-1"), "byte can't be \"-1\"; it must be an integer from 0 to 255");
    EXPECT_EQ(complaint(SHORT_NUMBER, "65536"),
              "short can't be \"65536\"; it must be an integer from 0 to 65535");
}

TEST(ValueTextTest, ReadsCounts) {
    EXPECT_EQ(parseValue(COUNT, "auto"), Value());
    EXPECT_EQ(parseValue(COUNT, "-1"), Value(-1));
    EXPECT_EQ(complaint(COUNT, "many"),
              "count can't be \"many\"; it must be auto, for as many as are given, or an integer "
              "of 32 bits");
}

TEST(ValueTextTest, ReadsBooleans) {
    EXPECT_EQ(parseValue(FLAG, "true"), Value(true));
    EXPECT_EQ(parseValue(FLAG, "false"), Value(false));
    EXPECT_EQ(complaint(FLAG, "1"), "flag can't be \"1\"; it must be true or false");
}

TEST(ValueTextTest, TakesTextsAsTheyAre) {
    EXPECT_EQ(parseValue(TEXT, " a=b "), Value(std::string(" a=b ")));
    EXPECT_EQ(parseValue(TEXT, ""), Value(std::string()));
}

TEST(ValueTextTest, ReadsEnumerationsByNameAndValue) {
    EXPECT_EQ(parseValue(COLOUR, "blue"), Value(5));
    EXPECT_EQ(parseValue(COLOUR, "1"), Value(1));
    EXPECT_EQ(complaint(COLOUR, "2"),
              "colour can't be \"2\"; it must be red (0), green (1) or blue (5)");
}

// The platform lists most names without their values, so one name of each enumeration is compared.
TEST(ValueTextTest, NamesTheValuesOfTheEnumerations) {
    const auto valueOf = [](const char* event, const char* field, const char* name) {
        return std::get<int>(parseValue(*findField(*findEvent(event), field), name));
    };
    EXPECT_EQ(valueOf("bt-adapter-state-changed", "state", "on"), BT_ADAPTER_STATE_ON);
    EXPECT_EQ(valueOf("bt-adapter-authentication-req", "type", "passkey-request"),
              BT_AUTHENTICATION_PASSKEY_REQUEST);
    EXPECT_EQ(valueOf("bt-adapter-device-discovery-state-changed", "state", "finished"),
              BT_ADAPTER_DEVICE_DISCOVERY_FINISHED);
    EXPECT_EQ(valueOf("bt-device-auth-event", "service", "a2dp-sink"),
              BT_PROFILE_SERVICE_A2DP_SINK);
    EXPECT_EQ(valueOf("bt-device-auth-event", "service", "hands-free"),
              BT_PROFILE_SERVICE_HANDS_FREE);
    EXPECT_EQ(valueOf("bt-device-connection-state-changed", "link", "le"), BT_DEVICE_LINK_LE);
    EXPECT_EQ(valueOf("bt-device-connection-state-changed", "disconn_reason", "authentication"),
              BT_DEVICE_DISCONNECT_REASON_AUTHENTICATION);
    EXPECT_EQ(valueOf("bt-audio-state-changed", "state", "suspended"),
              BT_A2DP_SOURCE_AUDIO_STATE_SUSPENDED);
    EXPECT_EQ(valueOf("bt-audio-connection-state-changed", "profile", "a2dp-sink"),
              BT_AUDIO_PROFILE_A2DP_SINK);
    EXPECT_EQ(valueOf("bt-socket-connection-state-changed", "state", "disconnected"),
              BT_SOCKET_DISCONNECTED);
    EXPECT_EQ(valueOf("bt-socket-connection-state-changed", "local_role", "server"),
              BT_SOCKET_ROLE_SERVER);
    EXPECT_EQ(valueOf("bt-avrcp-key-event-received", "state", "pressed"), BT_AVRCP_KEY_PRESSED);
    EXPECT_EQ(valueOf("bt-hid-smart-rc-grip-sensor-state-changed", "state", "held"),
              BT_HID_SC_GRIP_SENSOR_HELD);
    EXPECT_EQ(valueOf("bt-le-audio-broadcast-state-changed", "state", "configured"),
              BT_LE_AUDIO_BROADCAST_CONFIGURED);
    EXPECT_EQ(valueOf("sound-manager-speaker-changed", "route", "hdmi"),
              SOUND_TV_OUTPUT_ROUTE_HDMI);
}

TEST(ValueTextTest, ReadsBytes) {
    EXPECT_EQ(parseValue(BYTES, "00ffA1"), Value(Bytes{'\0', '\xff', '\xa1'}));
    EXPECT_EQ(parseValue(BYTES, ""), Value(Bytes{}));
    EXPECT_NE(complaint(BYTES, "0"), "");
    EXPECT_NE(complaint(BYTES, "0g"), "");
    EXPECT_NE(complaint(BYTES, "-1"), "");
}

TEST(ValueTextTest, ReadsUuids) {
    EXPECT_EQ(parseValue(UUIDS, "110b,110e"), Value(Uuids{"110b", "110e"}));
    EXPECT_EQ(parseValue(UUIDS, ""), Value(Uuids{}));
    for (const auto* bad : {",", "110b,", ",110b", "1,,2"}) {
        EXPECT_NE(complaint(UUIDS, bad), "") << bad;
    }
}

TEST(ValueTextTest, HasNoTextForARecord) {
    EXPECT_EQ(complaint(RECORD, "none"),
              "record can't be \"none\"; it must be given by its fields, each by its own name");
}

}  // namespace
