// The desktop in use.
#include "platform/desktop.h"

namespace platform
{

namespace
{
Desktop *s_desktop = nullptr;
}

Desktop &CurrentDesktop()
{
    return s_desktop ? *s_desktop : SystemDesktop();
}

void SetDesktop(Desktop *desktop)
{
    s_desktop = desktop;
}

Answer MsgBox(const std::string &text, int flags, const std::string &title)
{
    return CurrentDesktop().ShowMessage(text, flags, title);
}

} // namespace platform
