#include "tests/daemon/model/Run.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace model {

namespace {

Run* g_run = nullptr;

}  // namespace

Run::Run(unsigned seed)
    : m_seed(seed), m_scheduler(seed, [this] {
          std::fprintf(stderr, "seed %u: everybody waits for ever; the last events are\n", m_seed);
          for (auto i = std::max<std::size_t>(m_events.size(), 40) - 40; i < m_events.size(); ++i) {
              std::fprintf(stderr, "  %s\n", m_events[i].c_str());
          }
          std::fprintf(stderr, "%s\n", replayCommand(m_seed).c_str());
      }) {
    g_run = this;
}

Run::~Run() {
    g_run = nullptr;
}

Run& Run::current() {
    return *g_run;
}

void Run::record(const std::string& event) {
    m_events.push_back(std::to_string(Scheduler::actor()) + " " + event);
}

void Run::line(char priority, const std::string& text) {
    record(std::string(1, priority) + " " + text);
    if (!m_scheduler.holdsMutex()) {
        m_scheduler.yield();
    }
}

void Run::setContext(const void* context, std::size_t size) {
    m_context = static_cast<const char*>(context);
    m_contextEnd = m_context + size;
}

Scheduler::Mutex* Run::mutexAt(const void* address) {
    const auto* const place = static_cast<const char*>(address);
    const bool isInside = m_context != nullptr && place >= m_context && place < m_contextEnd;
    return isInside ? &m_mutexes[address] : nullptr;
}

std::string replayCommand(unsigned seed) {
    return "replay: CORVANE_MODEL_SEED=" + std::to_string(seed) + " " +
           std::filesystem::read_symlink("/proc/self/exe").string();
}

}  // namespace model
