// Holds the one instance of a class: made on first use, never made again.
#pragma once

#include <memory>
#include <mutex>

/// Threads: getInstance from any thread; instance() is reset on the main thread, when
/// nobody else uses the object. After that getInstance returns null.
template <typename T>
class Singleton {
public:
    struct Deleter {
        void operator()(T* object) const { delete object; }
    };

    /// Not owned by the caller. Throws std::system_error if the once-mechanism fails.
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
