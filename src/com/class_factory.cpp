// Class objects: what the system asks for when a host creates an object.
#include "com/class_factory.h"

#include "com/errors.h"
#include "com/module.h"

namespace com
{

namespace
{

class ClassFactory final : public IClassFactory
{
public:
    explicit ClassFactory(const PublicClass &publicClass) : m_class(publicClass) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) override
    {
        if (!object)
            return E_POINTER;
        *object = id == __uuidof(IUnknown) || id == __uuidof(IClassFactory) ? this : nullptr;
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&m_references)); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const LONG left = InterlockedDecrement(&m_references);
        if (left == 0)
            delete this;
        return static_cast<ULONG>(left);
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *outer, REFIID id, void **object) override
    {
        return Guarded(__uuidof(IClassFactory),
                       [&]
                       {
                           Checked(object) = nullptr;
                           if (outer)
                               throw Failure{CLASS_E_NOAGGREGATION};
                           IUnknown *created = m_class.create();
                           const HRESULT result = created->QueryInterface(id, object);
                           created->Release();
                           Check(result);
                       });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override
    {
        if (lock)
            AddReason();
        else
            RemoveReason();
        return S_OK;
    }

private:
    KeepsLoaded m_keepsLoaded;
    const PublicClass &m_class;
    LONG m_references = 1;
};

} // namespace

IClassFactory *NewClassFactory(const PublicClass &publicClass)
{
    return new ClassFactory(publicClass);
}

} // namespace com
