// For Each over a collection.
#include "com/enumeration.h"

#include "com/errors.h"
#include "com/module.h"

namespace com
{

namespace
{

class Enumeration final : public IEnumVARIANT
{
public:
    Enumeration(ElementAt elementAt, std::size_t offset) : m_elementAt(std::move(elementAt)), m_offset(offset) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) override
    {
        if (!object)
            return E_POINTER;
        *object = id == __uuidof(IUnknown) || id == __uuidof(IEnumVARIANT) ? this : nullptr;
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

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT *values, ULONG *fetched) override
    {
        ULONG done = 0;
        if (fetched)
            *fetched = 0;
        const HRESULT result = Guarded(__uuidof(IEnumVARIANT),
                                       [&]
                                       {
                                           if (count != 0)
                                               Checked(values);
                                           for (; done < count; ++done)
                                           {
                                               IDispatch *element = m_elementAt(m_offset);
                                               if (!element)
                                                   break;
                                               ++m_offset;
                                               VariantInit(&values[done]);
                                               values[done].vt = VT_DISPATCH;
                                               values[done].pdispVal = element;
                                           }
                                       });
        if (fetched)
            *fetched = done;
        if (FAILED(result))
            return result;
        return done == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override
    {
        ULONG skipped = 0;
        const HRESULT result = Guarded(__uuidof(IEnumVARIANT),
                                       [&]
                                       {
                                           for (; skipped < count; ++skipped, ++m_offset)
                                           {
                                               IDispatch *element = m_elementAt(m_offset);
                                               if (!element)
                                                   break;
                                               element->Release();
                                           }
                                       });
        if (FAILED(result))
            return result;
        return skipped == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override
    {
        m_offset = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT **copy) override
    {
        return Guarded(__uuidof(IEnumVARIANT),
                       [&] { Give(copy, [&] { return NewEnumeration(m_elementAt, m_offset); }); });
    }

private:
    KeepsLoaded m_keepsLoaded;
    ElementAt m_elementAt;
    std::size_t m_offset;
    LONG m_references = 1;
};

} // namespace

IEnumVARIANT *NewEnumeration(ElementAt elementAt, std::size_t offset)
{
    return new Enumeration(std::move(elementAt), offset);
}

} // namespace com
