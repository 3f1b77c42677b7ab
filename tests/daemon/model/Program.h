// A random program, generated from a seed: the operations that the threads of a run perform on a
// task context. It does not depend on the context that executes it.
#pragma once

#include <memory>
#include <vector>

namespace model {

struct Operation;

struct Task {
    enum class End { Returns, Throws, IsEmpty };

    int number;
    End end;
    std::vector<Operation> operations;  // performed by the task, on the context that runs it
};

/// How an operation's invoker enters the job loop.
enum class Entry {
    Direct,
    Late,            // yields before it enters
    FailsBefore,     // throws without entering
    FailsAfter,      // throws after the loop has returned
    HoldsException,  // yields before it rethrows the loop's exception
    DropsException,
    OtherThread,  // runs the loop on the helper thread and waits for it
};

struct Operation {
    enum class Kind { Initiate, InvokeTask, InvokeTaskSync, TerminateSync };

    Kind kind;
    Entry entry;
    unsigned timeout;  // s for Initiate, else ms
    unsigned maxJobs;
    std::shared_ptr<const Task> task;  // null if there is none
};

struct Program {
    std::vector<std::vector<Operation>> actors;
    bool isOwned;    // the context is owned by a shared pointer
    bool isDrained;  // no job is queued when the context is destroyed
};

Program makeProgram(unsigned seed);

}  // namespace model
