// For Each over a collection.
#include "com/enumeration.h"

#include "com/counted.h"

namespace com
{

namespace
{

class Enumeration final : public Counted<IEnumVARIANT>
{
public:
    Enumeration(ElementAt elementAt, std::size_t offset) : m_elementAt(std::move(elementAt)), m_offset(offset) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT *values, ULONG *fetched) override
    {
        ULONG done = 0;
        if (fetched)
            *fetched = 0;
        const HRESULT result = Guard(
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
        const HRESULT result = Guard(
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
        return Guard([&] { m_offset = 0; });
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT **copy) override
    {
        return Guard([&] { Give(copy, [&] { return NewEnumeration(m_elementAt, m_offset); }); });
    }

private:
    ElementAt m_elementAt;
    std::size_t m_offset;
};

} // namespace

IEnumVARIANT *NewEnumeration(ElementAt elementAt, std::size_t offset)
{
    return new Enumeration(std::move(elementAt), offset);
}

} // namespace com
