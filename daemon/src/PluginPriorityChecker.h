// The priority of a plugin by its file name. Two names also depend on the product: one on a marker
// file that another application creates, one on the platform's product type.
#pragma once

#include <system_info.h>
#include <unistd.h>

#include <string>

#include "daemon/src/common/log.h"

namespace PluginPriorityChecker {

/// Returns true if the product type is one that supports the dongle.
inline bool isZarnReadySupport() {
    constexpr const char* KEY = "com.ondrix/featureconf/product.zarn_product_type";
    int type = 0;
    if (system_info_get_custom_int(KEY, &type) != 0) {
        LOGE("%s", KEY);
    }
    LOGI("product type : %d", type);
    return type == 7 || type == 8;
}

/// The rule that determined a priority.
enum class Rule {
    Ordinary,            // any other name
    BleApplication,      // that name
    LiteWithMarker,      // that name, and the marker file exists
    LiteWithoutMarker,   // that name, and there is no marker file
    DongleSupported,     // that name, and the product type supports the dongle
    DongleNotSupported,  // that name, and it does not, or is unknown
};

struct Decision {
    int priority;
    Rule rule;
};

/// A higher priority is loaded earlier. Queries the platform only for the name concerned. Main
/// thread.
inline Decision decide(const std::string& name) {
    constexpr int ORDINARY = 5;
    if (name == "libbleapp.so") {
        return {8, Rule::BleApplication};
    }
    if (name == "libbtapp-lite.so") {
        return access(CORVANE_MARKER_FILE, F_OK) == 0 ? Decision{9, Rule::LiteWithMarker}
                                                      : Decision{7, Rule::LiteWithoutMarker};
    }
    if (name == "libZarnDongleDetectNotification.so") {
        return isZarnReadySupport() ? Decision{10, Rule::DongleSupported}
                                    : Decision{ORDINARY, Rule::DongleNotSupported};
    }
    return {ORDINARY, Rule::Ordinary};
}

inline int getPriority(const std::string& name) {
    return decide(name).priority;
}

}  // namespace PluginPriorityChecker
