// The values of one event's arguments and record fields, by name.
#include "platform/host/events/Values.h"

#include "platform/host/events/ValueText.h"

namespace corvane::host {

Values::Values(const Event& event) {
    setDefaults(event.arguments);
}

void Values::setDefaults(std::span<const Field> fields) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            setDefaults(field.fields);
        } else {
            set(field, parseValue(field, field.defaultText));
        }
    }
}

}  // namespace corvane::host
