// Tells the command where a thread was when a signal ended it, and holds the process
// still until the command has looked at it.
#pragma once

namespace corvane::check::crash {

/// For the signals of a crash, and for hangSignal, by which the command asks a thread that
/// hangs. Also for std::terminate. Once, on the main thread, after report::open.
void install();

/// Lets this thread report the overflow of its stack. The main thread has it already.
class SignalStack {
public:
    SignalStack();
    ~SignalStack();
    SignalStack(const SignalStack&) = delete;
    SignalStack& operator=(const SignalStack&) = delete;

private:
    char* m_memory;
};

}  // namespace corvane::check::crash
