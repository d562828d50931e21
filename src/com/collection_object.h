// The face of the general collection. A collection holds objects of one class; any other object is the error 13.
#pragma once

#include "com/enumeration.h"
#include "com/object.h"
#include "runtime/collection.h"

#include <cstdint>
#include <string>
#include <variant>

namespace com
{

template <class Element>
class CollectionObject;

template <class Element>
struct FaceOf<runtime::Collection<Element>>
{
    using Interface = _Collection;
    using Class = ::Collection;
    using Face = CollectionObject<Element>;
};

// Where a host wants something in a collection: the key when it passed a text, the position (from 1) for a number.
using Place = std::variant<std::string, std::int64_t>;
Place ToPlace(const VARIANT &argument);

// The key of a new element; empty when the argument was left out. Anything but a text is the error 13.
std::string ToKey(const VARIANT &argument);

// The object in an argument. Error 13 for anything that is not an object; a null object stays null.
ComPtr<IUnknown> ToObject(const VARIANT &argument);

template <class Element>
class CollectionObject final : public Object<runtime::Collection<Element>>
{
    using Collection = runtime::Collection<Element>;

public:
    using Object<Collection>::Object;

    HRESULT STDMETHODCALLTYPE get_Item(VARIANT Index, VARIANT *value) override
    {
        return this->Guard(
            [&]
            {
                VariantInit(&Checked(value));
                const auto item = [&](const auto &place) { return this->Get().Item(place); };
                value->pdispVal = Wrap(std::visit(item, ToPlace(Index)));
                value->vt = VT_DISPATCH;
            });
    }

    HRESULT STDMETHODCALLTYPE Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After) override
    {
        return this->Guard(
            [&]
            {
                const runtime::Ref<Element> item = Unwrap<Element>(ToObject(Item).Get());
                const std::string key = ToKey(Key);
                if (!IsMissing(Before) && !IsMissing(After))
                    runtime::Raise(runtime::kInvalidProcedureCall);
                if (!IsMissing(Before))
                    this->Get().AddBefore(item, key, Position(Before));
                else if (!IsMissing(After))
                    this->Get().AddAfter(item, key, Position(After));
                else
                    this->Get().Add(item, key);
            });
    }

    HRESULT STDMETHODCALLTYPE get_Count(LONG *value) override
    {
        return this->Guard([&] { Give(value, [&] { return static_cast<LONG>(this->Get().Count()); }); });
    }

    HRESULT STDMETHODCALLTYPE Remove(VARIANT Index) override
    {
        return this->Guard([&] { std::visit([&](const auto &place) { this->Get().Remove(place); }, ToPlace(Index)); });
    }

    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown **value) override
    {
        return this->Guard(
            [&]
            {
                const runtime::Ref<Collection> elements = &this->Get();
                const auto elementAt = [elements](std::size_t offset) -> IDispatch *
                {
                    if (offset >= elements->Count())
                        return nullptr;
                    return Wrap(elements->Item(static_cast<std::int64_t>(offset) + 1));
                };
                Give(value, [&] { return NewEnumeration(elementAt); });
            });
    }

private:
    std::int64_t Position(const VARIANT &argument) const
    {
        const Place place = ToPlace(argument);
        if (const std::string *key = std::get_if<std::string>(&place))
            return this->Get().Position(*key);
        return std::get<std::int64_t>(place);
    }
};

} // namespace com
