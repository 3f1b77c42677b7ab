// Executes a program on a task context, either the product's or the reference model. Each actor of
// the program is a thread. The results of operations and the progress of tasks are recorded.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/daemon/model/Program.h"
#include "tests/daemon/model/Run.h"
#include "tests/support/IntendedLeak.h"

namespace model {

struct TaskFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};
struct InvokerFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A helper thread that runs the job loops of other threads, one at a time.
class Carrier {
public:
    /// Runs `loop` on the helper thread and waits until it returns. Throws what `loop` throws.
    void carry(const std::function<void()>& loop) {
        Scheduler& scheduler = *Scheduler::current();
        if (Scheduler::actor() == m_actor) {
            loop();
            return;
        }
        scheduler.waitUntil([this] { return m_loop == nullptr; });
        bool done = false;
        std::exception_ptr failure;
        m_loop = &loop;
        m_done = &done;
        m_failure = &failure;
        scheduler.waitUntil([&done] { return done; });
        if (failure) {
            std::rethrow_exception(failure);
        }
    }

    /// The body of the helper thread. Returns when no loop is waiting and `isOver` returns true.
    void run(const std::function<bool()>& isOver) {
        m_actor = Scheduler::actor();
        while (true) {
            Scheduler::current()->waitUntil([&] { return m_loop != nullptr || isOver(); });
            if (m_loop == nullptr) {
                return;
            }
            try {
                (*m_loop)();
            } catch (...) {
                *m_failure = std::current_exception();
            }
            *m_done = true;
            m_loop = nullptr;
        }
    }

private:
    int m_actor = -1;
    const std::function<void()>* m_loop = nullptr;
    bool* m_done = nullptr;
    std::exception_ptr* m_failure = nullptr;
};

class Invoker {
public:
    Invoker(Entry entry, Carrier& carrier) : m_entry(entry), m_carrier(carrier) {}

    void Invoke(const std::function<void()>& loop) {
        switch (m_entry) {
            case Entry::Direct:
                loop();
                return;
            case Entry::Late:
                Scheduler::current()->yield();
                loop();
                return;
            case Entry::FailsBefore:
                throw InvokerFailure("before the loop");
            case Entry::FailsAfter:
                loop();
                throw InvokerFailure("after the loop");
            case Entry::HoldsException:
                try {
                    loop();
                } catch (...) {
                    Scheduler::current()->yield();
                    throw;
                }
                return;
            case Entry::DropsException:
                try {
                    loop();
                } catch (const std::exception& error) {
                    Run::current().record(std::string("dropped ") + error.what());
                }
                return;
            case Entry::OtherThread:
                m_carrier.carry(loop);
                return;
        }
    }

private:
    Entry m_entry;
    Carrier& m_carrier;
};

template <typename Context>
class Execution {
public:
    Execution(const Program& program, Context& context) : m_program(program), m_context(context) {}

    void run(Scheduler& scheduler) {
        std::vector<std::function<void()>> bodies;
        for (const auto& operations : m_program.actors) {
            bodies.push_back([this, &operations] {
                const auto leak = intendedLeak();
                performAll(operations);
                ++m_ended;
            });
        }
        bodies.push_back([this] {
            const auto leak = intendedLeak();
            m_carrier.run([this] { return haveAllEnded(); });
        });
        bodies.push_back([this] {
            Scheduler::current()->waitUntil([this] { return haveAllEnded(); });
            if (m_program.isDrained) {
                drain();
            }
        });
        scheduler.run(bodies);
    }

private:
    /// Returns a guard if jobs may be left: a context leaks the jobs that are still queued when it
    /// is destroyed.
    std::unique_ptr<IntendedLeak> intendedLeak() const {
        return m_program.isDrained ? nullptr : std::make_unique<IntendedLeak>();
    }

    bool haveAllEnded() const { return m_ended == m_program.actors.size(); }

    void performAll(const std::vector<Operation>& operations) {
        for (const Operation& operation : operations) {
            perform(operation);
        }
    }

    /// Returns true if the operation returned true, false if it returned false or threw.
    bool perform(const Operation& operation) {
        try {
            const bool result = call(operation);
            record(result ? "returned true" : "returned false");
            return result;
        } catch (const std::exception& error) {
            record(std::string("threw ") + error.what());
            return false;
        }
    }

    bool call(const Operation& operation) {
        Invoker invoker(operation.entry, m_carrier);
        switch (operation.kind) {
            case Operation::Kind::Initiate:
                return m_context.Initiate(operation.timeout, operation.maxJobs, invoker);
            case Operation::Kind::InvokeTask:
                return m_context.InvokeTask(functionOf(operation.task), invoker);
            case Operation::Kind::InvokeTaskSync:
                return m_context.InvokeTaskSync(functionOf(operation.task), operation.timeout,
                                                invoker);
            case Operation::Kind::TerminateSync:
                return m_context.TerminateSync(operation.timeout, invoker);
        }
        throw std::logic_error("no such operation");
    }

    std::function<void()> functionOf(const std::shared_ptr<const Task>& task) {
        if (task->end == Task::End::IsEmpty) {
            return nullptr;
        }
        return [this, task] {
            const std::string name = "task " + std::to_string(task->number);
            if (m_inside++ != 0) {
                record(name + " overlaps with another");
            }
            record(name + " begins");
            Scheduler::current()->yield();
            performAll(task->operations);
            record(name + " ends");
            --m_inside;
            if (task->end == Task::End::Throws) {
                throw TaskFailure(name);
            }
        };
    }

    /// Runs the jobs that are still queued. A task that throws ends the job loop, so it takes
    /// several attempts.
    void drain() {
        const Operation initiate{Operation::Kind::Initiate, Entry::Direct, 0, 0, nullptr};
        constexpr int attempts = 100;  // more than the number of tasks that throw
        for (int i = 0; i < attempts && !perform(initiate); ++i) {
        }
    }

    static void record(const std::string& event) { Run::current().record(event); }

    const Program& m_program;
    Context& m_context;
    Carrier m_carrier;
    std::size_t m_ended = 0;
    int m_inside = 0;
};

}  // namespace model
