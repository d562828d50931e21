// The icon in the caption bar of a form.
#pragma once

#include "platform/windows/handle.h"

#include <windows.h>

namespace window
{

inline void DeleteCaptionIcon(HICON icon)
{
    DestroyIcon(icon);
}
using CaptionIcon = platform::UniqueHandle<HICON, &DeleteCaptionIcon>;

// A copy of the owner's icon; the component's own where the owner, which may be null, has none. `kind` is ICON_SMALL or
// ICON_BIG.
CaptionIcon MakeCaptionIcon(HWND owner, WPARAM kind);

} // namespace window
