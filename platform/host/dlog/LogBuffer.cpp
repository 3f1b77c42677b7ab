#include "platform/host/dlog/LogBuffer.h"

#include <pthread.h>
#include <sched.h>
#include <signal.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/host/dlog/LogStream.h"

namespace corvane::host {

LogBuffer* LogBuffer::instance = nullptr;

namespace {

// The writer handles none of the process's signals.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t m_before;
};

}  // namespace

LogBuffer* LogBuffer::open(int fd, std::chrono::milliseconds patience) {
    std::unique_ptr<LogBuffer> buffer(new LogBuffer(fd, patience));
    {
        const SignalsBlocked blocked;
        buffer->m_writer = std::thread([made = buffer.get()] { made->writeInTime(); });
    }
    instance = buffer.release();
    instance->watchProcess();
    return instance;
}

int LogBuffer::add(const char* lines, std::size_t size, bool atOnce) noexcept {
    const std::lock_guard lock(m_mutex);
    int result = size > m_lines.size() - m_size ? write() : 0;
    if (size > m_lines.size()) {
        return writeLogLines(m_fd, lines, size);
    }
    std::memcpy(m_lines.data() + m_size, lines, size);
    m_size += size;
    if (atOnce || m_keepsNothing) {
        result = write();
    } else if (m_isWriterIdle) {
        m_isWriterIdle = false;
        m_changed.notify_one();
    }
    return result;
}

void LogBuffer::writeInTime() {
    std::unique_lock lock(m_mutex);
    while (!m_keepsNothing) {
        m_isWriterIdle = true;
        m_changed.wait(lock, [this] { return m_size > 0 || m_keepsNothing; });
        m_isWriterIdle = false;
        m_changed.wait_for(lock, m_patience, [this] { return m_keepsNothing; });
        write();
    }
}

int LogBuffer::write() {
    const int result = m_size == 0 ? 0 : writeLogLines(m_fd, m_lines.data(), m_size);
    m_size = 0;
    return result;
}

void LogBuffer::watchProcess() {
    std::atexit([] { instance->end(); });

    pthread_atfork([] { instance->m_mutex.lock(); }, [] { instance->m_mutex.unlock(); },
                   [] {
                       instance->m_size = 0;  // the parent's to write
                       instance->m_keepsNothing = instance->m_isInChild = true;
                       instance->m_mutex.unlock();
                   });

    // Handled once, then the fault strikes again and ends the process as it would have.
    struct sigaction saving {};
    saving.sa_flags = SA_SIGINFO | SA_RESETHAND | SA_NODEFER | SA_ONSTACK;
    saving.sa_sigaction = [](int number, siginfo_t* info, void*) {
        instance->save();
        if (info->si_code <= 0) {
            raise(number);  // nothing strikes again where somebody sent it
        }
    };
    for (const int number : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
        struct sigaction before {};
        if (sigaction(number, nullptr, &before) == 0 && (before.sa_flags & SA_SIGINFO) == 0 &&
            before.sa_handler == SIG_DFL) {
            sigaction(number, &saving, nullptr);
        }
    }
}

void LogBuffer::end() {
    {
        const std::lock_guard lock(m_mutex);
        m_keepsNothing = true;
        write();
    }
    if (!m_isInChild) {
        m_changed.notify_one();
        m_writer.join();
    }
}

// In a signal's handler. Another thread that holds the mutex is about to write, unless it waits for
// something that this one will never do.
void LogBuffer::save() {
    for (int attempt = 0; attempt < 1000; ++attempt) {
        if (m_mutex.try_lock()) {
            write();
            m_mutex.unlock();
            return;
        }
        sched_yield();
    }
}

}  // namespace corvane::host
