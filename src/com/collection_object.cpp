// The COM object of the general collection, and how it reads a host's arguments.
#include "com/collection_object.h"

#include "com/enumeration.h"
#include "com/partition_objects.h"
#include "com/settings_objects.h"
#include "runtime/convert.h"

namespace com
{

namespace
{

CollectionIndex ToIndex(const VARIANT &argument)
{
    const runtime::Value value = ToValue(argument);
    if (const std::string *key = std::get_if<std::string>(&value))
        return *key;
    return std::int64_t{runtime::ToLong(value)};
}

// The key of a new element; empty when the argument was left out. Anything but a text is the error 13.
std::string ToKey(const VARIANT &argument)
{
    if (IsMissing(argument))
        return {};
    const runtime::Value value = ToValue(argument);
    if (const std::string *key = std::get_if<std::string>(&value))
        return *key;
    runtime::Raise(runtime::kTypeMismatch);
}

// The object in an argument. Error 13 for anything that is not an object; a null object stays null.
ComPtr<IUnknown> ToObject(const VARIANT &argument)
{
    Variant value(argument);
    if (value->vt != VT_DISPATCH && value->vt != VT_UNKNOWN)
        runtime::Raise(runtime::kTypeMismatch);
    return value->punkVal;
}

// The type of the collection that an object belongs in. Error 91 for no object, 13 for one of no such class.
const std::type_info &CollectionFor(IUnknown *object)
{
    if (!object)
        runtime::Raise(runtime::kObjectNotSet);
    if (FindRecord<model::clsFormats>(*object))
        return typeid(runtime::Collection<model::clsFormats>);
    if (FindRecord<model::clsHeadings>(*object))
        return typeid(runtime::Collection<model::clsHeadings>);
    if (FindRecord<model::clsSettings>(*object))
        return typeid(runtime::Collection<model::clsSettings>);
    if (FindRecord<model::clsPartition>(*object))
        return typeid(runtime::Collection<model::clsPartition>);
    runtime::Raise(runtime::kTypeMismatch);
}

} // namespace

// Until the class is settled it answers as any empty collection.
CollectionObject::CollectionObject()
    : m_elements(
          std::make_shared<ElementsOf<model::clsFormats>>(runtime::MakeRef<runtime::Collection<model::clsFormats>>()))
{
}

CollectionObject::~CollectionObject()
{
    ForgetObject(m_record);
}

template <class Element>
bool CollectionObject::SettleFor(const std::type_info &type)
{
    if (type != typeid(runtime::Collection<Element>))
        return false;
    Show(runtime::MakeRef<runtime::Collection<Element>>());
    return true;
}

void CollectionObject::Settle(const std::type_info &type)
{
    if (!m_record)
        SettleFor<model::clsFormats>(type) || SettleFor<model::clsHeadings>(type) ||
            SettleFor<model::clsSettings>(type) || SettleFor<model::clsPartition>(type);
}

void *CollectionObject::Record(const std::type_info &type)
{
    Settle(type);
    return m_elements->Record(type);
}

HRESULT CollectionObject::get_Item(VARIANT Index, VARIANT *value)
{
    return Guard(
        [&]
        {
            VariantInit(&Checked(value));
            value->pdispVal = m_elements->Item(ToIndex(Index));
            value->vt = VT_DISPATCH;
        });
}

HRESULT CollectionObject::Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After)
{
    return Guard(
        [&]
        {
            const ComPtr<IUnknown> object = ToObject(Item);
            const std::string key = ToKey(Key);
            if (!IsMissing(Before) && !IsMissing(After))
                runtime::Raise(runtime::kInvalidProcedureCall);
            auto position = static_cast<std::int64_t>(m_elements->Count()) + 1;
            if (!IsMissing(Before))
                position = m_elements->Position(ToIndex(Before));
            else if (!IsMissing(After))
                position = m_elements->Position(ToIndex(After)) + 1;
            if (!m_record)
                Settle(CollectionFor(object.Get()));
            m_elements->Add(object.Get(), key, position);
        });
}

HRESULT CollectionObject::get_Count(LONG *value)
{
    return Guard([&] { Give(value, [&] { return static_cast<LONG>(m_elements->Count()); }); });
}

HRESULT CollectionObject::Remove(VARIANT Index)
{
    return Guard([&] { m_elements->Remove(ToIndex(Index)); });
}

HRESULT CollectionObject::get__NewEnum(IUnknown **value)
{
    return Guard(
        [&]
        {
            const auto elementAt = [elements = m_elements](std::size_t offset) -> IDispatch *
            {
                if (offset >= elements->Count())
                    return nullptr;
                return elements->Item(static_cast<std::int64_t>(offset) + 1);
            };
            Give(value, [&] { return NewEnumeration(elementAt); });
        });
}

} // namespace com
