// Counted references to the component's records: one count inside the object, no second allocation, no atomics, since
// everything here belongs to one thread.
#pragma once

#include "runtime/error.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace runtime
{

// Base of a counted class: `class clsFormats : public RefCounted<clsFormats>`. Objects live on the heap and die with
// their last reference.
template <class T>
class RefCounted
{
public:
    RefCounted() = default;
    RefCounted(const RefCounted &) = delete;
    RefCounted &operator=(const RefCounted &) = delete;

    void AddRef() const noexcept { ++m_references; }
    void Release() const noexcept
    {
        if (--m_references == 0)
            delete static_cast<const T *>(this);
    }

protected:
    ~RefCounted() = default;

private:
    mutable std::uint32_t m_references = 0;
};

template <class T>
class Ref
{
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    Ref(T *object) : m_object(object)
    {
        if (m_object)
            m_object->AddRef();
    }
    Ref(const Ref &other) : Ref(other.m_object) {}
    Ref(Ref &&other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ~Ref()
    {
        if (m_object)
            m_object->Release();
    }
    Ref &operator=(Ref other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    T *get() const noexcept { return m_object; }
    // The object. Error 91 without one: a host can take objects away that the component works on.
    T *operator->() const { return &**this; }
    T &operator*() const
    {
        if (!m_object)
            Raise(kObjectNotSet);
        return *m_object;
    }
    explicit operator bool() const noexcept { return m_object != nullptr; }
    friend bool operator==(const Ref &a, const Ref &b) noexcept { return a.m_object == b.m_object; }

private:
    T *m_object = nullptr;
};

template <class T, class... Arguments>
Ref<T> MakeRef(Arguments &&...arguments)
{
    return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

} // namespace runtime
