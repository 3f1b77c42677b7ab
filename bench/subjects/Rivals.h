// The alternatives: a signal together with an executor that serialises the calls of a subscriber.
// Each has subscribe(fn, userData) and emit(args...). Like the daemon, it runs calls on the
// emitting thread if it can.
#pragma once

#include <sigc++/sigc++.h>

#include <boost/asio/dispatch.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/system_executor.hpp>
#include <boost/signals2/signal.hpp>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace rivals {

using Strand = boost::asio::strand<boost::asio::system_executor>;

/// What is written in an afternoon: whoever finds the queue idle runs it.
class MutexQueue {
public:
    void push(std::function<void()> task) {
        std::unique_lock lock(m_mutex);
        m_tasks.push_back(std::move(task));
        if (std::exchange(m_running, true)) {
            return;
        }
        while (!m_tasks.empty()) {
            const std::function<void()> next = std::move(m_tasks.front());
            m_tasks.pop_front();
            lock.unlock();
            next();
            lock.lock();
        }
        m_running = false;
    }

private:
    std::mutex m_mutex;
    std::deque<std::function<void()>> m_tasks;
    bool m_running = false;
};

template <typename... Args>
class SignalAndStrand {
public:
    template <typename Function>
    void subscribe(Function fn, void* userData) {
        m_signal.connect(
            [strand = Strand(boost::asio::system_executor()), fn, userData](const Args&... args) {
                boost::asio::dispatch(strand, [fn, userData, args...] { fn(args..., userData); });
            });
    }
    void emit(const Args&... args) { m_signal(args...); }

private:
    boost::signals2::signal<void(const Args&...)> m_signal;
};

template <typename... Args>
class SigcAndQueue {
public:
    template <typename Function>
    void subscribe(Function fn, void* userData) {
        m_signal.connect(
            [queue = std::make_shared<MutexQueue>(), fn, userData](const Args&... args) {
                queue->push([fn, userData, args...] { fn(args..., userData); });
            });
    }
    void emit(const Args&... args) { m_signal.emit(args...); }

private:
    sigc::signal<void, const Args&...> m_signal;
};

template <typename... Args>
class VectorAndQueue {
public:
    template <typename Function>
    void subscribe(Function fn, void* userData) {
        const std::lock_guard lock(m_mutex);
        m_entries.push_back(
            [queue = std::make_shared<MutexQueue>(), fn, userData](const Args&... args) {
                queue->push([fn, userData, args...] { fn(args..., userData); });
            });
    }
    void emit(const Args&... args) {
        const auto entries = [this] {
            const std::lock_guard lock(m_mutex);
            return m_entries;
        }();
        for (const auto& entry : entries) {
            entry(args...);
        }
    }

private:
    std::mutex m_mutex;
    std::vector<std::function<void(const Args&...)>> m_entries;
};

}  // namespace rivals
