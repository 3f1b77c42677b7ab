// The platform log of the command itself. It runs code of the daemon, whose lines are
// for the daemon's log; the command says what there is to say on its own.
#include <dlog.h>

int __dlog_print(int, int, const char*, const char*, ...) {
    return 0;
}

int dlog_print(int, const char*, const char*, ...) {
    return 0;
}
