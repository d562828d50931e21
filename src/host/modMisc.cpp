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
            const Rectangle place = form.Bounds();
            const double x = desktop.TwipsPerPixelX();
            const double y = desktop.TwipsPerPixelY();
            desktop.SetWindowPos(form.Handle(), onTop ? kTopmost : kNotTopmost, runtime::ToInteger(place.left / x),
                                 runtime::ToInteger(place.top / y), runtime::ToInteger(place.width / x),
                                 runtime::ToInteger(place.height / y));
        });
}

} // namespace host
