// A plugin whose callback takes 300 ms.
#include <chrono>
#include <thread>

#include "tests/plugins/NameSubscriber.h"

namespace {

void onName(char*, void*) {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
}

}  // namespace
