// What the threads of a run do: a random program, made from a seed, that knows nothing
// of who carries it out.
#pragma once

#include <memory>
#include <vector>

namespace model {

struct Operation;

struct Task {
    enum class End { Returns, Throws, IsEmpty };

    int number;
    End end;
    std::vector<Operation> operations;  // on its own context
};

/// How an operation's invoker enters the job loop.
enum class Entry {
    Direct,
    Late,            // gives way before
    FailsBefore,     // throws without having entered
    FailsAfter,      // throws when the loop has returned
    HoldsException,  // gives way before it passes on what the loop threw
    DropsException,
    OtherThread,  // hands the loop to the carrier thread and waits for it
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
    bool isOwned;    // the context belongs to a shared pointer
    bool isDrained;  // nothing is left queued when the context goes
};

Program makeProgram(unsigned seed);

}  // namespace model
