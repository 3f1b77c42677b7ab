// The platform's numbers of services.
#pragma once

#include <bluetooth.h>

#include <string>

#include "platform/host/bluetooth/bluez/bus/Properties.h"

namespace corvane::host {

/// The service of that UUID, which `device` (it may be null) wants to use.
bt_profile_service_id_e serviceId(const std::string& uuid, const Properties* device);

}  // namespace corvane::host
