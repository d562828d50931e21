// A message box on the screen: see box.h.
#include "windowed/box.h"

#include "window_driver/windows.h"

namespace scenario
{

namespace
{

constexpr int kYesNo = 4;
constexpr int kSystemModal = 4096;

struct Icon
{
    const wchar_t *name;
    int flag;
};

const Icon kIcons[] = {{IDI_ERROR, 16}, {IDI_QUESTION, 32}, {IDI_WARNING, 48}, {IDI_INFORMATION, 64}};

BOOL CALLBACK FindIcon(HWND child, LPARAM found)
{
    const LRESULT icon =
        window_driver::ClassOf(child) == "Static" ? SendMessageW(child, STM_GETICON, 0, 0) : LRESULT{0};
    if (icon == 0)
        return TRUE;
    *reinterpret_cast<LRESULT *>(found) = icon;
    return FALSE;
}

int IconFlag(HWND box)
{
    LRESULT shown = 0;
    EnumChildWindows(box, &FindIcon, reinterpret_cast<LPARAM>(&shown));
    for (const Icon &icon : kIcons)
        if (shown != 0 && reinterpret_cast<LRESULT>(LoadIconW(nullptr, icon.name)) == shown)
            return icon.flag;
    return 0;
}

} // namespace

ShownBox ReadBox(HWND box)
{
    ShownBox read{IconFlag(box), window_driver::TextOf(box), window_driver::BoxText(box)};
    if (GetDlgItem(box, IDYES) && GetDlgItem(box, IDNO))
        read.flags += kYesNo;
    // A box that belongs to a topmost window is topmost as well.
    const HWND owner = GetWindow(box, GW_OWNER);
    if (window_driver::IsTopmost(box) && !(owner && window_driver::IsTopmost(owner)))
        read.flags += kSystemModal;
    return read;
}

void AnswerBox(HWND box, const std::string &answer)
{
    window_driver::AnswerBox(box, answer == "Yes" ? IDYES : answer == "No" ? IDNO : IDOK);
}

} // namespace scenario
