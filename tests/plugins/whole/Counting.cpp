// A plugin that counts the events of the adapter's name, whose names are "SENDER NUMBER".
// PLUGIN_DEINIT logs how many there were, and how many were not in the order of their sender.
#include <IRequestBroker.h>
#include <dlog.h>

#include <array>
#include <cstdlib>

namespace {

IRequestBroker* pluginBroker = nullptr;
std::array<long, 10> next{};
long misplaced = 0;

void count(char* name, void*) {
    char* rest = nullptr;
    auto& expected = next.at(static_cast<std::size_t>(std::strtol(name, &rest, 10)));
    misplaced += std::strtol(rest, nullptr, 10) == expected ? 0 : 1;
    ++expected;
}

}  // namespace

extern "C" int PLUGIN_INIT(void* broker) {
    pluginBroker = static_cast<IRequestBroker*>(broker);
    pluginBroker->BtAdapterSetNameChangedCb(&count, nullptr);
    return 0;
}

extern "C" void PLUGIN_DEINIT() {
    pluginBroker->BtAdapterUnsetNameChangedCb();
    long all = 0;
    for (const long counted : next) {
        all += counted;
    }
    dlog_print(DLOG_PRIORITY_INFO, "COUNTING", "counted %ld, misplaced %ld", all, misplaced);
}
