// The boundary between the component's errors and those of COM: no exception reaches a host, every error is reported.
#pragma once

#include <windows.h>

#include <cstdint>
#include <utility>

namespace com
{

// A failure of the interface itself, for which there is no error number: a null pointer, no memory, no type library.
struct Failure
{
    HRESULT result;
};

inline void Check(HRESULT result)
{
    if (FAILED(result))
        throw Failure{result};
}

// What a host's pointer points to. A null pointer is the failure E_POINTER.
template <class T>
T &Checked(T *pointer)
{
    if (!pointer)
        throw Failure{E_POINTER};
    return *pointer;
}

// Gives a host a result. The place for it is looked at first: what `make` does is not done for nothing.
template <class To, class Make>
void Give(To *to, Make &&make)
{
    Checked(to) = {};
    *to = make();
}

// 0x800A0000 + number; numbers below 0 are results already.
HRESULT ResultOf(std::int32_t number) noexcept;

// The result for the exception that is being handled. A host finds its description and its source "KVHEADERS" in the
// thread's error object. To be called inside a catch block only.
HRESULT SetErrorInfoFromException(REFIID interfaceId) noexcept;

// Runs the body of a method of that interface.
template <class Body>
HRESULT Guarded(REFIID interfaceId, Body &&body) noexcept
{
    try
    {
        std::forward<Body>(body)();
        return S_OK;
    }
    catch (...)
    {
        return SetErrorInfoFromException(interfaceId);
    }
}

} // namespace com
