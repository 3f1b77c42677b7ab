// Test program that binds a socket to the journal's path, writes to the log and prints the records
// that it receives, with '|' between the fields.
#include <dlog.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr const char* JOURNAL_PATH = "/run/systemd/journal/socket";

int openJournal() {
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, JOURNAL_PATH);
    if (bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        std::perror(JOURNAL_PATH);
        std::exit(1);
    }
    return fd;
}

// Formats a record for printing. A value that contains newlines is preceded by its size, in eight
// bytes, instead of '='; it is printed after ':'.
std::string readable(std::string_view record) {
    std::string result;
    while (!record.empty()) {
        const auto end = record.find_first_of("=\n");
        const std::string_view name = record.substr(0, end);
        std::string_view value;
        if (record[end] == '=') {
            value = record.substr(end + 1, record.find('\n') - end - 1);
            record.remove_prefix(record.find('\n') + 1);
        } else {
            std::uint64_t size = 0;
            std::memcpy(&size, record.data() + end + 1, sizeof size);
            value = record.substr(end + 1 + sizeof size, size);
            record.remove_prefix(end + 1 + sizeof size + size + 1);
        }
        result.append(result.empty() ? "" : "|").append(name);
        result.append(value.find('\n') == value.npos ? "=" : ":").append(value);
    }
    return result;
}

void writeRecords(int journal) {
    std::array<char, 65536> buffer;
    for (ssize_t size; (size = recv(journal, buffer.data(), buffer.size(), 0)) >= 0;) {
        std::puts(readable({buffer.data(), static_cast<std::size_t>(size)}).c_str());
    }
}

void announceStream(bool ours) {
    struct stat status {};
    fstat(STDERR_FILENO, &status);
    setenv("JOURNAL_STREAM",
           (std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino + (ours ? 0 : 1)))
               .c_str(),
           1);
}

void setOutput(const char* output) {
    const int fd = memfd_create("settings", 0);
    dprintf(fd, "[log]\noutput = %s\n", output);
    setenv("CORVANE_PLATFORM_CONF", ("/proc/self/fd/" + std::to_string(fd)).c_str(), 1);
}

void info(const char* text) {
    dlog_print(DLOG_PRIORITY_INFO, "TEST", "%s", text);
}

void logPlaces() {
    constexpr int priority = DLOG_PRIORITY_INFO;
    dlog_print(priority, "TEST", "%s: %s(%d) > go %d", "main.cpp", "start", 42, 1);
    dlog_print(priority, "TEST", "%s: %s(%d) > ", "a.h", "operator()", 7);
    const char* volatile missing = nullptr;  // volatile: the compiler rejects a known null
    dlog_print(priority, "TEST", "%s: %s(%d) > go", "main.cpp", missing, 42);
    dlog_print(priority, "TEST", "%s: %s(%d) - go", "main.cpp", "start", 42);
    info("main.cpp: start(42) > go");
}

}  // namespace

int main(int, char** argv) {
    const std::string_view what = argv[1];
    if (what == "missing") {
        setOutput("journal");
        info("here");
        return 0;
    }
    const int journal = openJournal();
    if (what == "forced") {
        setOutput("journal");
        info("here");
        writeRecords(journal);
        return 0;
    }
    announceStream(what != "elsewhere");
    if (what == "priorities") {
        for (int priority = DLOG_PRIORITY_DEBUG; priority <= DLOG_PRIORITY_ERROR; ++priority) {
            dlog_print(priority, "TEST", "priority %d", priority);
        }
    } else if (what == "places") {
        logPlaces();
    } else if (what == "lines") {
        dlog_print(DLOG_PRIORITY_INFO, nullptr, "%s", "a\nb\n\n");
        info("c\n");
        info(
            "d\te\x1b[1m\xc2\x9b"
            "f\nCODE_LINE=1");
    } else {
        info("here");
    }
    writeRecords(journal);
    if (what == "dead") {
        close(journal);
        return dlog_print(DLOG_PRIORITY_INFO, "TEST", "lost") < 0 ? 0 : 1;
    }
    return 0;
}
