// The module, its manifest and its window classes.
#include "window/module.h"

#include "platform/windows/wide.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace window
{

namespace
{

// The resource number under which the system looks for the manifest of a DLL.
constexpr int kManifest = 2;

HANDLE ContextOfModule()
{
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    description.hModule = ThisModule();
    description.lpResourceName = MAKEINTRESOURCEW(kManifest);
    return CreateActCtxW(&description);
}

} // namespace

HINSTANCE ThisModule() noexcept
{
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}

ThemedControls::ThemedControls() : m_context(ContextOfModule())
{
    if (m_context != INVALID_HANDLE_VALUE)
        m_active = ActivateActCtx(m_context, &m_cookie);
}

ThemedControls::~ThemedControls()
{
    if (m_active)
        DeactivateActCtx(0, m_cookie);
    if (m_context != INVALID_HANDLE_VALUE)
        ReleaseActCtx(m_context);
}

WindowClass::WindowClass(const wchar_t *name, WNDPROC procedure) : m_name(name)
{
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = ThisModule();
    description.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512) /* the arrow */);
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = name;
    m_registered = RegisterClassExW(&description) != 0;
}

WindowClass::~WindowClass()
{
    if (m_registered)
        UnregisterClassW(m_name, ThisModule());
}

} // namespace window
