// Class objects of the test's own that create the component's objects.
#include "borrowed_classes.h"

namespace com_test
{

BorrowedClasses::BorrowedClasses(const Component &component)
{
    for (const CLSID &id : {__uuidof(clsConfig), __uuidof(clsFormats), __uuidof(colFormats), __uuidof(clsHeadings),
                            __uuidof(colHeadings), __uuidof(clsSettings), __uuidof(colSettings), __uuidof(clsPartition),
                            __uuidof(colPartitions), __uuidof(Collection)})
    {
        m_classes.push_back(new ClassObject(component, id, m_created));
        DWORD registration = 0;
        EXPECT_EQ(CoRegisterClassObject(id, m_classes.back(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration),
                  S_OK);
        m_registrations.push_back(registration);
    }
}

BorrowedClasses::~BorrowedClasses()
{
    for (const DWORD registration : m_registrations)
        CoRevokeClassObject(registration);
}

HRESULT STDMETHODCALLTYPE BorrowedClasses::ClassObject::QueryInterface(REFIID id, void **object)
{
    *object = id == __uuidof(IUnknown) || id == __uuidof(IClassFactory) ? this : nullptr;
    return *object ? S_OK : E_NOINTERFACE;
}

HRESULT STDMETHODCALLTYPE BorrowedClasses::ClassObject::CreateInstance(IUnknown *outer, REFIID id, void **object)
{
    ++m_created;
    ComPtr<IClassFactory> real;
    const HRESULT result = m_component.GetClassObject(m_id, IID_PPV_ARGS(&real));
    return FAILED(result) ? result : real->CreateInstance(outer, id, object);
}

} // namespace com_test
