// Names for screen readers where the system finds none.
#include "window/accessible_name.h"

#include <initguid.h>
#include <oleacc.h>

#include <utility>

namespace window
{

namespace
{

constexpr DWORD kClient = static_cast<DWORD>(OBJID_CLIENT);

} // namespace

void AccessibleNameOf::Set(HWND window, const std::wstring &name)
{
    // Noted first: making the service lets messages through.
    if (name.empty() || std::exchange(m_window, window))
        return;
    if (FAILED(CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                                reinterpret_cast<void **>(&m_services))))
        m_services = nullptr;
    else
        m_services->SetHwndPropStr(window, kClient, CHILDID_SELF, PROPID_ACC_NAME, name.c_str());
}

void AccessibleNameOf::Clear() noexcept
{
    const HWND window = std::exchange(m_window, nullptr);
    if (IAccPropServices *const services = std::exchange(m_services, nullptr))
    {
        services->ClearHwndProps(window, kClient, CHILDID_SELF, &PROPID_ACC_NAME, 1);
        services->Release();
    }
}

} // namespace window
