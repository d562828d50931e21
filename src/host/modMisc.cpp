// Loaded windows by name, and the window kept on top.
#include "host/modMisc.h"

#include "platform/desktop.h"
#include "runtime/convert.h"
#include "runtime/error_trap.h"
#include "runtime/text.h"

namespace host
{

bool IsFormLoaded(const std::string &name)
{
    const std::string wanted = runtime::UpperCase(name);
    bool loaded = false;
    for (const Form *form : LoadedForms())
        if (runtime::UpperCase(form->Name()) == wanted)
            loaded = true;
    return loaded;
}

void KeepOnTop(const Form &form, bool onTop)
{
    constexpr int kTopmost = -1;
    constexpr int kNotTopmost = -2;
    runtime::ErrorTrap trap;
    trap.Try(
        [&]
        {
            platform::Desktop &desktop = platform::CurrentDesktop();
            const Rectangle bounds = form.Bounds();
            const double x = desktop.TwipsPerPixelX();
            const double y = desktop.TwipsPerPixelY();
            desktop.SetWindowPos(form.Handle(), onTop ? kTopmost : kNotTopmost, runtime::ToInteger(bounds.left / x),
                                 runtime::ToInteger(bounds.top / y), runtime::ToInteger(bounds.width / x),
                                 runtime::ToInteger(bounds.height / y));
        });
}

} // namespace host
