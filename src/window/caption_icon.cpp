// The icon in the caption bar of a form.
#include "window/caption_icon.h"

#include "platform/windows/module.h"
#include "window/resources.h"

namespace window
{

CaptionIcon MakeCaptionIcon(HWND owner, WPARAM kind)
{
    const bool isSmall = kind == ICON_SMALL;
    HICON found = nullptr;
    if (owner)
    {
        found = reinterpret_cast<HICON>(SendMessageW(owner, WM_GETICON, kind, 0));
        if (!found)
            found = reinterpret_cast<HICON>(GetClassLongPtrW(owner, isSmall ? GCLP_HICONSM : GCLP_HICON));
    }
    if (found)
        return CaptionIcon(CopyIcon(found));
    return CaptionIcon(
        static_cast<HICON>(LoadImageW(platform::ThisModule(), MAKEINTRESOURCEW(KV_ICON_COMPONENT), IMAGE_ICON,
                                      GetSystemMetrics(isSmall ? SM_CXSMICON : SM_CXICON),
                                      GetSystemMetrics(isSmall ? SM_CYSMICON : SM_CYICON), LR_DEFAULTCOLOR)));
}

} // namespace window
