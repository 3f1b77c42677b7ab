#include "tests/abi/OperationTable.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "daemon/src/broker/RequestBroker.h"

namespace {

constexpr std::size_t DESTRUCTOR_SLOTS = 2;

/// Returns the number of slots. The vtable's symbol begins before the first slot, so the end of the
/// symbol is used.
std::size_t slotCount(void** table) {
    Dl_info info;
    void* symbol = nullptr;
    if (dladdr1(table, &info, &symbol, RTLD_DL_SYMENT) == 0 || symbol == nullptr) {
        throw std::runtime_error("the table of virtual functions has no symbol");
    }
    const auto start = reinterpret_cast<std::size_t>(info.dli_saddr);
    const std::size_t size = static_cast<const ElfW(Sym)*>(symbol)->st_size;
    return (start + size - reinterpret_cast<std::size_t>(table)) / sizeof(void*);
}

std::string nameOf(void* function) {
    Dl_info info;
    if (dladdr(function, &info) == 0 || info.dli_saddr != function) {
        throw std::runtime_error("a virtual function has no symbol");
    }
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), &std::free);
    const std::string name = status == 0 ? demangled.get() : info.dli_sname;
    const std::string scope = "RequestBroker::";
    return name.starts_with(scope) ? name.substr(scope.size()) : name;
}

std::string nameIn(const std::string& operation) {
    return operation.substr(0, operation.find('('));
}

/// Returns a clause that says where the operation of that name is in `operations`.
std::string whereabouts(const std::string& operation, const std::vector<std::string>& operations) {
    const auto found =
        std::find_if(operations.begin(), operations.end(),
                     [&](const std::string& other) { return nameIn(other) == nameIn(operation); });
    return found == operations.end() ? "which is gone"
                                     : "which is at " + std::to_string(found - operations.begin());
}

}  // namespace

std::vector<std::string> operationTable() {
    const RequestBroker broker(nullptr);
    void** table;
    std::memcpy(&table, static_cast<const void*>(&broker), sizeof table);
    std::vector<std::string> names;
    for (std::size_t slot = DESTRUCTOR_SLOTS; slot < slotCount(table); ++slot) {
        names.push_back(nameOf(table[slot]));
    }
    return names;
}

std::string movedOperations(const std::vector<std::string>& was,
                            const std::vector<std::string>& now) {
    constexpr int SHOWN = 5;
    std::string text;
    int differences = 0;
    for (std::size_t slot = 0; slot < was.size(); ++slot) {
        const std::string found = slot < now.size() ? now[slot] : "beyond the end";
        if (found != was[slot] && ++differences <= SHOWN) {
            const bool renamedOrMoved = nameIn(found) != nameIn(was[slot]);
            text += "slot " + std::to_string(slot) + " was " + was[slot] +
                    (renamedOrMoved ? ", " + whereabouts(was[slot], now) : "") + "; now " + found +
                    "\n";
        }
    }
    if (differences > SHOWN) {
        text += "and " + std::to_string(differences - SHOWN) + " more\n";
    }
    return text;
}
