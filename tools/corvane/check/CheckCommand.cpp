// corvane check: tries a plugin out before it goes into a daemon.
#include "tools/corvane/check/CheckCommand.h"

#include <chrono>
#include <iostream>
#include <memory>
#include <string>

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
    auto* const command = app.add_subcommand("check", "Try a plugin out in a process of its own");
    command->add_option("PLUGIN", words->file, "The plugin's library")->required()->type_name("");
    command->add_flag("--json", words->asJson, "As a JSON object");
    command->add_flag("--static-only", words->isStaticOnly, "Don't run the plugin");
    command->add_flag("--log", words->showsLog, "Also what plugin and daemon log, as errors");
    command->add_option("--slow-ms", words->slowMs, "Limit for a callback or job")
        ->capture_default_str()
        ->check(CLI::Range(0, 3600000))
        ->type_name("MS");
    command->add_option("--timeout", words->timeoutSec, "Limit for the whole run")
        ->capture_default_str()
        ->check(CLI::Range(0.1, 3600.0))
        ->type_name("SECONDS");
    command->footer(
        "The plugin is loaded, gets every event it subscribes to in all legal forms, also from\n"
        "several threads, and is unloaded. Neither bus nor sound server is used.\n"
        "Status 0: clean; 1: something was found; 2: it can't be checked. Example:\n"
        "  corvane check --slow-ms 50 build/libmy-plugin.so");
    command->callback([words, &status] { run(*words, status); });
}

}  // namespace corvane::tool
