// Reports the stack frames of a crashed thread to the command, and stops the process until the
// command has read its memory map.
#pragma once

namespace corvane::check::crash {

/// Handles the signals of a crash, HANG_SIGNAL and std::terminate. Call once, on the main thread,
/// after report::open.
void install();

/// An alternate signal stack, so that this thread can report a stack overflow. install() makes the
/// main thread's.
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
