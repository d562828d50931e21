// The COM object of the general collection. A collection holds objects of one class; any other object is the error 13.
#pragma once

#include "com/object.h"
#include "runtime/collection.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

namespace com
{

class CollectionObject;

template <class Element>
struct ComTraits<runtime::Collection<Element>>
{
    using Interface = _Collection;
    using Class = ::Collection;
    using Object = CollectionObject;
};

// A host's index into a collection: the key when it passed a text, the position (from 1) for a number.
using CollectionIndex = std::variant<std::string, std::int64_t>;

// A collection, whatever the class of its elements.
class Elements
{
public:
    virtual ~Elements() = default;

    // The collection when it is of that type, null otherwise.
    virtual void *Record(const std::type_info &type) const = 0;
    virtual std::size_t Count() const = 0;
    // Error 5 for an unknown key, 9 for a position out of range.
    virtual std::int64_t Position(const CollectionIndex &index) const = 0;
    // With a reference for the caller. Errors as Position's.
    virtual IDispatch *Item(const CollectionIndex &index) const = 0;
    // Puts an object at a position (1 to Count + 1), without a key when `key` is empty. Error 91 for no object, 13 for
    // one of another class, 9 for a position out of range, 457 for a key that is taken.
    virtual void Add(IUnknown *object, const std::string &key, std::int64_t position) = 0;
    virtual void Remove(const CollectionIndex &index) = 0;
};

template <class Element>
class ElementsOf final : public Elements
{
public:
    explicit ElementsOf(runtime::Ref<runtime::Collection<Element>> collection) : m_collection(std::move(collection)) {}

    void *Record(const std::type_info &type) const override
    {
        return type == typeid(runtime::Collection<Element>) ? m_collection.get() : nullptr;
    }
    std::size_t Count() const override { return m_collection->Count(); }
    std::int64_t Position(const CollectionIndex &index) const override
    {
        if (const auto *key = std::get_if<std::string>(&index))
            return m_collection->Position(*key);
        const std::int64_t position = std::get<std::int64_t>(index);
        m_collection->Item(position);
        return position;
    }
    IDispatch *Item(const CollectionIndex &index) const override
    {
        return std::visit([&](const auto &place) -> IDispatch * { return Wrap(m_collection->Item(place)); }, index);
    }
    void Add(IUnknown *object, const std::string &key, std::int64_t position) override
    {
        const runtime::Ref<Element> item = Unwrap<Element>(object);
        if (position == static_cast<std::int64_t>(Count()) + 1)
            m_collection->Add(item, key);
        else
            m_collection->AddBefore(item, key, position);
    }
    void Remove(const CollectionIndex &index) override
    {
        std::visit([&](const auto &place) { m_collection->Remove(place); }, index);
    }

private:
    const runtime::Ref<runtime::Collection<Element>> m_collection;
};

class CollectionObject final : public DispatchObject<_Collection, ::Collection>
{
public:
    // A new collection of a host's. The first object that is added to it, or the first collection class that it is
    // assigned to, settles the class of its elements.
    CollectionObject();

    template <class Element>
    explicit CollectionObject(runtime::Ref<runtime::Collection<Element>> collection)
    {
        Show(std::move(collection));
    }
    ~CollectionObject() override;

    void *STDMETHODCALLTYPE Record(const std::type_info &type) override;

    HRESULT STDMETHODCALLTYPE get_Item(VARIANT Index, VARIANT *value) override;
    HRESULT STDMETHODCALLTYPE Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After) override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG *value) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT Index) override;
    HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown **value) override;

private:
    template <class Element>
    void Show(runtime::Ref<runtime::Collection<Element>> collection);
    template <class Element>
    bool SettleFor(const std::type_info &type);
    void Settle(const std::type_info &type);

    std::shared_ptr<Elements> m_elements;
    const void *m_record = nullptr; // null until the class is settled
};

template <class Element>
void CollectionObject::Show(runtime::Ref<runtime::Collection<Element>> collection)
{
    const void *record = collection.get();
    m_elements = std::make_shared<ElementsOf<Element>>(std::move(collection));
    RememberObject(record, static_cast<_Collection *>(this));
    m_record = record;
}

} // namespace com
