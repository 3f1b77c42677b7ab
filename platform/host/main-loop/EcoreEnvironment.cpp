// The main-loop library's system modules ask the system bus for services that are not used
// here, and log errors where there is no bus. They are switched off before the program
// starts, unless the environment sets the variable.
#include <cstdlib>

namespace {

__attribute__((constructor)) void switchSystemModulesOff() {
    setenv("ECORE_NO_SYSTEM_MODULES", "1", 0);
}

}  // namespace
