#include "daemon/src/Callback/DeviceInfoCopy.h"

#include "daemon/src/Callback/RecordBuffers.h"

using namespace record_buffers;

std::shared_ptr<bt_device_info_s> DeviceInfoCopy::copy(bt_device_info_s* info) {
    if (info == nullptr) {
        return {};
    }
    std::shared_ptr<bt_device_info_s> copied(new bt_device_info_s{}, [](bt_device_info_s* record) {
        freeString(record->remote_address);
        freeString(record->remote_name);
        freeStrings(record->service_uuid, record->service_count);
        freeBytes(record->manufacturer_data);
        delete record;
    });
    if (info->remote_address != nullptr) {
        copied->remote_address = copyString(info->remote_address);
    }
    if (info->remote_name != nullptr) {
        copied->remote_name = copyString(info->remote_name);
    }
    copied->bt_class = info->bt_class;
    copied->service_count = info->service_count;
    if (info->service_count > 0 && info->service_uuid != nullptr) {
        copied->service_uuid = newStrings(info->service_count);
        for (int i = 0; i < info->service_count; ++i) {
            if (info->service_uuid[i] != nullptr) {
                copied->service_uuid[i] = copyString(info->service_uuid[i]);
            }
        }
    }
    copied->is_bonded = info->is_bonded;
    copied->is_connected = info->is_connected;
    copied->is_authorized = info->is_authorized;
    copied->manufacturer_data_len = info->manufacturer_data_len;
    if (info->manufacturer_data != nullptr) {
        copied->manufacturer_data = copyBytes(info->manufacturer_data, info->manufacturer_data_len);
    }
    return copied;
}
