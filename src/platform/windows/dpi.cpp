// The DPI awareness in which the component's windows live.
#include "platform/windows/dpi.h"

namespace platform
{

namespace
{

// Values of DPI_AWARENESS_CONTEXT and DPI_AWARENESS, which headers for Windows 7 do not have.
const auto kSystemAware = reinterpret_cast<HANDLE>(INT_PTR{-2});
constexpr int kPerMonitorAware = 2;

// Null before Windows 10.
template <class Function>
Function Lookup(const char *name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"user32.dll"), name)));
}

using GetThreadContext = HANDLE(WINAPI *)();
using SetThreadContext = HANDLE(WINAPI *)(HANDLE);
using AwarenessOf = int(WINAPI *)(HANDLE);

} // namespace

SystemDpiAwareness::SystemDpiAwareness()
{
    static const auto get = Lookup<GetThreadContext>("GetThreadDpiAwarenessContext");
    static const auto set = Lookup<SetThreadContext>("SetThreadDpiAwarenessContext");
    static const auto awarenessOf = Lookup<AwarenessOf>("GetAwarenessFromDpiAwarenessContext");
    if (get && set && awarenessOf && awarenessOf(get()) == kPerMonitorAware)
        m_before = set(kSystemAware);
}

SystemDpiAwareness::~SystemDpiAwareness()
{
    if (m_before)
        Lookup<SetThreadContext>("SetThreadDpiAwarenessContext")(m_before);
}

} // namespace platform
