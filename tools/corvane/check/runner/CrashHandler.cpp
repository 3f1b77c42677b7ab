// Reports the stack frames of a crashed thread to the command. The command symbolizes them, which
// isn't safe in a signal handler.
#include "tools/corvane/check/runner/CrashHandler.h"

#include <execinfo.h>
#include <signal.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "tools/corvane/check/runner/Report.h"
#include "tools/corvane/check/runner/RunnerProtocol.h"

namespace corvane::check::crash {

namespace {

constexpr std::size_t STACK_SIZE = 131072;
constexpr int MAX_FRAMES = 64;

// The interrupted instruction; null on an unknown architecture.
void* interruptedAt([[maybe_unused]] void* context) {
#if defined(__x86_64__)
    const auto* const machine = &static_cast<ucontext_t*>(context)->uc_mcontext;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): registers are integers
    return reinterpret_cast<void*>(machine->gregs[REG_RIP]);
#elif defined(__i386__)
    const auto* const machine = &static_cast<ucontext_t*>(context)->uc_mcontext;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the same
    return reinterpret_cast<void*>(machine->gregs[REG_EIP]);
#elif defined(__aarch64__)
    const auto* const machine = &static_cast<ucontext_t*>(context)->uc_mcontext;
    return reinterpret_cast<void*>(machine->pc);
#elif defined(__arm__)
    const auto* const machine = &static_cast<ucontext_t*>(context)->uc_mcontext;
    return reinterpret_cast<void*>(machine->arm_pc);
#else
    return nullptr;
#endif
}

// A direct cast from a pointer to a larger integer may extend the sign.
std::uintmax_t numberOf(const void* address) {
    return reinterpret_cast<std::uintptr_t>(address);
}

void onSignal(int number, siginfo_t* info, void* context) {
    static std::atomic<bool> isReported = false;
    while (isReported.exchange(true)) {
        pause();  // another thread reports already, and the command kills the process
    }
    std::array<void*, MAX_FRAMES> frames;
    const int count = backtrace(frames.data(), MAX_FRAMES);
    // Skip the frames of this handler and its caller.
    int first = 0;
    while (first < count && frames[first] != interruptedAt(context)) {
        ++first;
    }
    first = first == count ? 0 : first;
    std::array<char, 2048> text;
    // cppcheck-suppress invalidPrintfArgType_uint ; std::uintmax_t is uintmax_t
    int size = std::snprintf(text.data(), text.size(),
                             "\n{\"signal\":%d,\"thread\":%d,\"address\":%ju,\"frames\":[", number,
                             gettid(), numberOf(info->si_addr));
    for (int i = first; i < count; ++i) {
        // cppcheck-suppress invalidPrintfArgType_uint ; the same
        size += std::snprintf(text.data() + size, text.size() - size, "%s%ju", i > first ? "," : "",
                              numberOf(frames[i]));
    }
    size += std::snprintf(text.data() + size, text.size() - size, "]}\n");
    if (write(report::fd(), text.data(), size) != size) {
        _exit(EXIT_FAILURE);
    }
    while (true) {
        pause();
    }
}

[[noreturn]] void onTerminate() {
    report::finding("uncaught-exception", report::currentException());
    std::abort();
}

}  // namespace

SignalStack::SignalStack() : m_memory(new char[STACK_SIZE]) {
    stack_t stack{};
    stack.ss_sp = m_memory;
    stack.ss_size = STACK_SIZE;
    sigaltstack(&stack, nullptr);
}

SignalStack::~SignalStack() {
    stack_t none{};
    none.ss_flags = SS_DISABLE;
    sigaltstack(&none, nullptr);
    delete[] m_memory;
}

void install() {
    static SignalStack forMainThread;
    // The first call loads a library, which isn't safe in a signal handler.
    void* frame = nullptr;
    backtrace(&frame, 1);
    struct sigaction action {};
    action.sa_sigaction = &onSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigfillset(&action.sa_mask);
    for (const int number :
         {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP, SIGSYS, SIGXFSZ, HANG_SIGNAL}) {
        sigaction(number, &action, nullptr);
    }
    std::set_terminate(&onTerminate);
}

}  // namespace corvane::check::crash
