// The findings of a check.
#include "tools/corvane/check/findings/Findings.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace corvane::check {

namespace {

using enum Severity;
using enum Stage;

constexpr std::size_t MAX_DETAILS = 1000;
constexpr std::size_t MAX_DETAIL_BYTES = 4000;

constexpr const char* USE_OWN_THREAD = "Do long work on a thread of the plugin.";

constexpr FindingKind KINDS[] = {
    {"not-a-candidate", Warning, Static, "The daemon ignores files with this name.",
     "Rename the library so that its name ends in \".so\"."},
    {"not-loadable", Error, Static, "The loader can't open the library.",
     "Build the plugin for this machine. Link or install what the loader misses."},
    {"unresolved-symbols", Error, Static,
     "No library defines these functions. The first call of one ends the daemon.",
     "Link the library that defines them; the linker option -z defs finds them. Don't call "
     "functions that the daemon doesn't export."},
    {"no-init", Error, Static, "PLUGIN_INIT is missing, so the daemon unloads the library.",
     "Define extern \"C\" int PLUGIN_INIT(void* broker) with default visibility."},
    {"no-deinit", Warning, Static, "PLUGIN_DEINIT is missing, so nothing undoes PLUGIN_INIT.",
     "Define extern \"C\" void PLUGIN_DEINIT() with default visibility."},
    {"newer-interface", Error, Static,
     "The plugin was built for an interface with more operations than this daemon has.",
     "Build with the headers of this daemon, or install the daemon that the headers belong to."},
    {"exported-symbols", Warning, Static,
     "The library exports more than its entry points. A symbol of the daemon with the same name "
     "replaces the plugin's.",
     "Hide the other symbols with -fvisibility=hidden and a version script."},
    {"unique-symbols", Warning, Static,
     "Exported symbols with the binding \"unique\" prevent the library from being unloaded.",
     "Make them local with a version script, or compile with -fno-gnu-unique."},
    {"nodelete", Warning, Static, "The library was linked with -z nodelete and is never unloaded.",
     "Link it without -z nodelete."},

    {"init-failed", Error, Running,
     "PLUGIN_INIT returned a negative value, so the daemon unloads the plugin.",
     "Return 0 if the plugin can work, also on a machine that lacks its devices."},
    {"init-exception", Error, Running, "PLUGIN_INIT threw an exception.",
     "Catch it in PLUGIN_INIT and return a negative value. The daemon survives only exceptions "
     "derived from std::exception."},
    {"null-callback", Error, Running,
     "The plugin subscribed with a null pointer. The first event calls it.",
     "Pass a function to each subscription."},
    {"subscribed-twice", Warning, Running,
     "The plugin subscribed to an event twice, so each event is delivered twice.",
     "Subscribe once, or unsubscribe first."},
    {"callback-exception", Error, Running, "A callback threw an exception, which ends the daemon.",
     "Catch it in the callback."},
    {"slow-callback", Warning, Running,
     "A callback took longer than the limit. On a device it blocks a thread of the platform.",
     USE_OWN_THREAD},
    {"slow-job", Warning, Running,
     "A job in the plugin's task context took longer than the limit. Events wait behind it.",
     USE_OWN_THREAD},
    {"queue-full", Error, Running,
     "A job queued more jobs than the task context accepts. The daemon waits 15 s and throws "
     "std::domain_error.",
     "Queue at most ten jobs from a callback or job, or do the work in one job."},
    {"not-subscribed", Warning, Running,
     "The plugin unsubscribed from an event to which it never subscribed.",
     "Check whether two operations were confused."},
    {"deinit-exception", Error, Running, "PLUGIN_DEINIT threw an exception, which ends the daemon.",
     "Catch it in PLUGIN_DEINIT."},
    {"leftover-subscriptions", Error, Running,
     "The plugin is still subscribed after PLUGIN_DEINIT. The next event calls unloaded code.",
     "Unsubscribe in PLUGIN_DEINIT, and before PLUGIN_INIT returns an error."},
    {"leftover-profiles", Error, Running,
     "Shared profiles are still initialised after PLUGIN_DEINIT.",
     "Deinitialise in PLUGIN_DEINIT what PLUGIN_INIT initialised."},
    {"leftover-threads", Error, Running,
     "Threads of the plugin are still running after PLUGIN_DEINIT. They would run unloaded code.",
     "Stop and join them in PLUGIN_DEINIT."},
    {"stays-loaded", Warning, Running, "The library is still loaded after dlclose().",
     "Look for thread_local objects with destructors, and for handles to the plugin that the "
     "plugin itself opened with dlopen()."},
    {"uncaught-exception", Error, Running, "An uncaught exception called std::terminate.",
     "Catch it in the thread's function, or in the function that is noexcept."},
    {"crash", Error, Running, "The plugin crashed.", "The stack frames show where."},
    {"hang", Error, Running, "The plugin didn't finish within the time limit.",
     "The stack frames show where it hangs. --timeout raises the limit."},
    {"dropped-task-hang", Error, Running,
     "A task that was dropped without being run called the broker while it was destroyed. The "
     "daemon would hang.",
     "Let no object that a requested task captures call the broker in its destructor."},
    {"process-ended", Error, Running, "The process ended while the plugin was running.",
     "Don't call exit() or similar functions in a plugin; they end the daemon."},
    {"sanitizer-report", Error, Running, "A sanitizer reported an error.", "Read its report."},
};

}  // namespace

std::span<const FindingKind> allFindingKinds() {
    return KINDS;
}

const FindingKind& findingKind(std::string_view id) {
    const auto* const found =
        std::ranges::find_if(KINDS, [&](const FindingKind& kind) { return id == kind.id; });
    if (found == std::end(KINDS)) {
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
    const auto kept = detail.substr(0, MAX_DETAIL_BYTES);
    if (!kept.empty() && found->details.size() < MAX_DETAILS &&
        std::ranges::find(found->details, kept) == found->details.end()) {
        found->details.push_back(kept);
    }
}

bool Findings::has(std::string_view id) const {
    return std::ranges::find(m_list, &findingKind(id), &Finding::kind) != m_list.end();
}

}  // namespace corvane::check
