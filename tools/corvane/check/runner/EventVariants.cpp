// The legal variants of an event.
#include "tools/corvane/check/runner/EventVariants.h"

#include <span>

#include "platform/host/events/ValueText.h"

namespace corvane::check {

using namespace corvane::host;

namespace {

std::vector<std::string> otherValues(const Field& field) {
    switch (field.kind) {
        case Kind::Boolean:
            return {field.defaultText == std::string("true") ? "false" : "true"};
        case Kind::Text:
        case Kind::Bytes:
        case Kind::Uuids:
            return {""};
        case Kind::Enumeration: {
            std::vector<std::string> names;
            for (const auto& entry : field.allowed) {
                if (entry.name != std::string(field.defaultText)) {
                    names.emplace_back(entry.name);
                }
            }
            return names;
        }
        default:
            return {};
    }
}

void addVariants(std::vector<EventVariant>& variants, const Event& event,
                 std::span<const Field> fields) {
    for (const auto& field : fields) {
        for (const auto& text : otherValues(field)) {
            Values values(event);
            values.set(field, parseValue(field, text));
            variants.push_back({std::move(values), std::string(field.name) + '=' + text});
        }
        addVariants(variants, event, field.fields);
    }
}

}  // namespace

std::vector<EventVariant> variantsOf(const Event& event) {
    std::vector<EventVariant> variants{{Values(event), ""}};
    addVariants(variants, event, event.arguments);
    return variants;
}

}  // namespace corvane::check
