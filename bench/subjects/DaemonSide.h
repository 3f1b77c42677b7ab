// The daemon's side of the comparisons: brokers of plugins, and the platform that calls back.
#pragma once

#include <memory>
#include <vector>

#include "bench/subjects/IdlePlatform.h"
#include "bench/subjects/Subscriber.h"
#include "daemon/src/Callback/CallbackDelegator.h"
#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/TaskInvokerImpl.h"

/// A plugin as the fan-out sees it. Leaves when it is destroyed.
class BenchPlugin {
public:
    BenchPlugin() = default;
    ~BenchPlugin() {
        m_broker.BtAdapterUnsetStateChangedCb();
        m_broker.BtDeviceUnsetBondCreatedCb();
    }
    BenchPlugin(const BenchPlugin&) = delete;
    BenchPlugin& operator=(const BenchPlugin&) = delete;

    void subscribe(bt_adapter_state_changed_cb fn, void* userData) {
        m_broker.BtAdapterSetStateChangedCb(fn, userData);
    }
    void subscribe(bt_device_bond_created_cb fn, void* userData) {
        m_broker.BtDeviceSetBondCreatedCb(fn, userData);
    }

private:
    TaskInvokerImpl m_invoker;
    RequestBroker m_broker{&m_invoker};
};

/// Subscribes and emits like the rivals.
template <typename Callback>
class Product {
public:
    void subscribe(Callback fn, void* userData) {
        m_plugins.push_back(std::make_unique<BenchPlugin>());
        m_plugins.back()->subscribe(fn, userData);
    }
    void emit(int result, bt_adapter_state_e state) {
        const auto slot = idle_platform::adapterState();
        slot.callback(result, state, slot.userData);
    }
    void emit(int result, bt_device_info_s* info) {
        const auto slot = idle_platform::bondCreated();
        slot.callback(result, info, slot.userData);
    }

private:
    std::vector<std::unique_ptr<BenchPlugin>> m_plugins;
};
