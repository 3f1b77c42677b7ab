// A process that only runs the main loop. The daemon's resident memory is compared with it.
#include <Ecore.h>
#include <unistd.h>

int main() {
    ecore_init();
    ecore_job_add([](void*) { static_cast<void>(!write(STDERR_FILENO, "ready\n", 6)); }, nullptr);
    ecore_main_loop_begin();
    ecore_shutdown();
    return 0;
}
