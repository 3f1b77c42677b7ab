// A serialising job queue without its own thread. If no thread is running the context's jobs, a
// caller becomes the runner: it runs its job and all that are queued meanwhile. Otherwise it leaves
// its job to the runner. Irregular spellings in the messages ("poped", "occured") are part of them.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include "taskExecutor/Mutex.h"
#include "taskExecutor/ShortLived.h"
#include "taskExecutor/tpl/include_internal/TPLLog.h"

namespace TPL {

/// Created by Create and owned through std::shared_ptr only. Jobs still queued when the context is
/// destroyed are leaked without being run.
///
/// Threads: any. Jobs run one at a time, in the order of queueing, on the runner's thread. No lock
/// is held while a job runs.
///
/// Errors: std::domain_error if the queue stays full, std::bad_weak_ptr for a context not created
/// by Create. An exception thrown by a job reaches the caller whose thread runs it; the jobs behind
/// it wait until the next job is queued. The exhaustion of memory is thrown before a job is queued.
///
/// `MostDerived` has `_Execute(const std::function<void()>&)`, which runs a task. `Invoker` has
/// `Invoke(const std::function<void()>&)`, which runs the job loop before it returns.
///
///     state         initiated  terminated  tasks
///     created       false      false       skipped
///     initiated     true       false       run
///     terminated    false      true        refused
template <typename MostDerived>
class CContext {
public:
    template <typename... Args>
    static std::shared_ptr<MostDerived> Create(Args&&... args);

    CContext() = default;
    virtual ~CContext() = default;
    CContext(const CContext&) = delete;
    CContext& operator=(const CContext&) = delete;

    /// Lets tasks run, also after a termination. `maxJobs` 0 means no limit.
    template <typename Invoker>
    bool Initiate(unsigned int timeoutSec, unsigned int maxJobs, Invoker& invoker);
    template <typename Invoker>
    bool InvokeTask(const std::function<void()>& task, Invoker& invoker);
    /// Returns true when the task's job has been processed, false after `timeoutMs` ms.
    template <typename Invoker>
    bool InvokeTaskSync(const std::function<void()>& task, unsigned int timeoutMs,
                        Invoker& invoker);
    template <typename Invoker>
    bool TerminateSync(unsigned int timeoutMs, Invoker& invoker);
    /// Waits until no other thread runs the job loop, then runs the queued jobs. Returns false if
    /// none are queued, or if the loop still runs at the deadline. The caller holds a reference to
    /// the context. One thread at a time.
    bool RunLeftJobs(std::chrono::steady_clock::time_point deadline);

private:
    class CJob;
    class CInitiateJob;
    class CTaskJob;
    class CTaskJobSync;
    class CTerminateJob;
    class CTerminateJobSync;
    class CSynchronizer;

    // Aligned to its size; otherwise clang calls libatomic.
    struct alignas(2) State {
        bool initiated;
        bool terminated;
    };

    template <typename Invoker>
    bool _InvokeJob(CJob* job, Invoker& invoker) EXCLUDES(m_mutex);
    template <typename SyncJob, typename Invoker>
    bool _InvokeJobSync(SyncJob* job, unsigned int timeoutMs, Invoker& invoker,
                        const char* operation);
    void _ProcessJob() EXCLUDES(m_mutex);
    void _ProcessTask(const std::function<void()>& task);
    void _Initiate();
    void _Terminate();

    void _StopRunning() EXCLUDES(m_mutex);
    bool _IsFull() const REQUIRES(m_mutex);
    std::unique_ptr<CJob> _PopJob() REQUIRES(m_mutex);

