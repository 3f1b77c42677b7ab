// Starts and stops the sources of Bluetooth events.
#include "platform/host/libraries/Product.h"

#include <Ecore.h>
#include <dlog.h>

#include <cerrno>
#include <exception>
#include <memory>

#include "platform/host/bluez/BluezClient.h"
#include "platform/host/inject/InjectServer.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

struct Product {
    BluezClient bluez;
    std::unique_ptr<InjectServer> inject;
};

// A plain pointer: in a process that exits without stopping the product, the main-loop library
// may already be shut down, so nothing must be destroyed then.
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
