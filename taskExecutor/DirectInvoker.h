// Runs a task context's job loop directly, on the calling thread.
#pragma once

#include <functional>

namespace TPL {

/// Owns an `Impl` and forwards to it.
template <typename Impl>
class CInvoker {
public:
    CInvoker() : m_impl(new Impl) {}
    virtual ~CInvoker() { delete m_impl; }
    CInvoker(const CInvoker&) = delete;
    CInvoker& operator=(const CInvoker&) = delete;

    void Invoke(const std::function<void()>& fn) { m_impl->Invoke(fn); }

private:
    Impl* m_impl;
};

class CDirectInvokerImpl {
public:
    virtual ~CDirectInvokerImpl() = default;
    void Invoke(const std::function<void()>& fn) { fn(); }
};

/// One instance for the process, from the first use until exit. Any thread.
class CDirectInvoker : public CInvoker<CDirectInvokerImpl> {
public:
    static CDirectInvoker& GetInstance();
};

}  // namespace TPL
