// The reference model of the task context, on the scheduler's mutexes and clock. Only one thread
// runs at a time, so its state is plain variables. It writes the same log lines as the product and
// yields in the same places. `reach` counts each intended oddity by name.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/daemon/model/Run.h"

namespace model {

/// Threads: those of the run.
class ReferenceContext {
public:
    using Task = std::function<void()>;

    explicit ReferenceContext(bool isOwned) : m_isOwned(isOwned) {}

    template <typename Invoker>
    bool Initiate(unsigned int timeoutSec, unsigned int maxJobs, Invoker& invoker) {
        const Traced traced("Initiate");
        m_terminated = false;
        m_timeout = std::chrono::seconds(timeoutSec);
        m_maxJobs = maxJobs;
        return invokeJob(makeJob(Kind::Initiate), invoker);
    }
    template <typename Invoker>
    bool InvokeTask(const Task& task, Invoker& invoker) {
        const Traced traced("InvokeTask");
        return invokeJob(makeJob(Kind::Task, task), invoker);
    }
    template <typename Invoker>
    bool InvokeTaskSync(const Task& task, unsigned int timeoutMs, Invoker& invoker) {
        const Traced traced("InvokeTaskSync");
        return invokeAndWait(makeJob(Kind::SyncTask, task), timeoutMs, invoker, "InvokeTaskSync");
    }
    template <typename Invoker>
    bool TerminateSync(unsigned int timeoutMs, Invoker& invoker) {
        const Traced traced("TerminateSync");
        return invokeAndWait(makeJob(Kind::Terminate), timeoutMs, invoker, "TerminateSync");
    }

    std::size_t queued() const { return m_queue.size(); }

private:
    enum class Kind { Initiate, Task, SyncTask, Terminate };

    struct Signal {
        bool done = false;
        bool skipped = false;
        bool missed = false;  // the waiter has stopped waiting
        Scheduler::Condition condition;
    };
    struct Job {
        Kind kind;
        Task task;
        std::shared_ptr<Signal> signal;
        int actor;
        bool leftBehind = false;
    };
    using JobPtr = std::unique_ptr<Job>;

    static Scheduler& scheduler() { return Run::current().scheduler(); }
    static void log(char priority, const std::string& text) { Run::current().line(priority, text); }
    static void reach(const char* oddity) { Run::current().reach(oddity); }

    struct Traced {
        explicit Traced(std::string name) : m_name(std::move(name)) {
            log('D', m_name + " [this] > Entered");
        }
        ~Traced() { log('D', m_name + " [this]> Left"); }
        Traced(const Traced&) = delete;
        Traced& operator=(const Traced&) = delete;

        std::string m_name;
    };

    static JobPtr makeJob(Kind kind, const Task& task = nullptr) {
        switch (kind) {
            case Kind::Initiate:
                log('D', "CInitiateJob  InitiateJob created");
                break;
            case Kind::Task:
                log('D', "CTaskJob  TaskJob created");
                break;
            case Kind::SyncTask:
                log('D', "CTaskJob  TaskJob created");
                log('D', "CTaskJobSync  TaskJobSync created");
                break;
            case Kind::Terminate:
                log('D', "CTerminateJob  TerminateJob created");
                log('D', "CTerminateJobSync  CTerminateJobSync created");
                break;
        }
        const bool isSync = kind == Kind::SyncTask || kind == Kind::Terminate;
        return std::make_unique<Job>(
            Job{kind, task, isSync ? std::make_shared<Signal>() : nullptr, Scheduler::actor()});
    }

    static void destroy(JobPtr job) {
        switch (job->kind) {
            case Kind::Initiate:
                log('D', "~CInitiateJob  InitiateJob destroyed");
                break;
            case Kind::SyncTask:
                log('D', "~CTaskJobSync  TaskJobSync destroyed");
                [[fallthrough]];
            case Kind::Task:
                log('D', "~CTaskJob  TaskJob destroyed");
                break;
            case Kind::Terminate:
                log('D', "~CTerminateJobSync  CTerminateJobSync destroyed");
                log('D', "~CTerminateJob  TerminateJob destroyed");
                break;
        }
    }

    template <typename Invoker>
    bool invokeAndWait(JobPtr job, unsigned int timeoutMs, Invoker& invoker,
                       const std::string& operation) {
        const std::shared_ptr<Signal> signal = job->signal;
        const bool isInside = m_runner == Scheduler::actor();
        if (!invokeJob(std::move(job), invoker)) {
            return false;
        }
        const Time deadline = scheduler().now() + std::chrono::milliseconds(timeoutMs);
        while (!signal->done) {
            scheduler().wait(signal->condition, nullptr, deadline);
            if (scheduler().now() >= deadline) {
                break;
            }
        }
        const bool result = signal->done;
        signal->missed = !result;
        if (!result && isInside) {
            reach("a synchronous operation in a task of its own context timed out");
        }
        if (result && signal->skipped) {
            reach("a synchronous task was skipped and reported as done");
        }
        log('D', operation + "  Sync result(" + (result ? "1" : "0") + ")");
        return result;
    }

