// Jobs for the main loop, from any thread.
#include "platform/host/main-loop/MainLoopQueue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

namespace corvane::host {

MainLoopQueue::MainLoopQueue() : m_fd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_fd < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    const auto onReady = [](void* self, Ecore_Fd_Handler*) -> Eina_Bool {
        static_cast<MainLoopQueue*>(self)->run();
        return ECORE_CALLBACK_RENEW;
    };
    m_handler = ecore_main_fd_handler_add(m_fd, ECORE_FD_READ, onReady, this, nullptr, nullptr);
    if (m_handler == nullptr) {
        close(m_fd);
        throw std::bad_alloc();
    }
}

MainLoopQueue::~MainLoopQueue() {
    ecore_main_fd_handler_del(m_handler);
    close(m_fd);
}

void MainLoopQueue::push(std::function<void()> job) {
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (m_jobs.size() == 1) {
        eventfd_write(m_fd, 1);
    }
}

void MainLoopQueue::run() {
    std::vector<std::function<void()>> jobs;
    {
        const std::lock_guard lock(m_mutex);
        eventfd_t ignored = 0;
        eventfd_read(m_fd, &ignored);
        jobs.swap(m_jobs);
    }
    for (const auto& job : jobs) {
        job();
    }
}

}  // namespace corvane::host
