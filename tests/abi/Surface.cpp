// Exports a function from which all types of the plugin ABI are reachable, for abidw.
#include <IRequestBroker.h>

extern "C" IRequestBroker* corvane_plugin_abi(IRequestBroker* broker);
IRequestBroker* corvane_plugin_abi(IRequestBroker* broker) {
    return broker;
}
