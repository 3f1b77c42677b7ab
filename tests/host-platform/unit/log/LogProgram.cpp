// Test program that writes to the log. The tests run it in a process of its own, because they
// change the environment, the standard error or the way in which the process ends.
#include <dlog.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

int log(const std::string& text) {
    return dlog_print(DLOG_PRIORITY_INFO, "TEST", "%s", text.c_str());
}

int logEachPriority() {
    for (int priority = DLOG_PRIORITY_DEBUG; priority <= DLOG_PRIORITY_ERROR; ++priority) {
        dlog_print(priority, "TEST", "priority %d", priority);
    }
    return 0;
}

int logFromThreads() {
    constexpr int lines = 100;
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        threads.emplace_back([letter] {
            for (int line = 0; line < lines; ++line) {
                const std::size_t size = line == lines / 2 ? 100000 : line % 2 == 0 ? 8000 : 10;
                log(std::string(size, letter));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    return 0;
}

int logAtExit() {
    std::atexit([] { log("later"); });
    log("before");
    return 0;
}

int endBySignal(int number) {
    log("before");
    return raise(number);
}

int endByFault() {
    log("before");
    auto* const nothing =
        static_cast<char*>(mmap(nullptr, 1, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    *static_cast<volatile char*>(nothing) = 1;
    return 1;
}

int endAtOnce() {
    log("before");
    _exit(0);
}

int logInChild() {
    log("before");
    const pid_t child = fork();
    if (child == 0) {
        log("child");
        std::exit(0);
    }
    waitpid(child, nullptr, 0);
    log("after");
    return 0;
}

int logInto(int fd) {
    dup2(fd, STDERR_FILENO);
    const int result = log("lost");
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

// Closes the standard error. The next file that is opened gets its descriptor number, and the log
// must not write to that file.
int logIntoNothing() {
    close(STDERR_FILENO);
    const int lost = log("lost");
    const int other = open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const int stillLost = log("lost");
    struct stat status {};
    fstat(other, &status);
    return lost < 0 && stillLost < 0 && other == STDERR_FILENO && status.st_size == 0 ? 0 : 1;
}

// Fills a non-blocking pipe with a line that is longer than the pipe, then empties it.
int logIntoFullPipe() {
    int ends[2];
    if (pipe2(ends, O_NONBLOCK) != 0) {
        return 1;
    }
    dup2(ends[1], STDERR_FILENO);
    const std::string text(1 << 20, 'x');
    const bool failed = log(text) < 0;
    const auto empty = [&] {
        char buffer[4096];
        for (ssize_t size; (size = read(ends[0], buffer, sizeof buffer)) > 0;) {
            std::fwrite(buffer, 1, static_cast<std::size_t>(size), stdout);
        }
    };
    empty();
    log("after");
    empty();
    return failed ? 0 : 1;
}

std::atomic<bool> forkHasBegun = false;

// Forks while another thread has written only a part of a line, and logs in the child.
int forkWithinALine() {
    int ends[2];
    if (pipe(ends) != 0) {
        return 1;
    }
    dup2(ends[1], STDERR_FILENO);
    log("before");
    // fork() runs this handler before those that were registered earlier, such as the log's.
    pthread_atfork(
        [] {
            forkHasBegun = true;
            forkHasBegun.notify_one();
        },
        nullptr, nullptr);
    std::thread writer([] { log(std::string(1 << 20, 'x')); });
    for (int size = 0; size < 4096;) {
        ioctl(ends[0], FIONREAD, &size);
    }
    std::thread reader([&] {
        forkHasBegun.wait(false);
        for (char buffer[4096]; read(ends[0], buffer, sizeof buffer) > 0;) {
        }
    });
    const pid_t child = fork();
    if (child == 0) {
        alarm(10);
        _exit(log("child") == 5 ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    writer.join();
    close(STDERR_FILENO);
    close(ends[1]);
    reader.join();
    return status == 0 ? 0 : 1;
}

}  // namespace

int main(int, char** argv) {
    const std::map<std::string_view, int (*)()> actions{
        {"priorities", logEachPriority},
        {"threads", logFromThreads},
        {"at-exit", logAtExit},
        {"kill", [] { return endBySignal(SIGKILL); }},
        {"abort", [] { return endBySignal(SIGABRT); }},
        {"signal", [] { return endBySignal(SIGBUS); }},
        {"fault", endByFault},
        {"exit", endAtOnce},
        {"child", logInChild},
        {"closed-pipe", logIntoClosedPipe},
        {"full-device", [] { return logInto(open("/dev/full", O_WRONLY | O_CLOEXEC)); }},
        {"closed", logIntoNothing},
        {"cut-off", logIntoFullPipe},
        {"fork-within-a-line", forkWithinALine}};
    return actions.at(argv[1])();
}
