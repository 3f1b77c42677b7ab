// Test program that prints system information and writes to the log. A process reads its settings
// only once, so the tests start a new process for each case.
#include <dlog.h>
#include <system_info.h>

#include <cstdio>

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        int value = 0;
        if (system_info_get_custom_int(argv[i], &value) == 0) {
            std::printf("%s=%d\n", argv[i], value);
        } else {
            std::printf("no %s\n", argv[i]);
        }
    }
    for (int priority = DLOG_PRIORITY_DEBUG; priority <= DLOG_PRIORITY_ERROR; ++priority) {
        dlog_print(priority, "TEST", "priority %d", priority);
    }
}
