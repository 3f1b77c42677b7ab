// The named pipe "gate" in the daemon's directory. Fixtures read from it and so wait until the test
// lets them pass.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

#include "tests/support/process/Sandbox.h"

/// Owner: the test, which uses it on one thread. Errors: std::runtime_error.
class PipeGate {
public:
    explicit PipeGate(const Sandbox& sandbox) {
        const auto path = sandbox.directory() / "gate";
        // Opened for reading and writing, so that open() does not block and no writer gets EPIPE.
        if (mkfifo(path.c_str(), 0600) != 0 ||
            (m_fd = open(path.c_str(), O_RDWR | O_CLOEXEC)) < 0) {
            throw std::runtime_error("no gate can be made");
        }
    }
    ~PipeGate() { close(m_fd); }
    PipeGate(const PipeGate&) = delete;
    PipeGate& operator=(const PipeGate&) = delete;

    /// Lets `count` fixtures pass: those that wait now, or the next ones to arrive.
    void letPass(int count) {
        const std::string bytes(static_cast<std::size_t>(count), '!');
        if (write(m_fd, bytes.data(), bytes.size()) != count) {
            throw std::runtime_error("the gate can't be opened");
        }
    }

private:
    int m_fd = -1;
};
