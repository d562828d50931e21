// The resolution of the screen.
#include "window/scale.h"

namespace window
{

Scale Scale::OfScreen()
{
    const HDC screen = GetDC(nullptr);
    const int dotsX = screen ? GetDeviceCaps(screen, LOGPIXELSX) : 0;
    const int dotsY = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 0;
    if (screen)
        ReleaseDC(nullptr, screen);
    return Scale(dotsX > 0 ? dotsX : 96, dotsY > 0 ? dotsY : 96);
}

} // namespace window
