// The windows that hold controls: tab pages, frames and panels.
#pragma once

#include "window/binding.h"

#include <windows.h>

namespace window
{

constexpr const wchar_t *kContainerClass = L"KVHEADERS.Container";

// How the border of a container looks.
enum class Edge
{
    None,
    Etched,
    Raised,
};

// The window procedure of the class.
LRESULT CALLBACK ContainerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

void SetEdge(HWND container, Edge edge);

// What a window that holds controls does with messages, besides drawing itself: background of labels and boxes, and
// what its controls tell it. Nothing: the message is none of these.
std::optional<LRESULT> HandleAsContainer(UINT message, WPARAM wParam, LPARAM lParam);

// A frame or a panel.
class ContainerBinding final : public Binding
{
public:
    using Binding::Binding;

protected:
    Make Describe() const override;
    void Fill() override;
    std::wstring AccessibleName() const override;
};

} // namespace window
