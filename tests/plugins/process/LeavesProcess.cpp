// A plugin that leaves a process behind, in a new session and with a parent that has exited. The
// process writes its ID to the FIFO that FIXTURE_FIFO names, and keeps the FIFO open.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    int ready[2];  // the process closes it after writing its ID
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
