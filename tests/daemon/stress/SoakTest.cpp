// Runs the real daemon for a long time, with one plugin that stays subscribed and two that
// subscribe and unsubscribe repeatedly. The daemon must not leak memory or files, except for one
// intended leak, which is checked to the byte. CORVANE_SOAK_SECONDS sets the duration.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "taskExecutor/ShortLived.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonDirectory.h"
#include "tools/corvane/events/InjectClient.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using corvane::host::allEvents;
using corvane::host::Event;
using corvane::host::Values;
using corvane::tool::InjectClient;

constexpr int SENDERS = 4;
constexpr int AIMED_AT_PER_SECOND = 6000;  // high enough to reach 5000
constexpr auto PACE = std::chrono::nanoseconds(1'000'000'000LL * SENDERS / AIMED_AT_PER_SECOND);
constexpr auto MINUTE = std::chrono::seconds(60);
constexpr auto WARM_UP = std::chrono::seconds(5);
constexpr int DROPPED = 100;  // tasks discarded behind a termination; as many are refused
constexpr auto SOUND_SERVER_PERIOD = std::chrono::seconds(3);  // the daemon searches every 2 s
const std::string ADDRESS = "AA:BB:CC:DD:EE:FF";

std::chrono::seconds duration() {
    const char* const seconds = getenv("CORVANE_SOAK_SECONDS");
    return std::chrono::seconds(seconds == nullptr ? SOAK_SECONDS : std::stol(seconds));
}

struct Heap {
    long bytes;
    long blocks;
    long taskBlocks;  // blocks of the size that threads keep for tasks, in use or kept

    /// Ignores taskBlocks: the number of kept blocks varies within a bound.
    bool operator==(const Heap& other) const {
        return bytes == other.bytes && blocks == other.blocks;
    }
};

std::ostream& operator<<(std::ostream& out, const Heap& heap) {
    return out << heap.bytes << " bytes in " << heap.blocks << " blocks, for tasks "
               << heap.taskBlocks;
}

class SoakTest : public testing::Test {
protected:
    SoakTest() {
        for (const std::string plugin : {"stays", "passes_a", "passes_b"}) {
            m_directory.addPlugin(PLUGIN_DIRECTORY "/soak_" + plugin + ".so");
            mkfifo((m_directory.directory() / (plugin + ".control")).c_str(), 0600);
        }
        m_directory.setSettings("[inject]\nthreads = 4\n");
        m_directory.setEnvironment("CORVANE_LOG_LEVEL", "error");
        m_directory.setEnvironment("LD_PRELOAD", HEAP_COUNTER);
        m_daemon = std::make_unique<ChildProcess>(m_directory.daemon());
        for (int i = 0; i < 3; ++i) {
            if (!m_daemon->waitForLine(" is here")) {
                throw std::runtime_error("the daemon did not start: " + m_daemon->errors());
            }
        }
        for (int i = 0; i < SENDERS; ++i) {
            m_peers.push_back(std::make_unique<InjectClient>(m_directory.socket()));
        }
    }

    /// Sends a command letter to a plugin and waits until the plugin has executed it. Returns the
    /// plugin's answer.
    std::string tell(const std::string& plugin, char word) {
        const int pipe =
            open((m_directory.directory() / (plugin + ".control")).c_str(), O_WRONLY | O_CLOEXEC);
        static_cast<void>(!write(pipe, &word, 1));
        close(pipe);
        return m_daemon->waitForLine(plugin + " did " + word).value_or("");
    }

    Heap heap() {
        m_daemon->sendSignal(SIGRTMIN + 5);
        const std::string line = m_daemon->waitForLine("heap in use: ").value_or("");
        Heap heap{-1, -1, -1};
        std::sscanf(line.c_str(), "heap in use: %ld bytes in %ld blocks, for tasks %ld",
                    &heap.bytes, &heap.blocks, &heap.taskBlocks);
        return heap;
    }

    /// Returns the heap in use while no plugin is subscribed and no delivery is running. It is the
    /// minimum over more than one period of the search for a sound server. Meanwhile events without
    /// subscribers are emitted, so that every delivery thread runs.
    Heap settledHeap() {
        const Event& event = *corvane::host::findEvent("bt-adapter-name-changed");
        Heap least = heap();
        for (auto since = Clock::now(); Clock::now() < since + SOUND_SERVER_PERIOD;) {
            for (const auto& peer : m_peers) {
                EXPECT_EQ(peer->emit(event, Values(event)), 0u);
            }
            const Heap now = heap();
            if (now.bytes < least.bytes) {
                least = now;
                since = Clock::now();
            }
        }
        return least;
    }

    /// Sends events until `end` at PACE, or more slowly if the daemon can't keep up. Returns their
    /// number.
    long send(int sender, Clock::time_point end) {
        std::vector<Values> values;
        for (const Event& event : allEvents()) {
            values.emplace_back(event);
        }
        const auto start = Clock::now();
        long sent = 0;
        while (Clock::now() < end) {
            const auto index = static_cast<std::size_t>(sender + sent) % values.size();
            EXPECT_EQ(
                m_peers[static_cast<std::size_t>(sender)]->emit(allEvents()[index], values[index]),
                1u);
            ++sent;
            std::this_thread::sleep_until(start + sent * PACE);
        }
        return sent;
    }

    /// Subscribes all plugins, sends events for `time`, and unsubscribes the two plugins that come
    /// and go. Returns the number of events sent.
    template <typename Watch>
    long round(std::chrono::seconds time, Watch watch) {
        tell("stays", 'j');
        tell("passes_a", 'c');
        tell("passes_b", 'c');
        std::atomic<long> sent = 0;
        const auto end = Clock::now() + time;
        {
            std::vector<std::jthread> running;
            for (int sender = 0; sender < SENDERS; ++sender) {
                running.emplace_back([&, sender] { sent += send(sender, end); });
            }
            watch(end);
        }
        tell("passes_a", 'l');
        tell("passes_b", 'l');
        return sent;
    }

    /// Makes the daemon drop tasks of connection events: one half is queued behind a termination,
    /// the other half is refused after it. Returns the plugin's answer about them.
    std::string dropTasks() {
        tell("stays", 'h');
        emitConnections();
        tell("stays", 'r');
        emitConnections();
        return tell("stays", 'e');
    }

    void emitConnections() {
        const Event& event = *corvane::host::findEvent("bt-device-connection-state-changed");
        Values values(event);
        values.set(*corvane::host::findField(event, "remote_address"), ADDRESS);
        for (int i = 0; i < DROPPED; ++i) {
            EXPECT_EQ(m_peers.front()->emit(event, values), 1u);
        }
    }

    fs::path ofProcess(const std::string& file) const {
        return fs::path("/proc") / std::to_string(m_daemon->id()) / file;
    }
    std::ptrdiff_t openFiles() const {
        return std::distance(fs::directory_iterator(ofProcess("fd")), fs::directory_iterator());
    }
    long status(const std::string& name) const {
        std::ifstream status(ofProcess("status"));
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with(name + ":")) {
                return std::stol(line.substr(name.size() + 1));
            }
        }
        return -1;
    }
    long residentKiB() const { return status("VmRSS"); }
    long mostKeptBlocks() const {
        return status("Threads") * static_cast<long>(ShortLived::CAPACITY);
    }

    /// Maximum memory in the first tenth of the time, at most a minute, and afterwards.
    struct Samples {
        long residentEarly = 0;
        long residentLate = 0;
        // Minimum in each half of the remaining time: the search for a sound server opens some
        // files.
        std::ptrdiff_t filesEarly = 1'000'000;
        std::ptrdiff_t filesLate = 1'000'000;
    };
    Samples watch(Clock::time_point end) const {
        Samples samples;
        const auto early =
            Clock::now() + std::min<Clock::duration>(Clock::duration(duration()) / 10, MINUTE);
        const auto late = early + (end - early) / 2;
        for (auto next = Clock::now(); next < end; next += std::chrono::milliseconds(250)) {
            std::this_thread::sleep_until(next);
            auto& resident = next < early ? samples.residentEarly : samples.residentLate;
            resident = std::max(resident, residentKiB());
            if (next < early) {
                continue;
            }
            auto& files = next < late ? samples.filesEarly : samples.filesLate;
            files = std::min(files, openFiles());
        }
        return samples;
    }

    DaemonDirectory m_directory;
    std::unique_ptr<ChildProcess> m_daemon;
    std::vector<std::unique_ptr<InjectClient>> m_peers;
};

