// A plugin for the soak test. It reads one-letter commands from the FIFO "<NAME>.control":
//   j  subscribes to all 42 kinds of events
//   l  unsubscribes from all of them
//   c  subscribes and unsubscribes in turn, every 10 ms, until the next command
//   h  subscribes a second task context, which is being terminated while events arrive
//   r  lets the termination of that context complete
//   e  deletes that context and reports how many tasks it was given and how many it ran
//   q  ends the plugin's thread (sent by PLUGIN_DEINIT)
// It reports each completed command except q on the standard error. It allocates no memory that it
// does not free.
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
    // Runs the tasks that were queued while the previous runner was stopping.
    pluginBroker->RequestToInvokeInTaskExecutor([](void*) {}, nullptr);
}

/// A subscriber whose task context has been told to terminate, so that its tasks never run.
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
    /// Lets the termination complete: tasks queued after it are dropped, new ones are refused.
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

/// Waits for the next command and returns it. If `isPeriodic`, returns nothing after PERIOD_MS.
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
    // Opened for writing too, so that read() meets no end of file when a writer closes the FIFO.
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
