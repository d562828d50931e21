// Class objects of the test's own that create the component's objects.
#include "borrowed_classes.h"

namespace com_test
{

BorrowedClasses::BorrowedClasses(const Component &component)
{
    for (const PublicClass &known : kClasses)
    {
        const CLSID &id = known.id;
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

HRESULT STDMETHODCALLTYPE BorrowedClasses::ClassObject::CreateInstance(IUnknown *outer, REFIID id, void **object)
{
    ++m_created;
    ComPtr<IClassFactory> real;
    const HRESULT result = m_component.GetClassObject(m_id, IID_PPV_ARGS(&real));
    return FAILED(result) ? result : real->CreateInstance(outer, id, object);
}

} // namespace com_test
