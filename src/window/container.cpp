// Drawing of containers, and the way of their controls' messages.
#include "window/container.h"

#include "window/guard.h"

namespace window
{

namespace
{

void Draw(HWND window, HDC context)
{
    RECT area;
    GetClientRect(window, &area);
    FillRect(context, &area, GetSysColorBrush(COLOR_BTNFACE));
    switch (static_cast<Edge>(GetWindowLongPtrW(window, GWLP_USERDATA)))
    {
    case Edge::Etched:
        DrawEdge(context, &area, EDGE_ETCHED, BF_RECT);
        break;
    case Edge::Raised:
        DrawEdge(context, &area, BDR_RAISEDINNER, BF_RECT);
        break;
    case Edge::None:
        break;
    }
}

} // namespace

std::optional<LRESULT> HandleAsContainer(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CTLCOLORSTATIC || message == WM_CTLCOLORBTN)
    {
        const auto context = reinterpret_cast<HDC>(wParam);
        SetBkColor(context, GetSysColor(COLOR_BTNFACE));
        SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
    }
    return Reflect(message, wParam, lParam);
}

LRESULT CALLBACK ContainerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_ERASEBKGND || message == WM_PRINTCLIENT)
    {
        Draw(window, reinterpret_cast<HDC>(wParam));
        return 1;
    }
    const std::optional<LRESULT> result =
        Guarded(std::optional<LRESULT>(), [&] { return HandleAsContainer(message, wParam, lParam); });
    return result ? *result : DefWindowProcW(window, message, wParam, lParam);
}

void SetEdge(HWND container, Edge edge)
{
    SetWindowLongPtrW(container, GWLP_USERDATA, static_cast<LONG_PTR>(edge));
}

Binding::Make ContainerBinding::Describe() const
{
    return {kContainerClass, WS_CLIPCHILDREN, WS_EX_CONTROLPARENT};
}

void ContainerBinding::Fill()
{
    SetEdge(Window(), Owner().GetKind() == editor::controls::Kind::Frame ? Edge::Etched : Edge::Raised);
    ShowAccessibleName();
}

// Neither has a caption that could be seen.
std::wstring ContainerBinding::AccessibleName() const
{
    return Owner().GetKind() == editor::controls::Kind::Frame ? L"Format attributes" : L"Heading settings";
}

} // namespace window
