// The smallest plugin.
extern "C" int PLUGIN_INIT(void*) {
    return 0;
}

extern "C" void PLUGIN_DEINIT() {}
