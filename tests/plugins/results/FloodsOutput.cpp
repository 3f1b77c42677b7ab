// A plugin whose callback writes to the standard output without end.
#include <unistd.h>

#include <string>

#include "tests/plugins/NameSubscriber.h"

namespace {

void onName(char*, void*) {
    const std::string text(1 << 20, 'x');
    while (write(STDOUT_FILENO, text.data(), text.size()) > 0) {
    }
}

}  // namespace
