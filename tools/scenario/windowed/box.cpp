// A message box on the screen: see box.h.
#include "windowed/box.h"

#include "windowed/text.h"

namespace scenario
{

namespace
{

constexpr int kTextItem = 0xFFFF;
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
    const LRESULT icon = ClassOf(child) == L"Static" ? SendMessageW(child, STM_GETICON, 0, 0) : 0;
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

bool IsTopmost(HWND window)
{
    return (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

} // namespace

bool IsMessageBox(HWND window)
{
    return ClassOf(window) == L"#32770" && GetDlgItem(window, kTextItem) != nullptr;
}

ShownBox ReadBox(HWND box)
{
    ShownBox read;
    read.title = TextOf(box);
    read.text = TextOf(GetDlgItem(box, kTextItem));
    read.flags = IconFlag(box);
    if (GetDlgItem(box, IDYES) && GetDlgItem(box, IDNO))
        read.flags += kYesNo;
    // A box that belongs to a topmost window is topmost as well.
    const HWND owner = GetWindow(box, GW_OWNER);
    if (IsTopmost(box) && !(owner && IsTopmost(owner)))
        read.flags += kSystemModal;
    return read;
}

void AnswerBox(HWND box, const std::string &answer)
{
    // A box with OK alone closes by its Cancel as well; its one button has either number.
    const int button = answer == "Yes" ? IDYES : answer == "No" ? IDNO : GetDlgItem(box, IDOK) ? IDOK : IDCANCEL;
    PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
}

} // namespace scenario
