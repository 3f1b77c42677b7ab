// Checks a plugin without running it.
#include "tools/corvane/check/static/StaticCheck.h"

#include <IRequestBroker.h>
#include <sys/wait.h>

#include <cstring>
#include <sstream>
#include <string_view>

#include "daemon/src/FileManager.h"
#include "tools/corvane/check/findings/CheckError.h"
#include "tools/corvane/check/process/Frames.h"
#include "tools/corvane/check/process/PluginProcess.h"
#include "tools/corvane/check/process/RunningCheck.h"
#include "tools/corvane/check/process/Spawn.h"
#include "tools/corvane/check/static/ElfFile.h"

namespace corvane::check {

namespace {

void checkName(const WorkDirectory& workDirectory, Findings& findings) {
    const auto entry = FileManager::examine(workDirectory.plugins().string(), workDirectory.name());
    if (entry.candidacy == FileManager::Candidacy::Unreachable) {
        throw CheckError(workDirectory.copy().string() +
                         " can't be examined: " + std::strerror(entry.error));
    }
    if (entry.candidacy != FileManager::Candidacy::Candidate) {
        findings.add("not-a-candidate", workDirectory.name());
    }
}

// Starts the runner under LD_TRACE_LOADED_OBJECTS: the loader lists all missing symbols and runs
// nothing. The runner exports the same symbols as the daemon.
std::vector<std::string> missingSymbols(const WorkDirectory& workDirectory) {
    std::filesystem::create_symlink(workDirectory.copy(), workDirectory.path() / "traced.so");
    const auto output = workDirectory.path() / "traced";
    auto environment = workDirectory.environment();
    environment.insert({{"LD_TRACE_LOADED_OBJECTS", "1"},
                        {"LD_WARN", "yes"},
                        {"LD_BIND_NOW", "yes"},
                        {"LD_PRELOAD", "./traced.so"}});
    const auto id = spawn({{findRunner()}, workDirectory.path(), environment, output});
    waitpid(id, nullptr, 0);
    std::istringstream lines(tailOf(output));
    std::vector<std::string> missing;
    constexpr std::string_view head = "undefined symbol: ";
    for (std::string line; std::getline(lines, line);) {
        const auto library = line.find("\t(./traced.so)");
        if (line.starts_with(head) && library != std::string::npos) {
            missing.push_back(demangled(line.substr(head.size(), library - head.size()).c_str()));
        }
    }
    return missing;
}

void addAll(Findings& findings, const char* id, const std::vector<std::string>& details) {
    for (const auto& detail : details) {
        findings.add(id, detail);
    }
}

// Returns true if the loader can open the library.
bool checkOpening(const WorkDirectory& workDirectory, std::chrono::milliseconds limit,
                  Findings& findings) {
    const auto path = "plugins/" + workDirectory.name();
    const auto outcome = PluginProcess(workDirectory).run("open", path, {}, limit);
    addOutcome(outcome, workDirectory.name(), findings);
    if (const auto refusal = outcome.texts.find("refusal"); refusal != outcome.texts.end()) {
        findings.add("not-loadable", refusal->second);
        addAll(findings, "not-loadable", missingSymbols(workDirectory));
        return false;
    }
    return outcome.isDone;
}

}  // namespace

bool checkStatically(const WorkDirectory& workDirectory, std::chrono::milliseconds limit,
                     Findings& findings) {
    checkName(workDirectory, findings);
    if (!checkOpening(workDirectory, limit, findings)) {
        return false;
    }
    addAll(findings, "unresolved-symbols", missingSymbols(workDirectory));
    const auto library = readElfFile(workDirectory.copy());
    if (!library.hasInit) {
        findings.add("no-init");
    }
    if (!library.hasDeinit) {
        findings.add("no-deinit");
    }
    if (library.operationCount > corvaneOperationCount) {
        findings.add("newer-interface", std::to_string(library.operationCount) +
                                            " operations; this daemon has " +
                                            std::to_string(corvaneOperationCount));
    }
    addAll(findings, "exported-symbols", library.exported);
    addAll(findings, "unique-symbols", library.unique);
    if (library.isNodelete) {
        findings.add("nodelete");
    }
    return library.hasInit && !findings.has("unresolved-symbols") &&
           !findings.has("newer-interface");
}

}  // namespace corvane::check
