// Leaves a process in a session of its own, whose parent has ended. It holds a FIFO open, into
// which it has written its number.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    int ready[2];  // closed by the process once its number is written
    if (pipe(ready) != 0) {
        return -1;
    }
    const pid_t parent = fork();
    if (parent == 0) {
        setsid();
        if (fork() == 0) {
            const int fifo = open(getenv("FIXTURE_FIFO"), O_WRONLY);
            const auto number = std::to_string(getpid()) + '\n';
            if (write(fifo, number.data(), number.size()) > 0) {
                close(ready[1]);
                while (true) {
                    pause();
                }
            }
        }
        _exit(EXIT_SUCCESS);
    }
    close(ready[1]);
    char none = 0;
    const bool isReady = read(ready[0], &none, 1) == 0;
    close(ready[0]);
    return isReady && waitpid(parent, nullptr, 0) == parent ? 0 : -1;
}

void PLUGIN_DEINIT() {}
