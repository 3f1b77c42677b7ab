// The priority of a plugin by its file name. Two names depend on the product: on a file
// that another application leaves, and on a product type of the platform.
#pragma once

#include <system_info.h>
#include <unistd.h>

#include <string>

#include "daemon/src/common/log.h"

namespace PluginPriorityChecker {

/// Whether the product type is one of those that come with the dongle.
inline bool isZarnReadySupport() {
    constexpr const char* key = "com.ondrix/featureconf/product.zarn_product_type";
    int type = 0;
    if (system_info_get_custom_int(key, &type) != 0) {
        LOGE("%s", key);
    }
    LOGI("product type : %d", type);
    return type == 7 || type == 8;
}

/// What a priority comes from.
enum class Rule {
    Ordinary,            // any name without a rule of its own
    BleApplication,      // that name
    LiteWithMarker,      // that name, and the marker file exists
    LiteWithoutMarker,   // that name, and it doesn't
    DongleSupported,     // that name, and the product type is one with the dongle
    DongleNotSupported,  // that name, and it isn't, or can't be asked for
};

struct Decision {
    int priority;
    Rule rule;
};

/// Higher is loaded earlier. Main thread; asks the platform only for the names concerned.
inline Decision decide(const std::string& name) {
    constexpr int ordinary = 5;
    if (name == "libbleapp.so") {
        return {8, Rule::BleApplication};
    }
    if (name == "libbtapp-lite.so") {
        return access(CORVANE_MARKER_FILE, F_OK) == 0 ? Decision{9, Rule::LiteWithMarker}
                                                      : Decision{7, Rule::LiteWithoutMarker};
    }
    if (name == "libZarnDongleDetectNotification.so") {
        return isZarnReadySupport() ? Decision{10, Rule::DongleSupported}
                                    : Decision{ordinary, Rule::DongleNotSupported};
    }
    return {ordinary, Rule::Ordinary};
}

inline int getPriority(const std::string& name) {
    return decide(name).priority;
}

}  // namespace PluginPriorityChecker