    Mutex m_mutex;
    std::condition_variable m_condition;  // a producer waits here for room
    std::size_t m_jobCount GUARDED_BY(m_mutex) = 0;
    CJob* m_head GUARDED_BY(m_mutex) = nullptr;
    CJob* m_tail GUARDED_BY(m_mutex) = nullptr;
    std::weak_ptr<MostDerived> m_self;
    std::function<void(const std::shared_ptr<MostDerived>&)> m_onTerminate =
        [](const std::shared_ptr<MostDerived>&) {};
    std::atomic<unsigned int> m_timeoutSec = 0;
    std::atomic<unsigned int> m_maxJobs = 0;
    std::atomic<State> m_state = State{false, false};  // one store for both flags
    std::atomic<bool> m_running = false;
    std::atomic<bool> m_idleAwaited = false;  // a thread waits for the running flag to be cleared
    std::condition_variable m_idle;
};

/// A unit of work. The context owns it once it is queued.
template <typename MostDerived>
class CContext<MostDerived>::CJob : public ShortLived {
public:
    virtual ~CJob() = default;
    /// On the runner's thread, without a lock.
    virtual void Process(CContext& context) const = 0;

    CJob* m_next = nullptr;
};

/// Shared by a synchronous job and the thread that waits for it.
template <typename MostDerived>
class CContext<MostDerived>::CSynchronizer {
public:
    virtual ~CSynchronizer() = default;

    void Signal() {
        const MutexLock lock(m_mutex);
        m_done = true;
        m_condition.notify_one();
    }

    /// Returns true if it was signalled before the timeout.
    bool Wait(std::chrono::milliseconds timeout) {
        MutexLock lock(m_mutex);
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        return lock.waitUntil(m_condition, deadline, [this]() REQUIRES(m_mutex) { return m_done; });
    }

private:
    Mutex m_mutex;
    std::condition_variable m_condition;
    bool m_done GUARDED_BY(m_mutex) = false;
};

template <typename MostDerived>
class CContext<MostDerived>::CInitiateJob : public CJob {
public:
    CInitiateJob() { TPLLOGD("InitiateJob created"); }
    ~CInitiateJob() override { TPLLOGD("InitiateJob destroyed"); }
    void Process(CContext& context) const override { context._Initiate(); }
};

template <typename MostDerived>
class CContext<MostDerived>::CTaskJob : public CJob {
public:
    explicit CTaskJob(const std::function<void()>& task) : m_task(task) {
        TPLLOGD("TaskJob created");
    }
    ~CTaskJob() override { TPLLOGD("TaskJob destroyed"); }
    void Process(CContext& context) const override { context._ProcessTask(m_task); }

private:
    std::function<void()> m_task;
};

template <typename MostDerived>
class CContext<MostDerived>::CTaskJobSync : public CTaskJob {
public:
    explicit CTaskJobSync(const std::function<void()>& task) : CTaskJob(task) {
        TPLLOGD("TaskJobSync created");
    }
    ~CTaskJobSync() override { TPLLOGD("TaskJobSync destroyed"); }
    void Process(CContext& context) const override {
        CTaskJob::Process(context);
        m_synchronizer->Signal();
    }
    std::shared_ptr<CSynchronizer> GetSynchronizer() const { return m_synchronizer; }

private:
    std::shared_ptr<CSynchronizer> m_synchronizer = std::make_shared<CSynchronizer>();
};

template <typename MostDerived>
class CContext<MostDerived>::CTerminateJob : public CJob {
public:
    CTerminateJob() { TPLLOGD("TerminateJob created"); }
    ~CTerminateJob() override { TPLLOGD("TerminateJob destroyed"); }
    void Process(CContext& context) const override { context._Terminate(); }
};

// Unlike those of CTaskJobSync, its messages begin with the class prefix "C".
template <typename MostDerived>
class CContext<MostDerived>::CTerminateJobSync : public CTerminateJob {
public:
    CTerminateJobSync() { TPLLOGD("CTerminateJobSync created"); }
    ~CTerminateJobSync() override { TPLLOGD("CTerminateJobSync destroyed"); }
    void Process(CContext& context) const override {
        CTerminateJob::Process(context);
        m_synchronizer->Signal();
    }
    std::shared_ptr<CSynchronizer> GetSynchronizer() const { return m_synchronizer; }

private:
    std::shared_ptr<CSynchronizer> m_synchronizer = std::make_shared<CSynchronizer>();
};

template <typename MostDerived>
template <typename... Args>
std::shared_ptr<MostDerived> CContext<MostDerived>::Create(Args&&... args) {
    std::shared_ptr<MostDerived> context(new MostDerived(std::forward<Args>(args)...));
    context->m_self = context;
    return context;
}

template <typename MostDerived>
template <typename Invoker>
bool CContext<MostDerived>::Initiate(unsigned int timeoutSec, unsigned int maxJobs,
                                     Invoker& invoker) {
    TPLCALLTRACE("Initiate");
    State state = m_state;
    while (!m_state.compare_exchange_weak(state, State{state.initiated, false})) {
    }
    m_timeoutSec = timeoutSec;
    m_maxJobs = maxJobs;
    return _InvokeJob(new CInitiateJob, invoker);
}

template <typename MostDerived>
template <typename Invoker>
bool CContext<MostDerived>::InvokeTask(const std::function<void()>& task, Invoker& invoker) {
    TPLCALLTRACE("InvokeTask");
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): delete gets the size that new got
    return _InvokeJob(new CTaskJob(task), invoker);
}

