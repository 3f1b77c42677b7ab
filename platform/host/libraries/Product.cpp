// Starts and stops what feeds the callbacks.
#include "platform/host/libraries/Product.h"

#include <Ecore.h>
#include <dlog.h>

#include <cerrno>
#include <exception>
#include <memory>

#include "platform/host/bluetooth/bluez/BluezClient.h"
#include "platform/host/inject/InjectServer.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

struct Product {
    BluezClient bluez;
    std::unique_ptr<InjectServer> inject;
};

// A plain pointer: at the exit of a process that didn't stop the product, the main-loop
// library may be gone already, so nothing is to be released then.
Product* product = nullptr;

std::unique_ptr<InjectServer> openInjection() {
    const auto& wanted = settings().inject;
    if (wanted.socket.empty()) {
        return nullptr;
    }
    try {
        return std::make_unique<InjectServer>(wanted.socket, wanted.threads);
    } catch (const std::exception& error) {
        dlog_print(DLOG_PRIORITY_ERROR, "INJECT", "no injection: %s", error.what());
        return nullptr;
    }
}

}  // namespace

int startProduct() {
    if (product != nullptr) {
        return 0;
    }
    if (ecore_init() == 0) {
        return -EIO;
    }
    auto started = std::make_unique<Product>();
    started->inject = openInjection();
    product = started.release();
    return 0;
}

int stopProduct() {
    if (product == nullptr) {
        return 0;
    }
    delete product;
    product = nullptr;
    ecore_shutdown();
    return 0;
}

}  // namespace corvane::host
