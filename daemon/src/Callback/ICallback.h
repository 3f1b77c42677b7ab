// The registry's view of an event source. It is polymorphic so that the registry can recover the
// concrete class with dynamic_cast.
#pragma once

class ICallback {
public:
    virtual ~ICallback() = default;
};
