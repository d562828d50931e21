// What all objects that a host holds have in common: their interfaces, their count and the thread they belong to.
#pragma once

#include "com/errors.h"
#include "com/module.h"

#include <oaidl.h>

#include <type_traits>

namespace com
{

// An object with these interfaces; the first one is its identity. Made with one reference; deleted by the Release of
// the last. Keeps the DLL loaded meanwhile.
template <class First, class... Others>
class Counted : public First, public Others...
{
public:
    Counted() = default;
    Counted(const Counted &) = delete;
    Counted &operator=(const Counted &) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) final
    {
        if (!object)
            return E_POINTER;
        *object = id == __uuidof(IUnknown) ? static_cast<First *>(this) : nullptr;
        Find<First>(id, object);
        (Find<Others>(id, object), ...);
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() final { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }
    ULONG STDMETHODCALLTYPE Release() final
    {
        const LONG left = InterlockedDecrement(&m_references);
        if (left == 0)
            delete this;
        return static_cast<ULONG>(left);
    }

protected:
    virtual ~Counted() = default;

    // The body of a method: what it throws becomes the method's result. A call from another thread than the one that
    // made the object, which a host's missing marshalling alone can bring about, is refused: RPC_E_WRONG_THREAD.
    template <class Body>
    HRESULT Guard(Body &&body) const noexcept
    {
        return Guarded(__uuidof(First),
                       [&]
                       {
                           CheckThread();
                           body();
                       });
    }
    void CheckThread() const
    {
        if (GetCurrentThreadId() != m_thread)
            throw Failure{RPC_E_WRONG_THREAD};
    }

private:
    template <class Interface>
    void Find(REFIID id, void **object)
    {
        const bool asDispatch = std::is_base_of_v<IDispatch, Interface> && id == __uuidof(IDispatch);
        if (!*object && (id == __uuidof(Interface) || asDispatch))
            *object = static_cast<Interface *>(this);
    }

    ModuleLock m_lock; // gone last
    LONG m_references = 1;
    const DWORD m_thread = GetCurrentThreadId();
};

} // namespace com
