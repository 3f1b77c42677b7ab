// corvane check: finds the faults of a plugin before a daemon loads it.
#include <chrono>
#include <iostream>
#include <memory>
#include <string>

#include "tools/corvane/Commands.h"
#include "tools/corvane/check/CheckResult.h"
#include "tools/corvane/check/process/RunningCheck.h"
#include "tools/corvane/check/process/WorkDirectory.h"
#include "tools/corvane/check/static/StaticCheck.h"
#include "tools/corvane/common/Exposure.h"
#include "tools/corvane/common/Printable.h"

namespace corvane::tool {

namespace {

using namespace corvane::check;

struct Words {
    std::string file;
    bool asJson = false;
    bool isStaticOnly = false;
    bool showsLog = false;
    int slowMs = 100;
    double timeoutSec = 30;
};

CheckResult check(const Words& words) {
    using std::chrono::milliseconds;
    const Limits limits{milliseconds(words.slowMs),
                        milliseconds(static_cast<long long>(words.timeoutSec * 1000))};
    const WorkDirectory workDirectory(words.file);
    CheckResult result{words.file, {}, words.isStaticOnly, {}, exposureOfFile(words.file)};
    const bool canRun = checkStatically(workDirectory, limits.whole, result.findings);
    if (canRun && !words.isStaticOnly) {
        result.facts = checkRunning(workDirectory, limits, result.findings);
    }
    return result;
}

void run(const Words& words, int& status) {
    const auto result = check(words);
    std::cout << (words.asJson ? jsonOf(result) : textOf(result));
    if (!words.asJson) {
        warnOf(result.exposed);
    }
    if (words.showsLog && result.facts) {
        std::cerr << printable(result.facts->log, "\n\t");
    }
    status = result.findings.list().empty() ? 0 : 1;
}

}  // namespace

void addCheckCommand(CLI::App& app, int& status) {
    const auto words = std::make_shared<Words>();
    auto* const command =
        app.add_subcommand("check", "Find the faults of a plugin in a separate process");
    command->add_option("PLUGIN", words->file, "Library of the plugin")->required()->type_name("");
    command->add_flag("--json", words->asJson, "Print a JSON object");
    command->add_flag("--static-only", words->isStaticOnly, "Don't run the plugin");
    command->add_flag("--log", words->showsLog,
                      "Print the log of plugin and daemon to the standard error");
    command->add_option("--slow-ms", words->slowMs, "Time limit for a callback or job")
        ->capture_default_str()
        ->check(CLI::Range(0, 3600000))
        ->type_name("MS");
    command->add_option("--timeout", words->timeoutSec, "Time limit for each run of the plugin")
        ->capture_default_str()
        ->check(CLI::Range(0.1, 3600.0))
        ->type_name("SECONDS");
    command->footer(
        "Loads the plugin, delivers every event to which it subscribes with each legal value, "
        "also\n"
        "from several threads, and unloads it. The plugin can reach neither a bus nor a sound\n"
        "server. The status is 0 without findings, 1 with findings, and 2 if the plugin can't be\n"
        "checked. Example:\n"
        "  corvane check --slow-ms 50 build/libmy-plugin.so");
    command->callback([words, &status] { run(*words, status); });
}

}  // namespace corvane::tool
