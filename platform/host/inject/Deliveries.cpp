// How an injected event reaches its callback. What is lent to the callback follows
// from the callback's type, so there is one function for all of them.
#include "platform/host/inject/Deliveries.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/host/inject/LentArguments.h"
#include "platform/host/inject/LentRecords.h"
#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

namespace {

template <auto setFunction, typename... All, std::size_t... i>
unsigned deliverLent(void (*)(All...), std::index_sequence<i...>,
                     [[maybe_unused]] const Event& event, [[maybe_unused]] const Values& values) {
    using Types = std::tuple<All...>;
    std::tuple<Lent<std::tuple_element_t<i, Types>>...> lent{
        Lent<std::tuple_element_t<i, Types>>(values, event.arguments[i].name)...};
    return slotOf<setFunction>.deliver(std::get<i>(lent).get()...);
}

template <typename... All>
constexpr std::size_t countOf(void (*)(All...)) {
    return sizeof...(All);
}

template <auto setFunction>
unsigned deliver(const Event& event, const Values& values) {
    constexpr CallbackOf<setFunction> type = nullptr;
    // All but the user data.
    return deliverLent<setFunction>(type, std::make_index_sequence<countOf(type) - 1>(), event,
                                    values);
}

constexpr Delivery deliveries[] = {
#define SLOT(setFunction, event) {event, &deliver<&setFunction>},
#include "platform/host/slots/Slots.def"
#undef SLOT
};

}  // namespace

std::span<const Delivery> allDeliveries() {
    return deliveries;
}

const Delivery& deliveryOf(const Event& event) {
    const std::string_view name = event.name;
    const auto* const found = std::ranges::find(deliveries, name, [](const Delivery& delivery) {
        return std::string_view(delivery.event);
    });
    if (found == std::end(deliveries)) {
        throw std::logic_error(std::string("nothing delivers ") + event.name);
    }
    return *found;
}

}  // namespace corvane::host