    template <typename Invoker>
    bool invokeJob(JobPtr job, Invoker& invoker) {
        const Traced traced("_InvokeJob");
        bool isRunner = false;
        bool loopEntered = false;
        try {
            scheduler().lock(m_mutex);
            if (m_terminated) {
                log('E', "_InvokeJob  context is terminated");
                destroy(std::move(job));
                reach("a job was refused after the termination");
                scheduler().unlock(m_mutex);
                return false;
            }
            if (isFull() && !waitForRoom()) {
                log('E', "_InvokeJob  timeout happened");
                destroy(std::move(job));
                reach("a producer found no room in time");
                scheduler().unlock(m_mutex);
                throw std::domain_error("CContext<MostDerived>::_InvokeJob - timeout happen");
            }
            if (m_terminated) {
                reach("a job that had waited for room was accepted after the termination");
            }
            log('D', "_InvokeJob  task is queued");
            m_queue.push_back(std::move(job));
            if (m_running) {
                if (m_isLeaving) {
                    reach("a job was queued between the runner's unlock and its end");
                }
                if (m_hasFailed) {
                    reach("a job was queued between the invoker's failure and its handling");
                }
                scheduler().unlock(m_mutex);
                return true;
            }
            isRunner = m_running = true;
            m_caller = Scheduler::actor();
            scheduler().unlock(m_mutex);
            log('D', "_InvokeJob  task is invoked");
            if (!m_isOwned) {
                reach("a context that no shared pointer owns threw");
                throw std::bad_weak_ptr();
            }
            invoker.Invoke([this, &loopEntered] {
                loopEntered = true;
                processJobs();
            });
            return true;
        } catch (...) {
            m_hasFailed = isRunner && !loopEntered;
            log('E', "_InvokeJob  _InvokeJob exception has been occured");
            if (isRunner && !loopEntered) {
                m_hasFailed = false;
                m_running = false;
            }
            throw;
        }
    }

    /// Returns false if the queue is still full at the deadline.
    bool waitForRoom() {
        const Time deadline = scheduler().now() + m_timeout;
        while (isFull()) {
            scheduler().wait(m_room, &m_mutex, deadline);
            if (scheduler().now() >= deadline) {
                if (!isFull()) {
                    reach("a producer saw the room only when its time was up");
                }
                return !isFull();
            }
        }
        return true;
    }

    void processJobs() {
        const Traced traced("_ProcessJob");
        m_runner = Scheduler::actor();
        try {
            scheduler().lock(m_mutex);
            if (m_terminated) {
                log('E', "_ProcessJob  context is terminated");
                reach("a runner found the context terminated and left its job queued");
            } else {
                runTheQueue();
            }
            m_isLeaving = true;
            m_runner = -1;
            scheduler().unlock(m_mutex);
            m_isLeaving = false;
            m_running = false;
        } catch (...) {
            m_runner = -1;
            m_running = false;
            throw;
        }
    }

    void runTheQueue() {
        while (!m_queue.empty()) {
            JobPtr job = pop();
            log('D', "_ProcessJob  task is poped");
            scheduler().unlock(m_mutex);
            try {
                process(*job);
            } catch (...) {
                log('E', "_ProcessJob  _ProcessJob exception has been occured");
                if (job->kind == Kind::SyncTask && job->actor != m_caller) {
                    reach("a synchronous task threw and was never signalled");
                }
                if (job->actor != m_caller) {
                    reach("a task's exception reached another thread's operation");
                }
                destroy(std::move(job));
                for (const JobPtr& left : m_queue) {
                    left->leftBehind = true;
                    reach("a throwing task left jobs behind");
                }
                throw;
            }
            if (job->leftBehind) {
                reach("a job left behind was run by the next runner");
            }
            destroy(std::move(job));
            scheduler().lock(m_mutex);
            if (m_terminated) {
                while (!m_queue.empty()) {
                    destroy(pop());
                    reach("a job behind a termination was destroyed unrun");
                }
            }
        }
    }

    void process(const Job& job) {
        if (job.signal && job.signal->missed) {
            reach(job.kind == Kind::Terminate ? "a late termination still terminated"
                                              : "a synchronous task ran after its waiter had gone");
        }
        if (job.kind == Kind::Initiate) {
            log('D', "_Initiate  Initiating");
            m_initiated = true;
            m_terminated = false;
        } else if (job.kind == Kind::Terminate) {
            log('D', "_Terminate  _Terminate");
            m_initiated = false;
            m_terminated = true;
        } else {
            processTask(job);
        }
        if (job.signal) {
            job.signal->done = true;
            scheduler().notifyOne(job.signal->condition);
        }
    }

    void processTask(const Job& job) {
        const Traced traced("_ProcessTask");
        if (m_initiated && !m_terminated) {
            log('D', "_ProcessTask  Processing Task");
            if (!job.task) {
                reach("an empty task was accepted and failed");
            }
            job.task();
        } else {
            log('E', "_ProcessTask  CAN NOT DO _ProcessTask");
            reach("a task was skipped on a context that is not initiated");
            if (job.signal) {
                job.signal->skipped = true;
            }
        }
    }

    bool isFull() const { return m_maxJobs != 0 && m_queue.size() >= m_maxJobs; }

    JobPtr pop() {
        if (isFull()) {
            scheduler().notifyOne(m_room);
        }
        JobPtr job = std::move(m_queue.front());
        m_queue.pop_front();
        return job;
    }

    bool m_isOwned;
    Scheduler::Mutex m_mutex;
    Scheduler::Condition m_room;
    std::deque<JobPtr> m_queue;
    Time m_timeout{0};
    unsigned int m_maxJobs = 0;
    bool m_initiated = false;
    bool m_terminated = false;
    bool m_running = false;

    // Used only to detect oddities.
    int m_runner = -1;  // the actor that runs the job loop
    int m_caller = -1;  // the actor whose operation entered it
    bool m_isLeaving = false;
    bool m_hasFailed = false;
};

}  // namespace model
