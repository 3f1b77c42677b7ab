// Tests how many D-Bus messages one wake-up of the main loop processes.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

#include "platform/host/main-loop/BusPump.h"
#include "tests/support/DBusWire.h"

namespace {

using corvane::host::BusPtr;
using corvane::host::BusPump;
using corvane::host::Descriptor;

class BusPumpTest : public testing::Test {
protected:
    BusPumpTest() {
        ecore_init();
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, m_ends.data()), 0);
    }
    ~BusPumpTest() override {
        close(m_ends[1]);
        ecore_shutdown();
    }

    // Opens the server's end of a connection, which counts the messages it receives in `m_taken`.
    BusPtr openBus() {
        sd_bus* bus = nullptr;
        sd_id128_t id{};
        EXPECT_EQ(sd_bus_new(&bus), 0);
        EXPECT_EQ(sd_bus_set_fd(bus, m_ends[0], m_ends[0]), 0);
        EXPECT_EQ(sd_bus_set_server(bus, 1, id), 0);
        const auto count = [](sd_bus_message*, void* taken, sd_bus_error*) {
            ++*static_cast<int*>(taken);
            return 1;
        };
        EXPECT_GE(sd_bus_add_filter(bus, nullptr, count, &m_taken), 0);
        EXPECT_GE(sd_bus_start(bus), 0);
        return BusPtr(bus);
    }

    void sendCalls(int count) {
        auto bytes = dbusGreeting();
        for (int i = 1; i <= count; ++i) {
            bytes += dbusCall(static_cast<std::uint32_t>(i), "Nothing", "", "");
        }
        ASSERT_EQ(write(m_ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    std::array<int, 2> m_ends{-1, -1};
    int m_taken = 0;
};

TEST_F(BusPumpTest, TakesSomeMessagesAtAWakeUpAndAllInTheEnd) {
    constexpr int all = 300;
    sendCalls(all);
    BusPump pump(openBus(), Descriptor::duplicate(m_ends[0]), [] {});
    pump.rearm();
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (m_taken < all && std::chrono::steady_clock::now() < limit) {
        const int before = m_taken;
        ecore_main_loop_iterate();
        ASSERT_LE(m_taken - before, 64);
    }
    EXPECT_EQ(m_taken, all);
}

}  // namespace
