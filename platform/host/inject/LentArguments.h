// What is lent to a callback for one argument, made of the values injected: a
// specialisation for each type that isn't a number. get() is what the callback gets.
#pragma once

#include <string>

#include "platform/host/events/Values.h"
#include "platform/host/slots/LentMemory.h"

namespace corvane::host {

/// Numbers and enumerations. Owner: whoever delivers the event, for the call.
template <typename T>
class Lent {
public:
    Lent(const Values& values, const char* name) : m_value(values.enumeration<T>(name)) {}
    T get() const { return m_value; }

private:
    T m_value;
};

template <>
class Lent<bool> {
public:
    Lent(const Values& values, const char* name) : m_value(values.get<bool>(name)) {}
    bool get() const { return m_value; }

private:
    bool m_value;
};

template <>
class Lent<char*> {
public:
    Lent(const Values& values, const char* name) : m_text(values.get<std::string>(name)) {}
    char* get() const { return m_text.get(); }

private:
    LentText m_text;
};

template <>
class Lent<const char*> : public Lent<char*> {
    using Lent<char*>::Lent;
};

}  // namespace corvane::host
