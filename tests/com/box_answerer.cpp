// Answers the message boxes of a process.
#include "box_answerer.h"

#include "component.h"

namespace com_test
{

namespace
{

std::string TextOf(HWND window)
{
    wchar_t text[1024];
    return Narrow(
        {text, static_cast<std::size_t>(GetWindowTextLengthW(window)
                                            ? SendMessageW(window, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text))
                                            : 0)});
}

} // namespace

BoxAnswerer::BoxAnswerer(DWORD process) : m_thread([this, process] { Run(process); }) {}

BoxAnswerer::~BoxAnswerer()
{
    Finish();
}

std::vector<std::string> BoxAnswerer::Finish()
{
    m_ends = true;
    if (m_thread.joinable())
        m_thread.join();
    return m_boxes;
}

void BoxAnswerer::Run(DWORD process)
{
    while (!m_ends)
    {
        Sleep(20);
        HWND box = nullptr;
        while ((box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr)
        {
            DWORD owner = 0;
            GetWindowThreadProcessId(box, &owner);
            const HWND text = GetDlgItem(box, 0xFFFF);
            if (owner != process || !text || !IsWindowVisible(box))
                continue;
            m_boxes.push_back(TextOf(box) + ": " + TextOf(text));
            SendMessageW(box, WM_COMMAND, IDOK, 0);
            for (int i = 0; i < 200 && IsWindow(box); ++i)
                Sleep(10);
            break; // the box is no place to go on from
        }
    }
}

} // namespace com_test