template <typename MostDerived>
template <typename Invoker>
bool CContext<MostDerived>::InvokeTaskSync(const std::function<void()>& task,
                                           unsigned int timeoutMs, Invoker& invoker) {
    TPLCALLTRACE("InvokeTaskSync");
    return _InvokeJobSync(new CTaskJobSync(task), timeoutMs, invoker, "InvokeTaskSync");
}

template <typename MostDerived>
template <typename Invoker>
bool CContext<MostDerived>::TerminateSync(unsigned int timeoutMs, Invoker& invoker) {
    TPLCALLTRACE("TerminateSync");
    return _InvokeJobSync(new CTerminateJobSync, timeoutMs, invoker, "TerminateSync");
}

template <typename MostDerived>
template <typename SyncJob, typename Invoker>
bool CContext<MostDerived>::_InvokeJobSync(SyncJob* job, unsigned int timeoutMs, Invoker& invoker,
                                           const char* operation) {
    const std::shared_ptr<CSynchronizer> synchronizer = job->GetSynchronizer();
    if (!_InvokeJob(job, invoker)) {
        return false;
    }
    const bool result = synchronizer->Wait(std::chrono::milliseconds(timeoutMs));
    TPL_LOG_AS(operation, DLOG_PRIORITY_DEBUG, "Sync result(%d)", result);
    return result;
}

template <typename MostDerived>
template <typename Invoker>
bool CContext<MostDerived>::_InvokeJob(CJob* newJob, Invoker& invoker) {
    TPLCALLTRACE("_InvokeJob");
    bool isRunner = false;
    bool loopEntered = false;
    try {
        std::unique_ptr<CJob> job(newJob);
        MutexLock lock(m_mutex);
        if (m_state.load().terminated) {
            TPLLOGE("context is terminated");
            job.reset();
            return false;
        }
        if (_IsFull()) {
            const auto deadline =
                std::chrono::steady_clock::now() + std::chrono::seconds(m_timeoutSec);
            if (!lock.waitUntil(m_condition, deadline,
                                [this]() REQUIRES(m_mutex) { return !_IsFull(); })) {
                TPLLOGE("timeout happened");
                job.reset();
                throw std::domain_error("CContext<MostDerived>::_InvokeJob - timeout happen");
            }
        }
        TPLLOGD("task is queued");
        (m_tail != nullptr ? m_tail->m_next : m_head) = job.get();
        m_tail = job.release();
        ++m_jobCount;
        if (m_running) {
            return true;
        }
        isRunner = m_running = true;
        lock.unlock();
        TPLLOGD("task is invoked");
        // Keeps the context alive. The closure below holds references only, so std::function needs
        // no memory for it, and a queued job is always run.
        const std::shared_ptr<MostDerived> self(m_self);
        invoker.Invoke([&self, &loopEntered] {
            loopEntered = true;
            self->_ProcessJob();
        });
        return true;
    } catch (...) {
        TPLLOGE("_InvokeJob exception has been occured");
        // If the loop was entered, it has cleared the flag. Clearing it again could clear the flag
        // of the next runner.
        if (isRunner && !loopEntered) {
            _StopRunning();
        }
        throw;
    }
}

