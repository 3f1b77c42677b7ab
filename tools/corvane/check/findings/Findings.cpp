// What a check can find.
#include "tools/corvane/check/findings/Findings.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace corvane::check {

namespace {

using enum Severity;
using enum Stage;

constexpr std::size_t keptDetails = 1000;
constexpr std::size_t keptBytes = 4000;

constexpr FindingKind kinds[] = {
    {"not-a-candidate", Warning, Static, "The daemon takes no file of this name for a plugin.",
     "Let the name end in \".so\"."},
    {"not-loadable", Error, Static, "The loader can't open the library.",
     "Build for this machine, and install or link what the loader misses."},
    {"unresolved-symbols", Error, Static,
     "Functions are missing here; the first call of one ends the daemon.",
     "Link the library that has them (the linker option -z defs finds them), or don't call what "
     "the daemon doesn't export."},
    {"no-init", Error, Static, "There is no PLUGIN_INIT; the daemon drops the library.",
     "Define extern \"C\" int PLUGIN_INIT(void* broker) with default visibility."},
    {"no-deinit", Warning, Static, "There is no PLUGIN_DEINIT to undo what PLUGIN_INIT did.",
     "Define extern \"C\" void PLUGIN_DEINIT() with default visibility."},
    {"newer-interface", Error, Static,
     "The plugin was built for an interface with more operations than the daemon has.",
     "Build with the headers of this daemon, or install the daemon that goes with the headers."},
    {"exported-symbols", Warning, Static,
     "More is exported than the entry points; a symbol of the daemon's of the same name replaces "
     "it.",
     "Hide the rest with -fvisibility=hidden and a version script."},
    {"unique-symbols", Warning, Static,
     "Exported symbols of the kind \"unique\" keep the library from being unloaded.",
     "Make them local with a version script, or compile with -fno-gnu-unique."},
    {"nodelete", Warning, Static, "The library is marked never to be unloaded.",
     "Link it without -z nodelete."},

    {"init-failed", Error, Running,
     "PLUGIN_INIT returned a negative value; the daemon drops the "
     "plugin.",
     "Return 0 where the plugin can do its work, also on a machine without its devices."},
    {"init-exception", Error, Running, "An exception left PLUGIN_INIT.",
     "Catch it in PLUGIN_INIT and return a negative value. Only classes derived from "
     "std::exception are survived by the daemon."},
    {"null-callback", Error, Running, "A null pointer was subscribed; the first event calls it.",
     "Give each subscription a function."},
    {"subscribed-twice", Warning, Running,
     "One event was subscribed to twice, so each event is delivered twice.",
     "Subscribe once, or unsubscribe first."},
    {"callback-exception", Error, Running, "An exception left a callback, which ends the daemon.",
     "Catch it in the callback."},
    {"slow-callback", Warning, Running,
     "A callback took longer than the limit; on a device it holds up the platform's thread.",
     "Leave long work to a thread of the plugin's own."},
    {"slow-job", Warning, Running,
     "A job in the plugin's task context took longer than the limit; events wait behind it.",
     "Leave long work to a thread of the plugin's own."},
    {"queue-full", Error, Running,
     "A job queued more jobs than the task context takes; the daemon waits 15 s and throws "
     "std::domain_error.",
     "Queue at most ten from within a callback or job, or let one job do the work of all."},
    {"not-subscribed", Warning, Running,
     "An event was unsubscribed from that the plugin never subscribed to.",
     "Look for two operations that were mixed up."},
    {"deinit-exception", Error, Running, "An exception left PLUGIN_DEINIT, which ends the daemon.",
     "Catch it in PLUGIN_DEINIT."},
    {"leftover-subscriptions", Error, Running,
     "Subscriptions are left after PLUGIN_DEINIT; the next event calls code that is gone.",
     "Unsubscribe in PLUGIN_DEINIT, and before PLUGIN_INIT fails."},
    {"leftover-profiles", Error, Running,
     "Shared profiles are still initialised after PLUGIN_DEINIT.",
     "Deinitialise in PLUGIN_DEINIT what PLUGIN_INIT initialised."},
    {"leftover-threads", Error, Running,
     "Threads are running after PLUGIN_DEINIT; they go on in code that is gone.",
     "Tell them to end and join them in PLUGIN_DEINIT."},
    {"stays-loaded", Warning, Running, "The library is still loaded after it was closed.",
     "Look for thread_local objects with destructors, and for handles from dlopen() of the plugin "
     "itself."},
    {"uncaught-exception", Error, Running, "An exception that nobody caught called std::terminate.",
     "Catch it in the thread's own function, or where the function is noexcept."},
    {"crash", Error, Running, "The plugin crashed.", "The frames name the place."},
    {"hang", Error, Running, "The plugin wasn't done within the time limit.",
     "The frames name the place. --timeout gives more time."},
    {"dropped-task-hang", Error, Running,
     "A task that was dropped, not run, called the broker while it was destroyed; the daemon would "
     "hang.",
     "Let no object that a requested task captures call the broker in its destructor."},
    {"process-ended", Error, Running, "The process ended while the plugin was running.",
     "Don't call exit() and the like in a plugin; they end the daemon."},
    {"sanitizer-report", Error, Running, "A sanitizer found a mistake.", "See its report."},
};

}  // namespace

std::span<const FindingKind> allFindingKinds() {
    return kinds;
}

const FindingKind& findingKind(std::string_view id) {
    const auto* const found =
        std::ranges::find_if(kinds, [&](const FindingKind& kind) { return id == kind.id; });
    if (found == std::end(kinds)) {
        throw std::out_of_range("no finding " + std::string(id));
    }
    return *found;
}

void Findings::add(std::string_view id, const std::string& detail) {
    const auto& kind = findingKind(id);
    auto found = std::ranges::find(m_list, &kind, &Finding::kind);
    if (found == m_list.end()) {
        found = m_list.insert(found, {&kind, {}});
    }
    const auto kept = detail.substr(0, keptBytes);
    if (!kept.empty() && found->details.size() < keptDetails &&
        std::ranges::find(found->details, kept) == found->details.end()) {
        found->details.push_back(kept);
    }
}

bool Findings::has(std::string_view id) const {
    return std::ranges::find(m_list, &findingKind(id), &Finding::kind) != m_list.end();
}

}  // namespace corvane::check
