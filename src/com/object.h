// What the objects of the type library's classes have in common: one object a record, dispatch by the type library.
#pragma once

#include "com/counted.h"
#include "com/dispatch.h"
#include "com/identity.h"
#include "com/type_library.h"
#include "com/values.h"
#include "runtime/error.h"
#include "runtime/ref.h"

#include <ocidl.h>

#include <typeinfo>

namespace com
{

// The interface by which the component knows its own objects again among those that a host passes.
struct IOwnObject : IUnknown
{
    // The record behind the object when it is of that type, null otherwise. Raises when there is no memory.
    virtual void *STDMETHODCALLTYPE Record(const std::type_info &type) = 0;
};

} // namespace com

__CRT_UUID_DECL(com::IOwnObject, 0x601e700e, 0xd9cc, 0x4efc, 0xa2, 0xe4, 0x41, 0x01, 0x7a, 0x28, 0xa4, 0x12)

namespace com
{

// Which dispatch interface, class of the type library and class of the component belong to a record:
// `Interface`, `Class` and `Object`. Specialised beside each object.
template <class Record>
struct ComTraits;

template <class DispatchInterface, class LibraryClass, class ComponentClass>
struct ComClass
{
    using Interface = DispatchInterface;
    using Class = LibraryClass;
    using Object = ComponentClass;
};

// An object of a class of the type library: dispatch, error information and the description of its class.
template <class Interface, class Class>
class DispatchObject : public Counted<Interface, ISupportErrorInfo, IProvideClassInfo, IOwnObject>
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *count) final
    {
        return this->Guard([&] { Give(count, [] { return 1; }); });
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo **info) final
    {
        return DispatchTypeInfo(__uuidof(Interface), index, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR *names, UINT count, LCID, DISPID *members) final
    {
        return DispatchNames(__uuidof(Interface), reserved, names, count, members);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS *arguments,
                                     VARIANT *result, EXCEPINFO *exception, UINT *badArgument) final
    {
        return DispatchCall(__uuidof(Interface), static_cast<Interface *>(this), reserved, member, flags, arguments,
                            result, exception, badArgument);
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) final
    {
        return id == __uuidof(Interface) || id == __uuidof(IDispatch) ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo **info) final
    {
        return this->Guard([&] { Give(info, [] { return TypeInfo(__uuidof(Class)).Detach(); }); });
    }
};

// The object that shows a record to hosts. There is at most one for a record (identity.h), so that two references to
// one record compare equal.
template <class RecordType>
class Object : public DispatchObject<typename ComTraits<RecordType>::Interface, typename ComTraits<RecordType>::Class>
{
public:
    explicit Object(runtime::Ref<RecordType> record) : m_record(std::move(record))
    {
        RememberObject(m_record.get(), static_cast<typename ComTraits<RecordType>::Interface *>(this));
    }

    void *STDMETHODCALLTYPE Record(const std::type_info &type) override
    {
        return type == typeid(RecordType) ? m_record.get() : nullptr;
    }

protected:
    ~Object() override { ForgetObject(m_record.get()); }

    RecordType &Get() const { return *m_record; }

private:
    runtime::Ref<RecordType> m_record;
};

// The object of a record, with a reference for the caller; null for no record.
template <class RecordType>
typename ComTraits<RecordType>::Interface *Wrap(const runtime::Ref<RecordType> &record)
{
    using Interface = typename ComTraits<RecordType>::Interface;
    if (!record)
        return nullptr;
    auto *known = static_cast<Interface *>(FindObject(record.get()));
    if (!known)
        return new typename ComTraits<RecordType>::Object(record);
    known->AddRef();
    return known;
}

// The record behind an object when it is of that type, null otherwise.
template <class RecordType>
RecordType *FindRecord(IUnknown &object)
{
    ComPtr<IOwnObject> own;
    if (FAILED(object.QueryInterface(__uuidof(IOwnObject), reinterpret_cast<void **>(own.GetAddressOf()))))
        return nullptr;
    return static_cast<RecordType *>(own->Record(typeid(RecordType)));
}

// The record behind an object that a host passes. Error 91 for no object, 13 for one of any other class.
template <class RecordType>
runtime::Ref<RecordType> Unwrap(IUnknown *object)
{
    if (!object)
        runtime::Raise(runtime::kObjectNotSet);
    RecordType *record = FindRecord<RecordType>(*object);
    if (!record)
        runtime::Raise(runtime::kTypeMismatch);
    return record;
}

} // namespace com
