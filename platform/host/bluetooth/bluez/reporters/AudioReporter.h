// Audio connections and whether sound flows on them.
#pragma once

#include "platform/host/bluetooth/bluez/bus/BluezReporter.h"

namespace corvane::host {

class AudioReporter : public BluezReporter {
public:
    void onChange(const Change& change) override;
};

}  // namespace corvane::host
