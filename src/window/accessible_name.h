// Names for screen readers where the system finds none.
#pragma once

#include <windows.h>

#include <string>

struct IAccPropServices;

namespace window
{

// The name of one native window as an annotation: whatever the system would find itself, screen readers hear this.
class AccessibleNameOf
{
public:
    AccessibleNameOf() = default;
    ~AccessibleNameOf() { Clear(); }
    AccessibleNameOf(const AccessibleNameOf &) = delete;
    AccessibleNameOf &operator=(const AccessibleNameOf &) = delete;

    // To be called when the window's accessible object is requested: only then the system's service for this is
    // loaded. Nothing happens with an empty name, once it has been done, or where there is no such service.
    void Set(HWND window, const std::wstring &name);
    void Clear() noexcept;

private:
    HWND m_window = nullptr; // null: not annotated
    IAccPropServices *m_services = nullptr;
};

} // namespace window
