// What the objects with one interface besides IUnknown have in common: their identity and their life.
#pragma once

#include "com/module.h"

namespace com
{

// Made with one reference; deleted by the Release of the last. Keeps the DLL loaded meanwhile.
template <class Interface>
class SingleInterface : public Interface
{
public:
    virtual ~SingleInterface() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) final
    {
        if (!object)
            return E_POINTER;
        *object = id == __uuidof(IUnknown) || id == __uuidof(Interface) ? this : nullptr;
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

private:
    KeepsLoaded m_keepsLoaded;
    LONG m_references = 1;
};

} // namespace com
