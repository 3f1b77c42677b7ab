// What the registry knows of an event source. Polymorphic, so that the concrete
// class can be recovered with a checked cast.
#pragma once

class ICallback {
public:
    virtual ~ICallback() = default;
};
