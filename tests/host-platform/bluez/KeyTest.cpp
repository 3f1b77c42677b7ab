// Tests the keys of remote controls. FIFOs replace their input devices.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

// Creates a FIFO in the directory of input devices, and writes input events to it.
class FakeInput {
public:
    explicit FakeInput(const std::filesystem::path& file) {
        mkfifo(file.c_str(), 0600);
        m_fd = open(file.c_str(), O_RDWR | O_CLOEXEC);
    }
    ~FakeInput() { close(m_fd); }
    FakeInput(const FakeInput&) = delete;
    FakeInput& operator=(const FakeInput&) = delete;

    void send(int type, int code, int value) const {
        input_event event{};
        event.type = static_cast<decltype(event.type)>(type);
        event.code = static_cast<decltype(event.code)>(code);
        event.value = value;
        ASSERT_EQ(write(m_fd, &event, sizeof event), static_cast<ssize_t>(sizeof event));
    }

    void press(int key) const {
        send(EV_KEY, key, 1);
        send(EV_SYN, SYN_REPORT, 0);
        send(EV_KEY, key, 2);
        send(EV_KEY, key, 0);
    }

private:
    int m_fd;
};

class KeyTest : public BluezTvFixture {
protected:
    KeyTest() { std::filesystem::create_directory(inputs()); }

    std::filesystem::path inputs() const { return directory() / "input"; }
    std::string nextKey() { return nextEvent("bt-avrcp-key-event-received"); }
    std::string nextMute() { return nextEvent("bt-avrcp-mute-state-changed-with-address"); }
};

TEST_F(KeyTest, ArePressedAndReleasedAndDoNotRepeat) {
    const FakeInput input(inputs() / "Headset (AVRCP)");
    startAll();
    input.press(KEY_PLAYCD);
    input.press(KEY_VOLUMEUP);
    EXPECT_EQ(nextKey(), "event={key=68 state=pressed}");
    EXPECT_EQ(nextKey(), "event={key=68 state=released}");
    EXPECT_EQ(nextKey(), "event={key=65 state=pressed}");
    EXPECT_EQ(nextKey(), "event={key=65 state=released}");
    EXPECT_EQ(countOf("bt-avrcp-mute-state-changed-with-address"), 0);
}

TEST_F(KeyTest, OfARemoteThatComesLaterCount) {
    startAll();
    const FakeInput input(inputs() / "Headset (AVRCP)");
    input.press(KEY_PAUSECD);
    EXPECT_EQ(nextKey(), "event={key=70 state=pressed}");
}

TEST_F(KeyTest, WithoutAnOperationAreLeftOut) {
    const FakeInput input(inputs() / "Headset (AVRCP)");
    startAll();
    input.press(KEY_LEFTSHIFT);
    input.press(KEY_NEXTSONG);
    EXPECT_EQ(nextKey(), "event={key=75 state=pressed}");
    EXPECT_EQ(nextKey(), "event={key=75 state=released}");
    EXPECT_EQ(countOf("bt-avrcp-key-event-received"), 2);
}

TEST_F(KeyTest, OfOtherDevicesAreNotRead) {
    const FakeInput keyboard(inputs() / "Keyboard");
    const FakeInput input(inputs() / "Headset (AVRCP)");
    startAll();
    keyboard.press(KEY_STOPCD);
    input.press(KEY_NEXTSONG);
    EXPECT_EQ(nextKey(), "event={key=75 state=pressed}");
    EXPECT_EQ(nextKey(), "event={key=75 state=released}");
    EXPECT_EQ(countOf("bt-avrcp-key-event-received"), 2);
}

TEST_F(KeyTest, MuteSwitchesToAndFro) {
    const FakeInput input(inputs() / "Headset (AVRCP)");
    startAll();
    input.press(KEY_MUTE);
    EXPECT_EQ(nextKey(), "event={key=67 state=pressed}");
    EXPECT_EQ(nextMute(), "address=\"AA:BB:CC:DD:EE:01\" muted=true");
    input.press(KEY_MUTE);
    EXPECT_EQ(nextMute(), "address=\"AA:BB:CC:DD:EE:01\" muted=false");
}

TEST_F(KeyTest, MuteIsOfTheConnectedDeviceOfThatName) {
    const FakeInput input(inputs() / "Headset (AVRCP)");
    const FakeInput stranger(inputs() / "Stranger (AVRCP)");
    startAll();
    mock({"AddDevice", "sss", "hci0", "AA:BB:CC:DD:EE:02", "Headset"});
    mock({"ConnectDevice", "ss", "hci0", "AA:BB:CC:DD:EE:02"});
    EXPECT_THAT(nextEvent("bt-device-connection-state-changed"), testing::HasSubstr("true"));
    input.press(KEY_MUTE);
    EXPECT_EQ(nextMute(), "address=\"AA:BB:CC:DD:EE:02\" muted=true");
    stranger.press(KEY_MUTE);
    EXPECT_EQ(nextMute(), "address=\"\" muted=true");
}

}  // namespace
