#include "tests/daemon/model/Program.h"

#include <random>
#include <utility>

namespace model {

namespace {

constexpr int NESTING = 2;

class Maker {
public:
    explicit Maker(unsigned seed) : m_random(~seed) {}

    Program make() {
        Program program;
        program.isOwned = !oneIn(40);
        program.isDrained = program.isOwned && !oneIn(8);
        program.actors.resize(2 + below(3));
        for (auto& operations : program.actors) {
            operations = makeOperations(2 + below(5), NESTING);
        }
        if (!oneIn(6)) {
            auto& first = program.actors.front();
            first.insert(first.begin(), {Operation::Kind::Initiate, Entry::Direct, timeoutSec(),
                                         limit(), nullptr});
        }
        return program;
    }

private:
    std::vector<Operation> makeOperations(unsigned count, int nesting) {
        std::vector<Operation> operations;
        for (unsigned i = 0; i < count; ++i) {
            operations.push_back(makeOperation(nesting));
        }
        return operations;
    }

    Operation makeOperation(int nesting) {
        using enum Operation::Kind;
        switch (below(12)) {
            case 0:
                return {Initiate, entry(), timeoutSec(), limit(), nullptr};
            case 1:
                return {TerminateSync, entry(), timeoutMs(), 0, nullptr};
            case 2:
            case 3:
            case 4:
                return {InvokeTaskSync, entry(), timeoutMs(), 0, makeTask(nesting)};
            default:
                return {InvokeTask, entry(), 0, 0, makeTask(nesting)};
        }
    }

    std::shared_ptr<const Task> makeTask(int nesting) {
        auto task = std::make_shared<Task>();
        task->number = m_tasks++;
        task->end = oneIn(8)    ? Task::End::Throws
                    : oneIn(16) ? Task::End::IsEmpty
                                : Task::End::Returns;
        if (nesting > 0 && oneIn(3)) {
            task->operations = makeOperations(1 + below(3), nesting - 1);
        }
        return task;
    }

    Entry entry() {
        switch (below(16)) {
            case 0:
                return Entry::FailsBefore;
            case 1:
                return Entry::FailsAfter;
            case 2:
                return Entry::HoldsException;
            case 3:
                return Entry::DropsException;
            case 4:
                return Entry::OtherThread;
            case 5:
                return Entry::Late;
            default:
                return Entry::Direct;
        }
    }

    unsigned timeoutSec() { return oneIn(2) ? 0 : oneIn(2) ? 1 : 15; }
    unsigned timeoutMs() { return oneIn(2) ? 0 : oneIn(2) ? 1 : 1000; }
    unsigned limit() { return oneIn(3) ? 0 : 1 + below(3); }
    bool oneIn(unsigned count) { return below(count) == 0; }
    unsigned below(unsigned end) { return static_cast<unsigned>(m_random() % end); }

    std::mt19937 m_random;
    int m_tasks = 0;
};

}  // namespace

Program makeProgram(unsigned seed) {
    return Maker(seed).make();
}

}  // namespace model