long numberBehind(const std::string& line, const std::string& text) {
    const auto place = line.find(text);
    return place == line.npos ? -1 : std::stol(line.substr(place + text.size()));
}

}  // namespace

TEST_F(SoakTest, NothingIsLeftBehindButTheIntendedLeak) {
    const long warming = round(WARM_UP, [](Clock::time_point) {});
    EXPECT_EQ(numberBehind(tell("stays", 'l'), "l: "), warming);
    dropTasks();
    const Heap before = settledHeap();
    const auto filesBefore = openFiles();

    Samples samples;
    const auto start = Clock::now();
    const long sent = round(duration(), [&](Clock::time_point end) { samples = watch(end); });
    const std::chrono::duration<double> time = Clock::now() - start;
    const std::string last = tell("stays", 'l');
    const Heap after = settledHeap();
    const auto filesAfter = openFiles();

    std::cout << sent << " events in " << static_cast<long>(time.count())
              << " s: " << static_cast<long>(static_cast<double>(sent) / time.count())
              << " each second\n";
    std::cout << "received by the plugin that stays: " << numberBehind(last, "l: ") - warming
              << "\n";
    std::cout << "joined and left: " << numberBehind(tell("passes_a", 'l'), "received, ") << " and "
              << numberBehind(tell("passes_b", 'l'), "received, ") << " times\n";
    std::cout << "heap in use: " << before << " before, " << after << " after\n";
    std::cout << "resident: " << samples.residentEarly << " KiB at first, grown by "
              << samples.residentLate - samples.residentEarly << " KiB\n";
    std::cout << "open files: " << filesBefore << " before, " << samples.filesEarly << " and later "
              << samples.filesLate << " meanwhile, " << filesAfter << " after\n";
    EXPECT_EQ(numberBehind(last, "l: "), warming + sent);
    EXPECT_EQ(after, before);
    EXPECT_LE(after.taskBlocks, mostKeptBlocks());
    EXPECT_LE(samples.residentLate - samples.residentEarly, 1024);
    EXPECT_EQ(samples.filesLate, samples.filesEarly);
    EXPECT_EQ(filesAfter, filesBefore);

    const std::string said = dropTasks();
    const auto size = static_cast<long>(ADDRESS.size() + 1);
    const Heap leaking{before.bytes + 2 * DROPPED * size, before.blocks + 2 * DROPPED, 0};
    const Heap leaked = settledHeap();
    std::cout << "tasks dropped: " << numberBehind(said, "handed ")
              << "; addresses left: " << leaked.blocks - before.blocks << ", of " << size
              << " bytes each: " << leaked.bytes - before.bytes << " bytes\n";
    EXPECT_EQ(numberBehind(said, "handed "), 2 * DROPPED);
    EXPECT_EQ(numberBehind(said, "ran "), 0);
    EXPECT_EQ(leaked, leaking);
    EXPECT_LE(leaked.taskBlocks, mostKeptBlocks());
    EXPECT_EQ(m_daemon->terminate(), 0) << m_daemon->errors();
}
