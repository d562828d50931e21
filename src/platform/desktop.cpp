// The desktop in use.
#include "platform/desktop.h"

#include "runtime/handler.h"

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
    runtime::ThrowIfCancelled();
    const Answer answer = CurrentDesktop().ShowMessage(text, flags, title);
    runtime::ThrowIfCancelled();
    return answer;
}

void DoEvents()
{
    CurrentDesktop().DoEvents();
    runtime::ThrowIfCancelled();
}

} // namespace platform
