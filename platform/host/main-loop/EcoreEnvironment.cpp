// The main-loop library's own system modules ask the system bus for services nobody
// here uses, and fill the log with errors where there is none. They are switched
// off before the program starts, unless the environment decided already.
#include <cstdlib>

namespace {

__attribute__((constructor)) void switchSystemModulesOff() {
    setenv("ECORE_NO_SYSTEM_MODULES", "1", 0);
}

}  // namespace
