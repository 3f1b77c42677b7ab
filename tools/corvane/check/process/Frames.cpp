// Symbolizes the addresses of a backtrace.
#include "tools/corvane/check/process/Frames.h"

#include <cxxabi.h>
#include <elfutils/libdwfl.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>

namespace corvane::check {

namespace fs = std::filesystem;

namespace {

struct SessionEnd {
    void operator()(Dwfl* session) const { dwfl_end(session); }
};

std::string nameOf(Dwfl* session, std::uint64_t address, bool isBehindCall) {
    const Dwarf_Addr at = isBehindCall ? address - 1 : address;
    auto* const module = dwfl_addrmodule(session, at);
    if (module == nullptr) {
        std::ostringstream text;
        text << "0x" << std::hex << address << " in no library";
        return text.str();
    }
    const char* const symbol = dwfl_module_addrname(module, at);
    std::string text = symbol == nullptr ? "?" : demangled(symbol);
    if (auto* const line = dwfl_module_getsrc(module, at)) {
        int number = 0;
        if (const char* const file =
                dwfl_lineinfo(line, nullptr, &number, nullptr, nullptr, nullptr)) {
            text += " at " + fs::path(file).filename().string() + ':' + std::to_string(number);
        }
    }
    const char* const library =
        dwfl_module_info(module, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    return text + " in " + fs::path(library).filename().string();
}

}  // namespace

std::vector<std::string> namesOfFrames(pid_t process, const std::vector<std::uint64_t>& addresses) {
    unsetenv("DEBUGINFOD_URLS");  // no network access
    static char* debugInfoPath = nullptr;
    static const Dwfl_Callbacks callbacks{.find_elf = &dwfl_linux_proc_find_elf,
                                          .find_debuginfo = &dwfl_standard_find_debuginfo,
                                          .section_address = nullptr,
                                          .debuginfo_path = &debugInfoPath};
    const std::unique_ptr<Dwfl, SessionEnd> session(dwfl_begin(&callbacks));
    if (session == nullptr || dwfl_linux_proc_report(session.get(), process) != 0 ||
        dwfl_report_end(session.get(), nullptr, nullptr) != 0) {
        return {};
    }
    std::vector<std::string> names;
    names.reserve(addresses.size());
    for (const auto address : addresses) {
        names.push_back(nameOf(session.get(), address, !names.empty()));
    }
    return names;
}

std::string demangled(const char* symbol) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(symbol, nullptr, nullptr, &status), &std::free);
    return text == nullptr ? symbol : text.get();
}

}  // namespace corvane::check
