// Values of injected events, given as text.
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

constexpr EnumerationName colours[] = {{"red", 0}, {"green", 1}, {"blue", 5}};
constexpr Field number{"number", Kind::Integer};
constexpr Field byte{"byte", Kind::Byte};
constexpr Field shortNumber{"short", Kind::Short};
constexpr Field count{"count", Kind::Count};
constexpr Field flag{"flag", Kind::Boolean};
constexpr Field text{"text", Kind::Text};
constexpr Field colour{"colour", Kind::Enumeration, "red", colours};
constexpr Field bytes{"bytes", Kind::Bytes};
constexpr Field uuids{"uuids", Kind::Uuids};
constexpr Field record{"record", Kind::Record, "", {}, {&number, 1}};

std::string complaint(const Field& field, std::string_view given) {
    try {
        parseValue(field, given);
        return "";
    } catch (const InvalidValue& invalid) {
        return invalid.what();
    }
}

TEST(ValueTextTest, ReadsIntegers) {
    EXPECT_EQ(parseValue(number, "-2147483648"), Value(-2147483647 - 1));
    EXPECT_EQ(parseValue(number, "0x1F"), Value(31));
    for (const auto* bad : {"", "x", "1x", "2147483648", "0x", "0x-1", " 1", "+1"}) {
        EXPECT_EQ(complaint(number, bad),
                  "number can't be \"" + std::string(bad) + "\"; it must be an integer of 32 bits");
    }
}

TEST(ValueTextTest, ReadsSmallNumbers) {
    EXPECT_EQ(parseValue(byte, "255"), Value(255));
    EXPECT_EQ(parseValue(shortNumber, "0xffff"), Value(65535));
    EXPECT_EQ(complaint(byte, "256"), "byte can't be \"256\"; it must be an integer from 0 to 255");
    EXPECT_EQ(complaint(byte, "-1"), "byte can't be \"-1\"; it must be an integer from 0 to 255");
    EXPECT_EQ(complaint(shortNumber, "65536"),
              "short can't be \"65536\"; it must be an integer from 0 to 65535");
}

TEST(ValueTextTest, ReadsCounts) {
    EXPECT_EQ(parseValue(count, "auto"), Value());
    EXPECT_EQ(parseValue(count, "-1"), Value(-1));
    EXPECT_EQ(complaint(count, "many"),
              "count can't be \"many\"; it must be auto, for as many as are given, or an integer "
              "of 32 bits");
}

TEST(ValueTextTest, ReadsBooleans) {
    EXPECT_EQ(parseValue(flag, "true"), Value(true));
    EXPECT_EQ(parseValue(flag, "false"), Value(false));
    EXPECT_EQ(complaint(flag, "1"), "flag can't be \"1\"; it must be true or false");
}

TEST(ValueTextTest, TakesTextsAsTheyAre) {
    EXPECT_EQ(parseValue(text, " a=b "), Value(std::string(" a=b ")));
    EXPECT_EQ(parseValue(text, ""), Value(std::string()));
}

TEST(ValueTextTest, ReadsEnumerationsByNameAndValue) {
    EXPECT_EQ(parseValue(colour, "blue"), Value(5));
    EXPECT_EQ(parseValue(colour, "1"), Value(1));
    EXPECT_EQ(complaint(colour, "2"),
              "colour can't be \"2\"; it must be red (0), green (1) or blue (5)");
}

// The names are listed without their values, so each enumeration is looked at once here.
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
    EXPECT_EQ(parseValue(bytes, "00ffA1"), Value(Bytes{'\0', '\xff', '\xa1'}));
    EXPECT_EQ(parseValue(bytes, ""), Value(Bytes{}));
    EXPECT_NE(complaint(bytes, "0"), "");
    EXPECT_NE(complaint(bytes, "0g"), "");
    EXPECT_NE(complaint(bytes, "-1"), "");
}

TEST(ValueTextTest, ReadsUuids) {
    EXPECT_EQ(parseValue(uuids, "110b,110e"), Value(Uuids{"110b", "110e"}));
    EXPECT_EQ(parseValue(uuids, ""), Value(Uuids{}));
    for (const auto* bad : {",", "110b,", ",110b", "1,,2"}) {
        EXPECT_NE(complaint(uuids, bad), "") << bad;
    }
}

TEST(ValueTextTest, HasNoTextForARecord) {
    EXPECT_EQ(complaint(record, "none"),
              "record can't be \"none\"; it must be given by its fields, each by its own name");
}

}  // namespace