template <typename MostDerived>
bool CContext<MostDerived>::RunLeftJobs(std::chrono::steady_clock::time_point deadline) {
    MutexLock lock(m_mutex);
    m_idleAwaited = true;
    const bool isIdle = lock.waitUntil(m_idle, deadline, [this] { return !m_running; });
    m_idleAwaited = false;
    if (!isIdle || m_jobCount == 0) {
        return false;
    }
    m_running = true;
    lock.unlock();
    _ProcessJob();
    return true;
}

template <typename MostDerived>
void CContext<MostDerived>::_ProcessJob() {
    TPLCALLTRACE("_ProcessJob");
    // Declared before the lock, so that the running flag is cleared after the unlock. A job that is
    // queued between the two waits until the next job is queued.
    struct RunningGuard {
        CContext& context;
        ~RunningGuard() { context._StopRunning(); }
    } guard{*this};
    MutexLock lock(m_mutex);
    if (m_state.load().terminated) {
        TPLLOGE("context is terminated");
        return;
    }
    while (m_jobCount > 0) {
        std::unique_ptr<CJob> job = _PopJob();
        TPLLOGD("task is poped");
        lock.unlock();
        try {
            job->Process(*this);
        } catch (...) {
            TPLLOGE("_ProcessJob exception has been occured");
            job.reset();
            throw;
        }
        job.reset();
        lock.lock();
        if (m_state.load().terminated) {
            while (m_jobCount > 0) {
                _PopJob();
            }
        }
    }
}

template <typename MostDerived>
void CContext<MostDerived>::_ProcessTask(const std::function<void()>& task) {
    TPLCALLTRACE("_ProcessTask");
    const State state = m_state;
    if (state.initiated && !state.terminated) {
        TPLLOGD("Processing Task");
        static_cast<MostDerived*>(this)->_Execute(task);
    } else {
        TPLLOGE("CAN NOT DO _ProcessTask");
    }
}

template <typename MostDerived>
void CContext<MostDerived>::_Initiate() {
    TPLLOGD("Initiating");
    m_state = State{true, false};
}

template <typename MostDerived>
void CContext<MostDerived>::_Terminate() {
    TPLLOGD("_Terminate");
    m_state = State{false, true};
    m_onTerminate(std::shared_ptr<MostDerived>(m_self));
}

// Takes the mutex only if a thread waits for the flag.
template <typename MostDerived>
void CContext<MostDerived>::_StopRunning() {
    m_running = false;
    if (m_idleAwaited) {
        const MutexLock lock(m_mutex);
        m_idle.notify_one();
    }
}

template <typename MostDerived>
bool CContext<MostDerived>::_IsFull() const {
    const unsigned int maxJobs = m_maxJobs;
    return maxJobs != 0 && m_jobCount >= maxJobs;
}

template <typename MostDerived>
auto CContext<MostDerived>::_PopJob() -> std::unique_ptr<CJob> {
    if (_IsFull()) {
        m_condition.notify_one();
    }
    std::unique_ptr<CJob> job(m_head);
    m_head = job->m_next;
    if (m_head == nullptr) {
        m_tail = nullptr;
    }
    --m_jobCount;
    return job;
}

}  // namespace TPL
