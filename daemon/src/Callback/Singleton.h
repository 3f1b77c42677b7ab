// The one instance of a class: created on first use, never created again.
#pragma once

#include <memory>
#include <mutex>

/// Threads: getInstance from any thread. instance() is reset on the main thread when no other
/// thread uses the object; getInstance returns null afterwards.
template <typename T>
class Singleton {
public:
    struct Deleter {
        void operator()(T* object) const { delete object; }
    };

    /// Not owned by the caller. Throws what std::call_once and the constructor throw.
    static T* getInstance() {
        std::call_once(initFlag(), [] { instance().reset(new T); });
        return instance().get();
    }

    static std::unique_ptr<T, Deleter>& instance() {
        static std::unique_ptr<T, Deleter> object;
        return object;
    }

private:
    static std::once_flag& initFlag() {
        static std::once_flag flag;
        return flag;
    }
};
