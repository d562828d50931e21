// What all objects that a host holds have in common: one face a record, counted, with dispatch by type library.
#pragma once

#include "com/dispatch.h"
#include "com/errors.h"
#include "com/identity.h"
#include "com/module.h"
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
    // The record behind the object when it is of that type, null otherwise.
    virtual const void *STDMETHODCALLTYPE Record(const std::type_info &type) noexcept = 0;
};

} // namespace com

__CRT_UUID_DECL(com::IOwnObject, 0x601e700e, 0xd9cc, 0x4efc, 0xa2, 0xe4, 0x41, 0x01, 0x7a, 0x28, 0xa4, 0x12)

namespace com
{

// Which dispatch interface, class of the type library and class of the component belong to a record:
// `Interface`, `Class` and `Face`. Specialised beside each face.
template <class Record>
struct FaceOf;

// The object that shows a record to hosts. There is at most one for a record (identity.h), so that two references to
// one record compare equal.
template <class RecordType>
class Object : public FaceOf<RecordType>::Interface,
               public ISupportErrorInfo,
               public IProvideClassInfo,
               public IOwnObject
{
    using Interface = typename FaceOf<RecordType>::Interface;

public:
    explicit Object(runtime::Ref<RecordType> record) : m_record(std::move(record))
    {
        RememberFace(m_record.get(), static_cast<Interface *>(this));
    }
    Object(const Object &) = delete;
    Object &operator=(const Object &) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void **object) final
    {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (id == __uuidof(IUnknown) || id == __uuidof(IDispatch) || id == __uuidof(Interface))
            *object = static_cast<Interface *>(this);
        else if (id == __uuidof(ISupportErrorInfo))
            *object = static_cast<ISupportErrorInfo *>(this);
        else if (id == __uuidof(IProvideClassInfo))
            *object = static_cast<IProvideClassInfo *>(this);
        else if (id == __uuidof(IOwnObject))
            *object = static_cast<IOwnObject *>(this);
        else
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

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *count) final
    {
        return Guard([&] { Give(count, [] { return 1; }); });
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
        return Guard([&]
                     { Give(info, [] { return TypeInfo(__uuidof(typename FaceOf<RecordType>::Class)).Detach(); }); });
    }

    const void *STDMETHODCALLTYPE Record(const std::type_info &type) noexcept final
    {
        return type == typeid(RecordType) ? m_record.get() : nullptr;
    }

protected:
    virtual ~Object() { ForgetFace(m_record.get()); }

    RecordType &Get() const { return *m_record; }

    // The body of a method: what it throws becomes the method's result.
    template <class Body>
    HRESULT Guard(Body &&body) noexcept
    {
        return Guarded(__uuidof(Interface), std::forward<Body>(body));
    }

private:
    KeepsLoaded m_keepsLoaded; // gone last
    runtime::Ref<RecordType> m_record;
    LONG m_references = 0;
};

// The face of a record, with a reference for the caller; null for no record.
template <class RecordType>
typename FaceOf<RecordType>::Interface *Wrap(const runtime::Ref<RecordType> &record)
{
    using Interface = typename FaceOf<RecordType>::Interface;
    if (!record)
        return nullptr;
    auto *face = static_cast<Interface *>(FindFace(record.get()));
    if (!face)
        face = new typename FaceOf<RecordType>::Face(record);
    face->AddRef();
    return face;
}

// The record behind an object that a host passes. Error 91 for no object, 13 for one of any other class.
template <class RecordType>
runtime::Ref<RecordType> Unwrap(IUnknown *object)
{
    if (!object)
        runtime::Raise(runtime::kObjectNotSet);
    ComPtr<IOwnObject> own;
    if (FAILED(object->QueryInterface(__uuidof(IOwnObject), reinterpret_cast<void **>(own.GetAddressOf()))))
        runtime::Raise(runtime::kTypeMismatch);
    const void *record = own->Record(typeid(RecordType));
    if (!record)
        runtime::Raise(runtime::kTypeMismatch);
    return const_cast<RecordType *>(static_cast<const RecordType *>(record));
}

} // namespace com
