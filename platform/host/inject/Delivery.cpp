// Delivers an injected event to its callback. What is lent to the callback follows from the
// callback's type.
#include "platform/host/inject/Delivery.h"

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/host/events/EventTypes.h"
#include "platform/host/events/Records.h"
#include "platform/host/events/ValueText.h"
#include "platform/host/slots/CallbackSlot.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

namespace {

/// Makes the arguments of one delivery from the values and owns the memory that is lent. Also a
/// visitor of records, which it fills in. Owner: deliver(), on its thread.
class Lender {
public:
    explicit Lender(const Values& values) : m_values(values) {}

    template <typename T>
    T lend(const char* name) {
        if constexpr (std::is_same_v<T, bool>) {
            return m_values.get<bool>(name);
        } else if constexpr (std::is_same_v<T, char*> || std::is_same_v<T, const char*>) {
            return keep(LentText(m_values.get<std::string>(name))).get();
        } else if constexpr (std::is_pointer_v<T>) {
            return lendRecord<std::remove_pointer_t<T>>();
        } else if constexpr (std::is_class_v<T>) {
            return filled<T>();
        } else {
            return static_cast<T>(m_values.get<int>(name));
        }
    }

    template <typename T>
    void value(const char* name, const char*, T& member) {
        member = lend<T>(name);
    }
    void text(const char* name, const char*, char*& member, std::size_t size) {
        member = keep(LentText(m_values.get<std::string>(name), size)).get();
    }
    void bytes(const char* name, const char*, char*& member, int& size) {
        auto& lent = keep(LentBytes(m_values.get<Bytes>(name)));
        member = lent.get();
        size = lent.count();
    }
    void uuids(char**& member, int& count, UuidArray array);
    void presence() {}

private:
    template <typename Record>
    Record filled() {
        Record record{};
        visitFields(*this, record);
        return record;
    }

    template <typename Record>
    Record* lendRecord() {
        const auto* const present = m_values.find<bool>("present");
        auto& record = keep(filled<Record>());
        return present == nullptr || *present ? &record : nullptr;
    }

    template <typename T>
    T& keep(T lent) {
        auto kept = std::make_unique<T>(std::move(lent));
        auto& result = *kept;
        m_kept.emplace_back(std::move(kept));
        return result;
    }

    const Values& m_values;
    std::vector<std::shared_ptr<void>> m_kept;
};

void Lender::uuids(char**& member, int& count, UuidArray array) {
    auto& lent = keep(LentTexts(m_values.get<Uuids>("service_uuid")));
    const auto* const given = m_values.find<int>("service_count");
    member = lent.get();
    count = given == nullptr ? lent.count() : *given;
    if (count > lent.count() && (lent.count() > 0 || array == UuidArray::isRead)) {
        throw InvalidValue(
            "service_count can't be " + std::to_string(count) + " with " +
            std::to_string(lent.count()) + " in service_uuid: beyond them is no memory to read" +
            (array == UuidArray::isRead ? ""
                                        : "; with an empty service_uuid it may have any value"));
    }
}

// Unless a device was found, the strings are empty and there is nothing else.
template <>
bt_adapter_device_discovery_info_s* Lender::lendRecord<bt_adapter_device_discovery_info_s>() {
    auto& record = keep(filled<bt_adapter_device_discovery_info_s>());
    if (lend<bt_adapter_device_discovery_state_e>("state") != BT_ADAPTER_DEVICE_DISCOVERY_FOUND) {
        record = {};
        record.remote_address = keep(LentText("")).get();
        record.remote_name = keep(LentText("")).get();
    }
    return &record;
}

template <auto setFunction, std::size_t... i>
unsigned deliverTo(const Values& values, std::index_sequence<i...>) {
    [[maybe_unused]] Lender lender(values);
    return slotOf<setFunction>.deliver(
        lender.lend<ArgumentType<setFunction, i>>(argumentsOf<setFunction>[i].name)...);
}

using Deliver = unsigned (*)(const Values& values);

constexpr Deliver DELIVERIES[] = {
#define EVENT(library, name, setFunction, unsetFunction, meaning, ...)           \
    [](const Values& values) {                                                   \
        return deliverTo<&setFunction>(values, ArgumentIndices<&setFunction>()); \
    },
#include "platform/host/events/Events.def"
#undef EVENT
};

}  // namespace

unsigned deliver(const Event& event, const Values& values) {
    return DELIVERIES[&event - allEvents().data()](values);
}

}  // namespace corvane::host
