// Figures that don't depend on the machine's load: bench_counts prints, as JSON, the allocations of
// a delivery and of a hand-off, and the heap size of an idle plugin. bench_counts EVENTS delivers
// that many events to eight plugins, for a program that counts instructions.
#include <malloc.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "bench/subjects/DaemonSide.h"
#include "daemon/src/Plugin.h"

namespace {

std::atomic<long> g_allocations = 0;

void* allocate(std::size_t size) {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

constexpr int SUBSCRIBERS = 8;
constexpr int ROUNDS = 1000;
constexpr int PLUGINS = 1000;

class Fan {
public:
    Fan() {
        for (Subscriber& subscriber : m_subscribers) {
            m_product.subscribe(&Subscriber::onState, &subscriber);
        }
        emit(1);
    }
    void emit(int events) {
        for (int i = 0; i < events; ++i) {
            m_product.emit(0, BT_ADAPTER_STATE_ON);
        }
    }

private:
    std::vector<Subscriber> m_subscribers{SUBSCRIBERS};
    Product<bt_adapter_state_changed_cb> m_product;
};

double allocationsOfADelivery() {
    Fan fan;
    const long before = g_allocations;
    fan.emit(ROUNDS);
    return static_cast<double>(g_allocations - before) / (ROUNDS * SUBSCRIBERS);
}

double allocationsOfAHandOff() {
    TaskInvokerImpl invoker;
    long done = 0;
    long step = 1;
    const auto task = [&done, &step] { done += step; };
    const long before = g_allocations;
    for (int i = 0; i < ROUNDS; ++i) {
        invoker.invokeTask(task);
    }
    return static_cast<double>(g_allocations - before) / ROUNDS;
}

double bytesOfAnIdlePlugin() {
    std::vector<std::unique_ptr<Plugin>> plugins(PLUGINS);
    const std::size_t before = mallinfo2().uordblks;
    for (auto& plugin : plugins) {
        plugin = std::make_unique<Plugin>();
        plugin->create("libplugin.so");
    }
    return static_cast<double>(mallinfo2().uordblks - before) / PLUGINS;
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

int main(int argc, char** argv) {
    if (argc > 1) {
        Fan().emit(std::atoi(argv[1]));
        return 0;
    }
    std::printf(
        "{\"allocations of a delivery\": %g, \"allocations of a hand-off\": %g, "
        "\"bytes of an idle plugin\": %.0f}\n",
        allocationsOfADelivery(), allocationsOfAHandOff(), bytesOfAnIdlePlugin());
    return 0;
}
