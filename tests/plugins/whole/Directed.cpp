// A plugin that obeys the adapter's new name: subscribe, unsubscribe, wait, work or throw.
#include <IRequestBroker.h>
#include <dlog.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace {

IRequestBroker* pluginBroker = nullptr;

// Waits until the test has opened the other end of the FIFO.
void waitForTest() {
    dlog_print(DLOG_PRIORITY_INFO, "DIRECTED", "waiting");
    close(open(std::getenv("CORVANE_TEST_FIFO"), O_RDONLY));
    dlog_print(DLOG_PRIORITY_INFO, "DIRECTED", "done");
}

void work(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
    }
}

void obey(char* name, void*) {
    const std::string_view order = name;
    if (order == "subscribe") {
        pluginBroker->SoundManagerSetSpeakerChangedCb([](sound_tv_output_route_e, void*) {},
                                                      nullptr);
    } else if (order == "unsubscribe") {
        pluginBroker->SoundManagerUnetSpeakerChangedCb();
    } else if (order == "wait") {
        waitForTest();
    } else if (order == "work") {
        work(std::chrono::milliseconds(20));
    } else if (order == "throw") {
        throw std::runtime_error("thrown by a plugin");
    }
}

}  // namespace

extern "C" int PLUGIN_INIT(void* broker) {
    pluginBroker = static_cast<IRequestBroker*>(broker);
    pluginBroker->BtAdapterSetNameChangedCb(&obey, nullptr);
    return 0;
}

extern "C" void PLUGIN_DEINIT() {
    pluginBroker->BtAdapterUnsetNameChangedCb();
    pluginBroker->SoundManagerUnetSpeakerChangedCb();
}
