// A plugin that quits the main loop as soon as the loop runs.
#include <Ecore.h>

#include "tests/plugins/Fixture.h"

int PLUGIN_INIT(void*) {
    say("init");
    ecore_job_add(
        [](void*) {
            say("quits the main loop");
            ecore_main_loop_quit();
        },
        nullptr);
    return 0;
}

void PLUGIN_DEINIT() {
    say("deinit");
}
