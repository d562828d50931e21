// The members that all classes have in the same form, one line each. They need a preprocessor because a member's name
// is part of the names of two virtual functions.
#pragma once

#include "com/object.h"

// A value of the record, set by value or by reference. `Type` is the host's type.
#define KV_FIELD(Type, name)                                                                                           \
    HRESULT STDMETHODCALLTYPE put_##name(Type value) override                                                          \
    {                                                                                                                  \
        return this->Guard([&] { this->Get().name = FromHost<decltype(this->Get().name)>(value); });                   \
    }                                                                                                                  \
    KV_FIELD_GETTER(Type, name)

#define KV_FIELD_BY_REFERENCE(Type, name)                                                                              \
    HRESULT STDMETHODCALLTYPE put_##name(Type *value) override                                                         \
    {                                                                                                                  \
        return this->Guard([&] { this->Get().name = FromHost<decltype(this->Get().name)>(Checked(value)); });          \
    }                                                                                                                  \
    KV_FIELD_GETTER(Type, name)

#define KV_FIELD_GETTER(Type, name)                                                                                    \
    HRESULT STDMETHODCALLTYPE get_##name(Type *value) override                                                         \
    {                                                                                                                  \
        return this->Guard([&] { Give(value, [&] { return ToHost(this->Get().name); }); });                            \
    }

// The same for a value that the record accesses by a pair of functions, `name` and `Setname`.
#define KV_VALUE(Type, name)                                                                                           \
    HRESULT STDMETHODCALLTYPE put_##name(Type value) override                                                          \
    {                                                                                                                  \
        return this->Guard([&] { this->Get().Set##name(FromHost<decltype(this->Get().name())>(value)); });             \
    }                                                                                                                  \
    KV_VALUE_GETTER(Type, name)

#define KV_VALUE_BY_REFERENCE(Type, name)                                                                              \
    HRESULT STDMETHODCALLTYPE put_##name(Type *value) override                                                         \
    {                                                                                                                  \
        return this->Guard([&] { this->Get().Set##name(FromHost<decltype(this->Get().name())>(Checked(value))); });    \
    }                                                                                                                  \
    KV_VALUE_GETTER(Type, name)

#define KV_VALUE_GETTER(Type, name)                                                                                    \
    HRESULT STDMETHODCALLTYPE get_##name(Type *value) override                                                         \
    {                                                                                                                  \
        return this->Guard([&] { Give(value, [&] { return ToHost(this->Get().name()); }); });                          \
    }

// An object that the record refers to by `field`; assigned by reference.
#define KV_OBJECT(Interface, name, field)                                                                              \
    HRESULT STDMETHODCALLTYPE putref_##name(Interface *value) override                                                 \
    {                                                                                                                  \
        return this->Guard([&] { Assign(this->Get().field, value); });                                                 \
    }                                                                                                                  \
    HRESULT STDMETHODCALLTYPE get_##name(Interface **value) override                                                   \
    {                                                                                                                  \
        return this->Guard([&] { Give(value, [&] { return Wrap(this->Get().field); }); });                             \
    }

// The default member of a collection class: by position alone; whatever is wrong with the position yields no object.
#define KV_ITEM(Interface)                                                                                             \
    HRESULT STDMETHODCALLTYPE get_Item(VARIANT *vntIndexKey, Interface **value) override                               \
    {                                                                                                                  \
        return this->Guard([&]                                                                                         \
                           { Give(value, [&] { return Wrap(ItemOrNothing(this->Get(), Checked(vntIndexKey))); }); });  \
    }

namespace com
{

template <class RecordType>
void Assign(runtime::Ref<RecordType> &to, IUnknown *value)
{
    to = Unwrap<RecordType>(value);
}

template <class Collection>
auto ItemOrNothing(const Collection &collection, const VARIANT &position) -> decltype(collection.Item({}))
{
    runtime::Value value;
    try
    {
        value = ToValue(position);
    }
    catch (...)
    {
        return nullptr;
    }
    return collection.Item(value);
}

} // namespace com
