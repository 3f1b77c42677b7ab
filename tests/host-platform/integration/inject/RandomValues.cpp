#include "tests/host-platform/integration/inject/RandomValues.h"

#include <limits>
#include <span>
#include <string>

namespace {

using namespace corvane::host;

int upTo(std::mt19937& random, int limit) {
    return std::uniform_int_distribution<int>(0, limit)(random);
}

int randomNumber(std::mt19937& random) {
    switch (upTo(random, 3)) {
        case 0:
            return std::numeric_limits<int>::min();
        case 1:
            return std::numeric_limits<int>::max();
        case 2:
            return upTo(random, 2) - 1;
        default:
            return static_cast<int>(random());
    }
}

// Returns a text of random length. A quarter of the texts may contain any byte except zero, so
// most of these are not valid UTF-8.
std::string randomText(std::mt19937& random) {
    const bool plain = upTo(random, 3) != 0;
    std::string text(static_cast<std::size_t>(upTo(random, 9) == 0 ? 5000 : upTo(random, 30)), ' ');
    for (auto& letter : text) {
        letter = static_cast<char>(plain ? 32 + upTo(random, 94) : 1 + upTo(random, 254));
    }
    return text;
}

Value randomEnumeration(const Field& field, std::mt19937& random) {
    if (upTo(random, 9) == 0) {
        return randomNumber(random);
    }
    const auto last = static_cast<int>(field.allowed.size()) - 1;
    return field.allowed[static_cast<std::size_t>(upTo(random, last))].value;
}

Value randomBytes(std::mt19937& random) {
    Bytes bytes(static_cast<std::size_t>(upTo(random, 300)));
    for (auto& byte : bytes) {
        byte = static_cast<char>(random());
    }
    return bytes;
}

Value randomUuids(std::mt19937& random) {
    Uuids uuids(static_cast<std::size_t>(upTo(random, 5)));
    for (auto& uuid : uuids) {
        uuid = randomText(random);
    }
    return uuids;
}

Value randomValue(const Field& field, std::mt19937& random) {
    switch (field.kind) {
        case Kind::Boolean:
            return upTo(random, 1) == 1;
        case Kind::Text:
            return randomText(random);
        case Kind::Enumeration:
            return randomEnumeration(field, random);
        case Kind::Bytes:
            return randomBytes(random);
        case Kind::Uuids:
            return randomUuids(random);
        case Kind::Count:
            return upTo(random, 1) == 1 ? Value() : Value(upTo(random, 6) - 1);
        case Kind::Byte:
            return upTo(random, 260) - 2;
        case Kind::Short:
            return upTo(random, 66000) - 200;
        case Kind::Integer:
        case Kind::Record:
            break;
    }
    return randomNumber(random);
}

void randomise(Values& values, std::span<const Field> fields, std::mt19937& random) {
    for (const auto& field : fields) {
        if (field.kind == Kind::Record) {
            randomise(values, field.fields, random);
        } else if (upTo(random, 3) != 0) {
            values.set(field, randomValue(field, random));
        }
    }
}

}  // namespace

Values randomValues(const Event& event, std::mt19937& random) {
    Values values(event);
    randomise(values, event.arguments, random);
    return values;
}
