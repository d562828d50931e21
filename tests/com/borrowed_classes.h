// Class objects of the test's own that create the component's objects. Wine's VBScript never releases the class object
// behind CreateObject; with these in between, what is left of the component after a script is the component's fault.
#pragma once

#include "component.h"

#include <vector>

namespace com_test
{

class BorrowedClasses
{
public:
    // The classes of the component, for this process, while it lives.
    explicit BorrowedClasses(const Component &component);
    ~BorrowedClasses();
    BorrowedClasses(const BorrowedClasses &) = delete;
    BorrowedClasses &operator=(const BorrowedClasses &) = delete;

    // How many objects they have created.
    int Created() const { return m_created; }

private:
    class ClassObject final : public Uncounted<IClassFactory>
    {
    public:
        ClassObject(const Component &component, const CLSID &id, int &created)
            : m_component(component), m_id(id), m_created(created)
        {
        }
        HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown *outer, REFIID id, void **object) override;
        HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    private:
        const Component &m_component;
        const CLSID m_id;
        int &m_created;
    };

    int m_created = 0;
    std::vector<ClassObject *> m_classes; // never freed: the engine keeps pointers to them
    std::vector<DWORD> m_registrations;
};

} // namespace com_test
