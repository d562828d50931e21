// The module and its manifest.
#include "platform/windows/module.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace platform
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

} // namespace platform
