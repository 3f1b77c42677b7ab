// The state and the name of the adapter.
#pragma once

#include <optional>

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"

namespace corvane::host {

class AdapterReporter : public BluezReporter {
public:
    void onChange(const Change& change) override;
    void onSnapshot(const BluezObjects& objects) override;

private:
    void reportState(const BluezObjects& objects);

    std::optional<bool> m_reportedPowered;
};

}  // namespace corvane::host
