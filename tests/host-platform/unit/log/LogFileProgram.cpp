// A program that logs into the file of its settings, and ends in one of several ways:
// log_file_program WHAT FILE.
#include <dlog.h>
#include <limits.h>
#include <signal.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

void say(const char* text, int priority = DLOG_PRIORITY_INFO) {
    dlog_print(priority, "TEST", "%s", text);
}

// Returns when the file has been changed, with nothing else to write it than time.
void waitForTime(const char* file) {
    say("there at once", DLOG_PRIORITY_ERROR);
    const int watch = inotify_init1(IN_CLOEXEC);
    inotify_add_watch(watch, file, IN_MODIFY);
    say("waits");
    char event[sizeof(inotify_event) + NAME_MAX + 1];
    if (read(watch, event, sizeof event) <= 0) {
        _exit(1);
    }
    close(watch);
}

// The handler runs behind the log's own end.
void endTwice() {
    std::atexit([] { say("later"); });
    say("before");
}

void fault() {
    say("before");
    auto* const nothing =
        static_cast<char*>(mmap(nullptr, 1, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    *static_cast<volatile char*>(nothing) = 1;
}

// A thread that still starts may hold locks of the sanitizers, which a child would wait for.
void endByChild(const char* file) {
    waitForTime(file);
    say("before");
    const pid_t child = fork();
    if (child == 0) {
        say("child");
        std::exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    say("after");
}

void logFromThreads() {
    constexpr int lines = 100;
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        threads.emplace_back([letter] {
            for (int line = 0; line < lines; ++line) {
                const std::size_t size = line == lines / 2 ? 100000 : line % 2 == 0 ? 8000 : 10;
                say(std::string(size, letter).c_str());
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

}  // namespace

int main(int, char** argv) {
    const std::string_view what = argv[1];
    if (what == "in-time") {
        waitForTime(argv[2]);
        _exit(0);
    } else if (what == "no-end") {
        say("before");
        _exit(0);
    } else if (what == "error") {
        say("before");
        say("error", DLOG_PRIORITY_ERROR);
        _exit(0);
    } else if (what == "end") {
        endTwice();
    } else if (what == "abort") {
        say("before");
        std::abort();
    } else if (what == "signal") {
        say("before");
        raise(SIGBUS);
    } else if (what == "fault") {
        fault();
    } else if (what == "fork") {
        endByChild(argv[2]);
    } else if (what == "threads") {
        logFromThreads();
    } else {
        return 2;
    }
    return 0;
}
