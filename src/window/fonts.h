// The fonts of the window.
#pragma once

#include "platform/windows/handle.h"
#include "window/scale.h"

#include <windows.h>

namespace window
{

class Fonts
{
public:
    explicit Fonts(const Scale &scale) : m_regular(Make(scale, FW_NORMAL)), m_bold(Make(scale, FW_BOLD)) {}

    HFONT Get(bool bold) const { return (bold ? m_bold : m_regular).get(); }

private:
    static void Delete(HFONT font) { DeleteObject(font); }
    using Font = platform::UniqueHandle<HFONT, &Fonts::Delete>;

    static Font Make(const Scale &scale, int weight)
    {
        constexpr int kQuarterPoints = 33; // 8.25 points
        return Font(CreateFontW(scale.FontHeight(kQuarterPoints), 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS,
                                L"MS Sans Serif"));
    }

    Font m_regular;
    Font m_bold;
};

} // namespace window
