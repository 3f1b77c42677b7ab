// An exception leaves a callback.
#include <stdexcept>

#include "tests/plugins/check/Subscriber.h"

namespace {

void onName(char*, void*) {
    throw std::runtime_error("from a callback");
}

}  // namespace
