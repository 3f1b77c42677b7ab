// Everything of the plugin ABI reachable from one exported function, for abidw.
#include <IRequestBroker.h>

extern "C" IRequestBroker* corvane_plugin_abi(IRequestBroker* broker);
IRequestBroker* corvane_plugin_abi(IRequestBroker* broker) {
    return broker;
}
