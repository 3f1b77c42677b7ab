// A plugin for the soak test, told what to do through the pipe "<NAME>.control": j, l
// subscribe to all 42 kinds and leave them; c comes and goes every 10 ms until the next
// word; h, r, e subscribe a task context of its own that is terminated while events come
// (h), lets it end (r), and says how many tasks it was handed and ran (e). The standard
// error says when each is done. Allocates nothing that stays.
#include <IRequestBroker.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <optional>
#include <semaphore>
#include <thread>

#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/ITaskInvoker.h"
#include "taskExecutor/TaskExecutor.h"

namespace {

constexpr int PERIOD_MS = 10;

IRequestBroker* pluginBroker = nullptr;
std::atomic<long> received = 0;
int control = -1;
int rounds = 0;
std::thread worker;

__attribute__((format(printf, 1, 2))) void say(const char* format, ...) {
    char text[160];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    static_cast<void>(!write(2, text, static_cast<std::size_t>(length)));
}

void join() {
#define EVENT(source, type, value, subscribe, unsubscribe, set, unset, Callback, types) \
    pluginBroker->subscribe([](auto...) { ++received; }, nullptr);
#include "tests/support/EventTable.def"
#undef EVENT
}

void leave() {
#define EVENT(source, type, value, subscribe, unsubscribe, set, unset, Callback, types) \
    pluginBroker->unsubscribe();
#include "tests/support/EventTable.def"
#undef EVENT
    // Brings along what was queued while a runner left.
    pluginBroker->RequestToInvokeInTaskExecutor([](void*) {}, nullptr);
}

/// A subscriber whose tasks never run: its context is terminated.
class Guest : public ITaskInvoker {
public:
    Guest() {
        m_executor->Initiate(0, 0);
        m_holder = std::thread([this] {
            m_executor->Schedule([this] {
                m_executor->TerminateSync(0);
                m_terminating.release();
                m_end.acquire();
            });
        });
        m_terminating.acquire();
        m_broker.BtDeviceSetConnectionStateChangedCb(
            [](bool, bt_device_connection_info_s*, void* counter) {
                ++*static_cast<std::atomic<long>*>(counter);
            },
            &ran);
    }
    ~Guest() override { m_broker.BtDeviceUnsetConnectionStateChangedCb(); }

    void invokeTask(const ITaskInvoker::Task& task) override {
        ++handedIn;
        m_executor->Schedule(task);
    }
    /// What is queued behind the termination is discarded, what comes is refused.
    void terminate() {
        m_end.release();
        m_holder.join();
    }

    std::atomic<long> handedIn = 0;
    std::atomic<long> ran = 0;

private:
    std::shared_ptr<TaskExecutor> m_executor = TaskExecutor::Create();
    RequestBroker m_broker{this};
    std::binary_semaphore m_terminating{0};
    std::binary_semaphore m_end{0};
    std::thread m_holder;
};

/// The next word, or nothing after PERIOD_MS.
std::optional<char> nextWord(bool isPeriodic) {
    pollfd fd{control, POLLIN, 0};
    char word = 0;
    if (poll(&fd, 1, isPeriodic ? PERIOD_MS : -1) > 0 && read(control, &word, 1) == 1) {
        return word;
    }
    return std::nullopt;
}

void work() {
    std::optional<Guest> guest;
    bool comesAndGoes = false;
    bool isThere = false;
    while (true) {
        const auto word = nextWord(comesAndGoes);
        const bool wants = word == 'j' || (!word && comesAndGoes && !isThere);
        if (isThere && !wants) {
            leave();
        } else if (!isThere && wants) {
            join();
            ++rounds;
        }
        isThere = wants;
        if (!word) {
            continue;
        }
        comesAndGoes = word == 'c';
        if (word == 'q') {
            return;
        }
        if (word == 'h') {
            guest.emplace();
        } else if (word == 'r') {
            guest->terminate();
        } else if (word == 'e') {
            const long handedIn = guest->handedIn;
            const long ran = guest->ran;
            guest.reset();
            say(NAME " did e: handed %ld, ran %ld\n", handedIn, ran);
            continue;
        }
        say(NAME " did %c: %ld received, %d rounds\n", *word, received.load(), rounds);
    }
}

}  // namespace

extern "C" int PLUGIN_INIT(void* broker) {
    pluginBroker = static_cast<IRequestBroker*>(broker);
    // For writing too, or the end of a writer would be the end of the pipe.
    control = open(NAME ".control", O_RDWR | O_CLOEXEC);
    worker = std::thread(work);
    say(NAME " is here\n");
    return control < 0 ? -1 : 0;
}

extern "C" void PLUGIN_DEINIT() {
    static_cast<void>(!write(control, "q", 1));
    worker.join();
    close(control);
}
