// A program that logs, for tests of what a process has only one of: its
// environment, its standard error and its threads.
#include <dlog.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

int logEachPriority() {
    for (int priority = DLOG_PRIORITY_DEBUG; priority <= DLOG_PRIORITY_ERROR; ++priority) {
        dlog_print(priority, "TEST", "priority %d", priority);
    }
    return 0;
}

int logFromThreads(int threads, int lines) {
    std::vector<std::thread> running;
    for (int thread = 0; thread < threads; ++thread) {
        running.emplace_back([=] {
            const std::string text(8000, static_cast<char>('a' + thread));
            for (int line = 0; line < lines; ++line) {
                dlog_print(DLOG_PRIORITY_INFO, "TEST", "<%s>",
                           line % 2 == 0 ? text.c_str() : text.substr(0, 10).c_str());
            }
        });
    }
    for (auto& thread : running) {
        thread.join();
    }
    return 0;
}

int logInto(int fd) {
    dup2(fd, STDERR_FILENO);
    const int result = dlog_print(DLOG_PRIORITY_INFO, "TEST", "lost");
    sigset_t pending;
    sigpending(&pending);
    std::printf("result %s, SIGPIPE %s\n", result < 0 ? "negative" : "not negative",
                sigismember(&pending, SIGPIPE) == 0 ? "not pending" : "pending");
    return 0;
}

int logIntoClosedPipe() {
    int ends[2];
    if (pipe(ends) != 0) {
        return 1;
    }
    close(ends[0]);
    return logInto(ends[1]);
}

// What is opened next has the number of the standard error.
int logIntoNothing() {
    close(STDERR_FILENO);
    const int lost = dlog_print(DLOG_PRIORITY_INFO, "TEST", "lost");
    const int other = open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const int stillLost = dlog_print(DLOG_PRIORITY_INFO, "TEST", "lost");
    struct stat status {};
    fstat(other, &status);
    return lost < 0 && stillLost < 0 && other == STDERR_FILENO && status.st_size == 0 ? 0 : 1;
}

// Fills a pipe that doesn't wait with a line longer than it, then empties it.
int logIntoFullPipe() {
    int ends[2];
    if (pipe2(ends, O_NONBLOCK) != 0) {
        return 1;
    }
    dup2(ends[1], STDERR_FILENO);
    const std::string text(1 << 20, 'x');
    const bool failed = dlog_print(DLOG_PRIORITY_INFO, "TEST", "%s", text.c_str()) < 0;
    const auto empty = [&] {
        char buffer[4096];
        for (ssize_t size; (size = read(ends[0], buffer, sizeof buffer)) > 0;) {
            std::fwrite(buffer, 1, static_cast<std::size_t>(size), stdout);
        }
    };
    empty();
    dlog_print(DLOG_PRIORITY_INFO, "TEST", "after");
    empty();
    return failed ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "priorities") {
        return logEachPriority();
    }
    if (what == "threads") {
        return logFromThreads(4, 100);
    }
    if (what == "closed-pipe") {
        return logIntoClosedPipe();
    }
    if (what == "full-device") {
        return logInto(fileno(std::fopen("/dev/full", "w")));
    }
    if (what == "closed") {
        return logIntoNothing();
    }
    if (what == "cut-off") {
        return logIntoFullPipe();
    }
    return 2;
}
