// Class objects: what the system requests when a host creates an object.
#include "com/class_factory.h"

#include "com/counted.h"

namespace com
{

namespace
{

class ClassFactory final : public Counted<IClassFactory>
{
public:
    explicit ClassFactory(const PublicClass &publicClass) : m_class(publicClass) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *outer, REFIID id, void **object) override
    {
        return Guard(
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
            LockModule();
        else
            UnlockModule();
        return S_OK;
    }

private:
    const PublicClass &m_class;
};

} // namespace

IClassFactory *NewClassFactory(const PublicClass &publicClass)
{
    return new ClassFactory(publicClass);
}

} // namespace com
